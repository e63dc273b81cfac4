#pragma once

#include <string>

namespace qnl::text {

/// A number in at most five significant digits; "-" for one that is not a number.
std::string NumberText(double number);

/// Count and noun: "1 node", "3 nodes".
std::string CountText(long long count, const std::string& noun);

}  // namespace qnl::text
