#include "imports/ImportReport.h"

#include <algorithm>
#include <numeric>

#include "imports/ImportStage.h"
#include "text/NumberText.h"
#include "text/ShellWord.h"
#include "text/TextTable.h"

namespace qnl::imports {

namespace {

using Align = text::TextTable::Align;

void PrintCells(const interop::SolidMesh& solid, std::ostream& out) {
    text::TextTable table({{"Cells"}, {"Number", Align::Right}, {"Volume mm³", Align::Right}});
    for (const kernel::CellShape& shape : kernel::kCellShapes) {
        long long count = 0;
        double volume = 0.0;
        for (std::size_t cell = 0; cell < solid.volumes.size(); ++cell) {
            if (solid.mesh.cellTypes[cell] == static_cast<std::uint8_t>(shape.type)) {
                ++count;
                volume += solid.volumes[cell];
            }
        }
        if (count > 0) {
            table.AddRow({shape.name, std::to_string(count), text::NumberText(volume)});
        }
    }
    table.Print(out);
    if (solid.madeLinear > 0) {
        out << "  " + text::CountText(solid.madeLinear, "quadratic cell") + " made linear\n";
    }
    if (solid.leftOut > 0) {
        out << "  " + text::CountText(solid.leftOut, "cell") + " without volume left out\n";
    }
}

void PrintRegions(const ImportedCase& imported, std::ostream& out) {
    constexpr std::array<const char*, 3> kNames{"part", "runner", "special"};
    const std::string origin =
        imported.regionArray.empty() ? "no region array: all part" : "from \"" + imported.regionArray + "\"";
    text::TextTable table({{"Region"}, {"Cells", Align::Right}, {"Origin"}});
    const auto& regions = imported.solid.mesh.regions;
    for (std::size_t region = 0; region < kNames.size(); ++region) {
        const auto count = regions.empty() && region == 0
                               ? static_cast<std::ptrdiff_t>(imported.solid.volumes.size())
                               : std::count(regions.begin(), regions.end(), static_cast<std::int8_t>(region));
        if (count > 0) {
            table.AddRow({kNames[region], std::to_string(count), origin});
        }
    }
    table.Print(out);
}

const char* PlaceText(const ChosenArray& chosen) {
    return !chosen.onCells ? "points" : chosen.onBoundary ? "cells and boundary" : "cells";
}

void PrintArrays(const ImportedCase& imported, std::ostream& out) {
    text::TextTable table({{"Quantity"},
                           {"Array"},
                           {"On"},
                           {"Chosen by"},
                           {"Minimum", Align::Right},
                           {"Maximum", Align::Right},
                           {"Unit"}});
    for (const QuantityRule& rule : kQuantityRules) {
        const ChosenArray& chosen = imported.Chosen(rule.quantity);
        if (chosen.by == ChosenBy::Nothing) {
            continue;
        }
        const auto [low, high] = QuantityRange(imported, rule.quantity);
        table.AddRow({rule.name, chosen.name, PlaceText(chosen),
                      chosen.by == ChosenBy::Option ? rule.option : "its name",
                      text::NumberText(static_cast<double>(low)), text::NumberText(static_cast<double>(high)),
                      rule.unit});
    }
    table.Print(out);
}

void PrintTimes(const ImportedCase& imported, std::ostream& out) {
    text::TextTable table({{"Time s", Align::Right}, {"File"}, {"Output time"}});
    for (std::size_t i = 0; i < imported.times.size(); ++i) {
        const bool isBase = i + 1 == imported.times.size();
        table.AddRow({text::NumberText(imported.times[i].seconds), imported.times[i].file,
                      isBase ? "base time" : "index " + std::to_string(i + 1)});
    }
    table.Print(out);
}

}  // namespace

void PrintImport(const ImportRequest& request, const ImportedCase& imported, const ImportedMaterial& material,
                 const ImportedProject& project, std::ostream& out) {
    out << "Mesh: " + text::CountText(imported.solid.mesh.Nodes(), "node") + ", " +
               text::CountText(imported.solid.mesh.Cells(), "cell") + ", read in " + request.lengthUnit +
               "\n";
    PrintCells(imported.solid, out);
    out << "\nRegions\n";
    PrintRegions(imported, out);
    out << "\nArrays, over all times\n";
    PrintArrays(imported, out);
    for (const std::string& sentence : project.computed) {
        out << "  " + sentence + "\n";
    }
    out << "\nOutput times\n";
    PrintTimes(imported, out);
    out << "\nMaterial: " + material.origin + "\nProject: " + request.folder + "\nNext: frozenlayer run " +
               text::ShellPath(project.stageFile) + "\n";
}

}  // namespace qnl::imports
