#include "text/TextTable.h"

#include <algorithm>

namespace qnl::text {

namespace {

constexpr std::size_t kGap = 2;

std::string Line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
                 const std::vector<TextTable::Column>& columns, std::size_t indent) {
    std::string line(indent, ' ');
    for (std::size_t c = 0; c < cells.size(); ++c) {
        const std::string padding(widths[c] - CharacterCount(cells[c]), ' ');
        line += c == 0 ? "" : std::string(kGap, ' ');
        line += columns[c].align == TextTable::Align::Left ? cells[c] + padding : padding + cells[c];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

}  // namespace

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

void TextTable::Print(std::ostream& out, std::size_t indent) const {
    std::vector<std::string> headings;
    std::vector<std::size_t> widths;
    for (const Column& column : columns_) {
        headings.push_back(column.heading);
        widths.push_back(CharacterCount(column.heading));
    }
    for (const std::vector<std::string>& row : rows_) {
        for (std::size_t c = 0; c < row.size(); ++c) {
            widths[c] = std::max(widths[c], CharacterCount(row[c]));
        }
    }
    out << Line(headings, widths, columns_, indent);
    for (const std::vector<std::string>& row : rows_) {
        out << Line(row, widths, columns_, indent);
    }
}

}  // namespace qnl::text
