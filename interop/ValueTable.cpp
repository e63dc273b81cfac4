#include "interop/ValueTable.h"

#include <algorithm>
#include <limits>

#include "hdf5/Hdf5.h"
#include "interop/ForeignFile.h"
#include "interop/ForeignSeries.h"
#include "interop/ForeignText.h"

namespace qnl::interop {

namespace {

/// Fields of a line without their quotes; a separator between quotes does not count.
std::vector<std::string> FieldsOf(std::string_view line, char separator) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == separator && !quoted) {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    for (std::string& field : fields) {
        field = Trimmed(field);
    }
    return fields;
}

char SeparatorOf(std::string_view head) {
    for (const char separator : {';', '\t'}) {
        if (head.find(separator) != std::string_view::npos) {
            return separator;
        }
    }
    return ',';
}

class TextTableReader {
public:
    explicit TextTableReader(const std::string& file) : text_(file) { table_.file = file; }

    ValueTable Read() {
        ReadHead();
        std::string_view line;
        while (NextLine(line)) {
            AddRow(FieldsOf(line, separator_));
        }
        return std::move(table_);
    }

private:
    /// The next line that counts.
    bool NextLine(std::string_view& line) {
        while (text_.Next(line)) {
            line = Trimmed(line.substr(0, 1) == "\xEF" ? line.substr(kByteOrderMark.size()) : line);
            if (!line.empty() && line.front() != '#') {
                return true;
            }
        }
        return false;
    }

    void ReadHead() {
        std::string_view head;
        if (!NextLine(head)) {
            throw ForeignProblem(table_.file + " is empty; give a table with a line of column names");
        }
        separator_ = SeparatorOf(head);
        for (const std::string& name : FieldsOf(head, separator_)) {
            if (name.empty()) {
                text_.Fail("a name for each column",
                           "none for column " + std::to_string(table_.columns.size() + 1), "name it");
            }
            table_.columns.push_back({WithPoint(name), 1, {}});
        }
    }

    /// A text with "." as its decimal mark.
    std::string WithPoint(std::string text) const {
        if (separator_ == ';') {
            std::replace(text.begin(), text.end(), ',', '.');
        }
        return text;
    }

    void AddRow(const std::vector<std::string>& fields) {
        if (fields.size() != table_.columns.size()) {
            text_.Fail(std::to_string(table_.columns.size()) + " fields, as many as there are names",
                       std::to_string(fields.size()), "repair the line");
        }
        for (std::size_t c = 0; c < fields.size(); ++c) {
            const std::optional<double> value = fields[c].empty() ? std::numeric_limits<double>::quiet_NaN()
                                                                  : RealNumber(WithPoint(fields[c]));
            if (!value) {
                text_.Fail("a number in column " + Quoted(table_.columns[c].name), Quoted(fields[c]),
                           "repair the line");
            }
            table_.columns[c].values.push_back(*value);
        }
        ++table_.rows;
    }

    static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    ForeignText text_;
    ValueTable table_;
    char separator_ = ',';
};

void AddDataset(const hdf5::InputFile& file, const std::string& name, ValueTable& table) {
    constexpr std::uint64_t kMostValues = std::uint64_t{1} << 31U;
    constexpr std::uint64_t kComponents = 3;
    const hdf5::DatasetInfo info = file.Describe("/" + name);
    const bool isVector = info.shape.size() == 2 && info.shape[1] == kComponents;
    if (!isVector && info.shape.size() != 1) {
        throw ForeignProblem(table.file + ": dataset " + Quoted(name) +
                             " is no column of n or n x 3 numbers; write one of them for each column");
    }
    if (!table.columns.empty() && info.shape[0] != table.rows) {
        throw ForeignProblem(table.file + ": dataset " + Quoted(name) + " has " +
                             std::to_string(info.shape[0]) + " rows, but " + Quoted(table.columns[0].name) +
                             " has " + std::to_string(table.rows) + "; write all columns with the same rows");
    }
    table.rows = info.shape[0];
    table.columns.push_back(
        {name, isVector ? static_cast<int>(kComponents) : 1, file.Read<double>("/" + name, kMostValues)});
}

ValueTable ReadHdf5Table(const std::string& path) {
    ValueTable table;
    table.file = path;
    try {
        const hdf5::InputFile file(path);
        for (const std::string& name : file.List("/")) {
            AddDataset(file, name, table);
        }
    } catch (const hdf5::Hdf5Error& error) {
        throw ForeignProblem(path + ": " + error.Object() + ": " + error.Reason() + "; write it anew");
    }
    if (table.columns.empty()) {
        throw ForeignProblem(path + " is empty; give a dataset for each column");
    }
    return table;
}

}  // namespace

ValueTable ReadValueTable(const std::string& file) {
    CheckForeignFile(file);
    const bool isHdf5 = hdf5::Recognise(file) == hdf5::FileKind::Hdf5;
    return isHdf5 ? ReadHdf5Table(file) : TextTableReader(file).Read();
}

}  // namespace qnl::interop
