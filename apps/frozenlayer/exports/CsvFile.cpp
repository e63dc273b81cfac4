#include "exports/CsvFile.h"

#include "platform/HostFiles.h"
#include "text/TextFile.h"

namespace qnl::exports {

namespace {

std::string HeadRow(const ExportFrame& frame) {
    std::string row = "Node label,x [mm],y [mm],z [mm]";
    for (const ExportArray& array : frame.arrays) {
        for (std::size_t c = 0; c < static_cast<std::size_t>(array.components); ++c) {
            row += "," + CsvField(array.components == 1 ? array.name : ComponentName(array, c));
        }
    }
    for (const ExportNumber& number : frame.numbers) {
        row += "," + CsvField(number.name);
    }
    return row + "\n";
}

std::string FieldText(int number) {
    return std::to_string(number);
}
std::string FieldText(float number) {
    return text::ExactText(number);
}

/// Values of one node, each behind a comma.
std::string ValuesOf(const ExportArray& array, std::size_t node) {
    const auto components = static_cast<std::size_t>(array.components);
    std::string text;
    std::visit(
        [&](const auto& values) {
            for (std::size_t c = 0; c < components; ++c) {
                text += "," + FieldText(values[node * components + c]);
            }
        },
        array.values);
    return text;
}

}  // namespace

bool WriteCsvSurface(const std::string& path, const ExportSurface& surface, const ExportFrame& frame) {
    ReplacedFile file(path, "wb");
    file.Append(HeadRow(frame));
    std::string numbers;
    for (const ExportNumber& number : frame.numbers) {
        numbers += "," + text::ExactText(number.value);
    }
    for (std::size_t i = 0; i < surface.points.size(); ++i) {
        std::string row = std::to_string(surface.labels[i]);
        for (const float coordinate : surface.points[i]) {
            row += "," + text::ExactText(coordinate);
        }
        for (const ExportArray& array : frame.arrays) {
            row += ValuesOf(array, i);
        }
        file.Append(row + numbers + "\n");
    }
    return file.Commit();
}

bool WriteCsvTimes(const std::string& path, const std::string& timeLabel,
                   const std::vector<CollectionEntry>& entries) {
    ReplacedFile file(path, "wb");
    file.Append("File," + CsvField(timeLabel) + "\n");
    for (const CollectionEntry& entry : entries) {
        file.Append(CsvField(entry.file) + "," + text::ExactText(entry.time) + "\n");
    }
    return file.Commit();
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char character : text) {
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    }
    return quoted + "\"";
}

}  // namespace qnl::exports
