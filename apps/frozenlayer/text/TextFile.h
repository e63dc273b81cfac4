#pragma once

#include <string>

namespace qnl::text {

/// The shortest text that reads back as the same number; "nan" for one that is not a number.
std::string ExactText(float number);
std::string ExactText(double number);

/// A text as an attribute of an XML element takes it.
std::string XmlText(const std::string& text);

}  // namespace qnl::text
