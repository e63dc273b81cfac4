#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/TokenReader.h"

namespace qnl::interop {

/// A text file of another program, read from its beginning to its end by lines, with runs of bytes in
/// between where a format has them.
class ForeignText {
public:
    /// Raises ForeignProblem for a file that is not there or cannot be read.
    explicit ForeignText(std::string file);

    const std::string& File() const { return file_; }

    /// The next line without its end; false at the end of the file. It holds as long as this object.
    bool Next(std::string_view& line);
    /// The next line of something that must go on; raises ForeignProblem where the file ends.
    std::string_view Need(const char* what);
    /// The next `count` bytes, likewise.
    std::string_view NeedBytes(std::uint64_t count, const char* what);
    /// The line that was read last comes again.
    void Back() { again_ = true; }

    /// Raises ForeignProblem about the line that was read last.
    [[noreturn]] void Fail(const std::string& expected, const std::string& found,
                           const std::string& remedy = "export it anew") const;

private:
    std::string file_;
    TokenReader reader_;
    std::string_view line_;
    std::size_t number_ = 0;  ///< of the line that was read last, from 1
    bool again_ = false;
};

/// A text without the blanks around it.
std::string_view Trimmed(std::string_view text);

/// Columns of a line from `first`, 0-based, without the blanks around; empty behind its end.
std::string_view Columns(std::string_view line, std::size_t first, std::size_t width);

/// A text as a shown word: in quotes, no longer than a few words, without what cannot be printed.
std::string Quoted(std::string_view text);

/// The number that a whole text stands for, blanks around it apart.
std::optional<std::int64_t> WholeNumber(std::string_view text);
/// Likewise; "nan" and "inf" are numbers here, one beyond the range of a double is none.
std::optional<double> RealNumber(std::string_view text);

}  // namespace qnl::interop
