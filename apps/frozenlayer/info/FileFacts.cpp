#include "info/FileFacts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TextTable.h"

namespace qnl::info {

namespace {

/// Texts stand left, numbers right.
bool IsText(const FactValue& value) {
    return std::holds_alternative<std::string>(value) || std::holds_alternative<bool>(value);
}

std::string ValueText(const FactValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* count = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*count);
    }
    if (const auto* truth = std::get_if<bool>(&value)) {
        return *truth ? "yes" : "no";
    }
    return text::NumberText(std::get<double>(value));
}

text::Json JsonValue(const FactValue& value) {
    return std::visit([](const auto& alternative) { return text::Json(alternative); }, value);
}

text::Json JsonTable(const FactTable& table) {
    text::Json rows = text::Json::array();
    for (const std::vector<FactValue>& row : table.rows) {
        text::Json& object = rows.emplace_back(text::Json::object());
        for (std::size_t c = 0; c < row.size(); ++c) {
            object[table.columns[c].key] = JsonValue(row[c]);
        }
    }
    return rows;
}

}  // namespace

void PrintTable(const FactTable& source, std::ostream& out) {
    std::vector<text::TextTable::Column> columns;
    for (std::size_t c = 0; c < source.columns.size(); ++c) {
        const bool isText = source.rows.empty() || IsText(source.rows.front()[c]);
        columns.push_back({source.columns[c].heading,
                           isText ? text::TextTable::Align::Left : text::TextTable::Align::Right});
    }
    text::TextTable table(std::move(columns));
    for (const std::vector<FactValue>& row : source.rows) {
        std::vector<std::string> cells;
        std::transform(row.begin(), row.end(), std::back_inserter(cells), ValueText);
        table.AddRow(std::move(cells));
    }
    table.Print(out);
}

void PrintText(const FileFacts& file, std::ostream& out) {
    out << file.path << ": " << file.kind << "\n";
    std::size_t width = 0;
    std::vector<std::string> labels;
    for (const Fact& fact : file.facts) {
        labels.push_back(fact.label + (fact.unit.empty() ? "" : " (" + fact.unit + ")"));
        width = std::max(width, text::CharacterCount(labels.back()));
    }
    for (std::size_t i = 0; i < labels.size(); ++i) {
        out << "  " << labels[i] << std::string(width + 2 - text::CharacterCount(labels[i]), ' ')
            << ValueText(file.facts[i].value) << "\n";
    }
    for (const FactTable& table : file.tables) {
        out << "\n" << table.title << "\n";
        PrintTable(table, out);
    }
}

void PrintJson(const FileFacts& file, std::ostream& out) {
    text::Json json{{"file", file.path}, {"kind", file.kind}};
    for (const Fact& fact : file.facts) {
        json[fact.key] = JsonValue(fact.value);
    }
    for (const FactTable& table : file.tables) {
        json[table.key] = JsonTable(table);
    }
    json["faults"] = file.faults;
    out << text::JsonText(json);
}

}  // namespace qnl::info
