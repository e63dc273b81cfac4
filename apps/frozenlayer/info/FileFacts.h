#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace qnl::info {

using FactValue = std::variant<std::string, std::int64_t, double, bool>;

/// One thing known of a file: key for machines (with its unit), label and unit for people (no unit: empty).
struct Fact {
    std::string key;
    std::string label;
    std::string unit;
    FactValue value;
};

struct FactTable {
    struct Column {
        std::string key;
        std::string heading;
    };
    std::string key;
    std::string title;
    std::vector<Column> columns;
    std::vector<std::vector<FactValue>> rows;  ///< as many values as columns
};

/// What a file holds.
struct FileFacts {
    std::string path;  ///< as this system's users write it
    std::string kind;
    std::vector<Fact> facts;
    std::vector<FactTable> tables;
    std::vector<std::string> faults;  ///< sentences

    void Add(std::string key, std::string label, std::string unit, FactValue value) {
        facts.push_back({std::move(key), std::move(label), std::move(unit), std::move(value)});
    }
};

/// A table for people, without its title.
void PrintTable(const FactTable& source, std::ostream& out);

/// A few lines for people.
void PrintText(const FileFacts& file, std::ostream& out);

/// One JSON object: "file", "kind", the facts under their keys, each table as an array of objects.
void PrintJson(const FileFacts& file, std::ostream& out);

}  // namespace qnl::info
