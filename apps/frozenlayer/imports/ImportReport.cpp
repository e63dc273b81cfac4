#include "imports/ImportReport.h"

#include <algorithm>
#include <array>

#include "imports/ImportTables.h"
#include "text/NumberText.h"
#include "text/ShellWord.h"

namespace qnl::imports {

namespace {

std::vector<RegionRow> RegionsOf(const ImportedCase& imported) {
    constexpr std::array<const char*, 3> kNames{"part", "runner", "special"};
    const std::string origin =
        imported.regionArray.empty() ? "no region array: all part" : "from \"" + imported.regionArray + "\"";
    std::vector<RegionRow> rows;
    const auto& regions = imported.solid.mesh.regions;
    for (std::size_t region = 0; region < kNames.size(); ++region) {
        const auto count = regions.empty() && region == 0
                               ? static_cast<std::ptrdiff_t>(imported.solid.volumes.size())
                               : std::count(regions.begin(), regions.end(), static_cast<std::int8_t>(region));
        if (count > 0) {
            rows.push_back({kNames[region], count, origin});
        }
    }
    return rows;
}

std::vector<ArrayRow> ArraysOf(const ImportedCase& imported) {
    std::vector<ArrayRow> rows;
    for (const QuantityRule& rule : kQuantityRules) {
        const ChosenArray& chosen = imported.Chosen(rule.quantity);
        if (chosen.by != ChosenBy::Nothing) {
            const auto [low, high] = QuantityRange(imported, rule.quantity);
            rows.push_back({rule.name, chosen, rule.components, rule.option, static_cast<double>(low),
                            static_cast<double>(high), rule.unit});
        }
    }
    return rows;
}

std::vector<TimeRow> TimesOf(const ImportedCase& imported) {
    std::vector<TimeRow> rows;
    for (std::size_t i = 0; i < imported.times.size(); ++i) {
        const bool isBase = i + 1 == imported.times.size();
        rows.push_back({imported.times[i].seconds, imported.times[i].file, isBase ? 0 : i + 1});
    }
    return rows;
}

}  // namespace

void PrintImport(const ImportRequest& request, const ImportedCase& imported, const ImportedMaterial& material,
                 const ImportedProject& project, std::ostream& out) {
    out << "Mesh: " + text::CountText(imported.solid.mesh.Nodes(), "node") + ", " +
               text::CountText(imported.solid.mesh.Cells(), "cell") + ", read in " + request.lengthUnit +
               "\n";
    info::PrintTable(CellTable(imported.solid), out);
    for (const std::string& remark : CellRemarks(imported.solid)) {
        out << "  " + remark + "\n";
    }
    out << "\nRegions\n";
    info::PrintTable(RegionTable(RegionsOf(imported)), out);
    out << "\nArrays, over all times\n";
    info::PrintTable(ArrayTable(ArraysOf(imported)), out);
    for (const std::string& sentence : project.computed) {
        out << "  " + sentence + "\n";
    }
    out << "\nOutput times\n";
    info::PrintTable(TimeTable(TimesOf(imported)), out);
    out << "\nMaterial: " + material.origin + "\nProject: " + request.folder + "\nNext: frozenlayer run " +
               text::ShellPath(project.stageFile) + "\n";
}

}  // namespace qnl::imports
