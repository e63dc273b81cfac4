#include "text/LineFilter.h"

#include <utility>

namespace qnl::text {

LineFilter::LineFilter(const std::ostream& out, Rewrite rewrite)
    : out_(out.rdbuf()), rewrite_(std::move(rewrite)) {}

LineFilter::~LineFilter() {
    out_ << line_;
}

LineFilter::int_type LineFilter::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    const char written = traits_type::to_char_type(character);
    if (written != '\n') {
        line_ += written;
    } else {
        out_ << rewrite_(std::exchange(line_, {}));
    }
    return character;
}

int LineFilter::sync() {
    return out_.flush() ? 0 : -1;
}

}  // namespace qnl::text
