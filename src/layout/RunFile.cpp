#include "layout/RunFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "base/Text.h"

namespace qnl::layout {

namespace {

/// A line counts up to 254 bytes; the rest of a longer one is the next line.
constexpr std::size_t kLineBuffer = 255;

/// A section of the run file: its header, the key of its count, and what its first entry names.
struct Section {
    std::string_view header;
    std::string_view countKey;
    std::string_view entryKey;
    std::optional<std::string> RunFileNames::*name;
};

constexpr std::array<Section, 2> kSections{{
    {"[MESH]", "MeshCount", "Mesh1", &RunFileNames::mesh},
    {"[MATERIAL]", "MaterialCount", "Material1", &RunFileNames::material},
}};

std::string LineValue(std::string_view line) {
    std::string value(line);
    ExtractLineValue(value);
    return value;
}

const Section* FindSection(std::string_view line) {
    const auto* found = std::find_if(kSections.begin(), kSections.end(),
                                     [line](const Section& section) { return Holds(line, section.header); });
    return found != kSections.end() ? found : nullptr;
}

/// The cursor stands behind the count line: takes the first entry and passes over the others.
void ReadEntries(const Section& section, int count, TokenReader& file, RunFileNames& names) {
    std::string_view line;
    for (int k = 1; k == 1 || k <= count; ++k) {
        if (!file.ReadLine(kLineBuffer, line)) {
            return;
        }
        if (k == 1) {
            names.*section.name = LineValue(line);
        }
    }
}

}  // namespace

RunFileNames ReadRunFileNames(TokenReader& file) {
    RunFileNames names;
    std::string_view line;
    bool examine = file.ReadLine(kLineBuffer, line);
    while (examine) {
        const Section* section = FindSection(line);
        examine = file.ReadLine(kLineBuffer, line);
        if (section != nullptr && examine && Holds(line, section->countKey)) {
            int count = 0;
            TokenReader(LineValue(line)).ReadInt(count);
            ReadEntries(*section, count, file, names);
            examine = file.ReadLine(kLineBuffer, line);
        }
    }
    return names;
}

std::string RunFileText(const std::string& mesh, const std::string& material) {
    const RunFileNames names{mesh, material};
    std::string text;
    for (const Section& section : kSections) {
        text += std::string(section.header) + "\n" + std::string(section.countKey) + " = 1\n" +
                std::string(section.entryKey) + " = " + (names.*section.name).value_or("") + "\n";
    }
    return text;
}

void ExtractLineValue(std::string& line) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) {
        const bool blank = equals + 1 < line.size() && line[equals + 1] == ' ';
        line.erase(0, equals + (blank ? 2 : 1));
    }
    line.resize(std::min(line.find('\n'), line.size()));
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
}

}  // namespace qnl::layout
