#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace qnl::text {

/// Number of characters of a UTF-8 text.
std::size_t CharacterCount(std::string_view text);

/// Table of texts with one heading per column, printed in aligned columns.
class TextTable {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// As many cells as there are columns.
    void AddRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
    /// Each line begins with `indent` blanks and ends without any.
    void Print(std::ostream& out, std::size_t indent = 2) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace qnl::text
