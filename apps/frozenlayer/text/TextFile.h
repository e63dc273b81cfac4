#pragma once

#include <string>

#include "platform/HostFiles.h"

namespace qnl::text {

/// The shortest text that reads back as the same number; "nan" for one that is not a number.
std::string ExactText(float number);
std::string ExactText(double number);

/// A text as an attribute of an XML element takes it.
std::string XmlText(const std::string& text);

/// Appends to a file being replaced; what goes wrong shows when it is committed.
inline void Append(ReplacedFile& file, const std::string& text) {
    if (file) {
        std::fwrite(text.data(), 1, text.size(), file.Get());
    }
}

}  // namespace qnl::text
