#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qnl {

/// Owned NUL-terminated text buffer of `Size` bytes, empty at first. A text that does not fit raises
/// std::length_error and leaves the content as it was.
template <std::size_t Size>
class FixedText {
public:
    FixedText() : bytes_(std::make_unique<char[]>(Size)) {}

    void Set(std::string_view text) {
        if (text.size() >= Size) {
            throw std::length_error("text of " + std::to_string(text.size()) +
                                    " bytes does not fit a buffer of " + std::to_string(Size) +
                                    " bytes: " + std::string(text.substr(0, 80)));
        }
        std::memmove(bytes_.get(), text.data(), text.size());
        bytes_[text.size()] = '\0';
    }

    char* Data() { return bytes_.get(); }
    const char* Text() const { return bytes_.get(); }
    std::string_view View() const { return bytes_.get(); }
    void Release() { bytes_.reset(); }

private:
    std::unique_ptr<char[]> bytes_;
};

using PathText = FixedText<512>;
using NameText = FixedText<255>;

}  // namespace qnl
