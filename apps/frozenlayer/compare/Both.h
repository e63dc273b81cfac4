#pragma once

#include <array>

namespace qnl::compare {

/// One of each of the two results that are compared: that of A, then that of B.
template <typename Value>
using Both = std::array<Value, 2>;

inline constexpr Both<const char*> kSideNames{"A", "B"};

}  // namespace qnl::compare
