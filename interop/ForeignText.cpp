#include "interop/ForeignText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>
#include <utility>

#include "interop/ForeignFile.h"
#include "interop/ForeignSeries.h"
#include "platform/HostFiles.h"

namespace qnl::interop {

namespace {

TokenReader OpenWhole(const std::string& file) {
    CheckForeignFile(file);
    const HostFile stream(file, "rb");
    FileContent content;
    if (!stream || !ReadAll(stream.Get(), content)) {
        throw ForeignProblem(file + " cannot be read; check the rights and the device that it lies on");
    }
    return TokenReader(std::move(content));
}

template <typename Number>
std::optional<Number> WholeText(std::string_view text) {
    text = Trimmed(text);
    text.remove_prefix(text.size() > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional<Number>(number) : std::nullopt;
}

}  // namespace

ForeignText::ForeignText(std::string file) : file_(std::move(file)), reader_(OpenWhole(file_)) {}

bool ForeignText::Next(std::string_view& line) {
    if (!std::exchange(again_, false)) {
        if (!reader_.ReadLine(std::numeric_limits<std::size_t>::max(), line_)) {
            return false;
        }
        ++number_;
        while (!line_.empty() && (line_.back() == '\n' || line_.back() == '\r')) {
            line_.remove_suffix(1);
        }
    }
    line = line_;
    return true;
}

std::string_view ForeignText::Need(const char* what) {
    std::string_view line;
    if (!Next(line)) {
        Fail(what, "the end of the file");
    }
    return line;
}

std::string_view ForeignText::NeedBytes(std::uint64_t count, const char* what) {
    std::string_view bytes;
    if (count > std::numeric_limits<std::size_t>::max() ||
        !reader_.ReadBytes(static_cast<std::size_t>(count), bytes)) {
        Fail(what, "the end of the file");
    }
    return bytes;
}

void ForeignText::Fail(const std::string& expected, const std::string& found,
                       const std::string& remedy) const {
    throw ForeignProblem(file_ + ", line " + std::to_string(number_) + ": expected " + expected + ", found " +
                         found + "; " + remedy);
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view Columns(std::string_view line, std::size_t first, std::size_t width) {
    return first < line.size() ? Trimmed(line.substr(first, width)) : std::string_view();
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t kMost = 40;
    std::string shown(text.substr(0, kMost));
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return std::isprint(c) == 0; }, '?');
    return '"' + shown + (text.size() > kMost ? "...\"" : "\"");
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    return WholeText<std::int64_t>(text);
}

std::optional<double> RealNumber(std::string_view text) {
    return WholeText<double>(text);
}

}  // namespace qnl::interop
