#include "info/FileFacts.h"

#include <algorithm>

#include "text/JsonWriter.h"
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
    out << "\n" << source.title << "\n";
    table.Print(out);
}

void WriteValue(text::JsonWriter& json, const FactValue& value) {
    std::visit([&](const auto& plain) { json.Value(plain); }, value);
}

void WriteTable(text::JsonWriter& json, const FactTable& table) {
    json.Key(table.key);
    json.BeginArray();
    for (const std::vector<FactValue>& row : table.rows) {
        json.BeginObject();
        for (std::size_t c = 0; c < row.size(); ++c) {
            json.Key(table.columns[c].key);
            WriteValue(json, row[c]);
        }
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

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
        PrintTable(table, out);
    }
}

void PrintJson(const FileFacts& file, std::ostream& out) {
    text::JsonWriter json;
    json.BeginObject();
    json.Key("file");
    json.Value(file.path);
    json.Key("kind");
    json.Value(file.kind);
    for (const Fact& fact : file.facts) {
        json.Key(fact.key);
        WriteValue(json, fact.value);
    }
    for (const FactTable& table : file.tables) {
        WriteTable(json, table);
    }
    json.Key("faults");
    json.BeginArray();
    for (const std::string& fault : file.faults) {
        json.Value(fault);
    }
    json.EndArray();
    json.EndObject();
    out << json.Text();
}

}  // namespace qnl::info
