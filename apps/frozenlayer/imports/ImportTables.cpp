#include "imports/ImportTables.h"

#include "text/NumberText.h"

namespace qnl::imports {

namespace {

std::string PlaceText(const ArrayRow& row) {
    const std::string place = !row.array.onCells     ? "points"
                              : row.array.onBoundary ? "cells and boundary"
                                                     : "cells";
    return row.components == 1 ? place : place + ", " + std::to_string(row.components) + " components";
}

const char* ChoiceText(const ArrayRow& row) {
    return row.array.by == ChosenBy::Option ? row.option.c_str()
           : row.array.by == ChosenBy::Name ? "its name"
                                            : "-";
}

}  // namespace

info::FactTable CellTable(const interop::SolidMesh& solid) {
    info::FactTable table{"cells_by_type",
                          "Cells",
                          {{"type", "Cells"}, {"number", "Number"}, {"volume_mm3", "Volume mm³"}},
                          {}};
    for (const kernel::CellShape& shape : kernel::kCellShapes) {
        std::int64_t count = 0;
        double volume = 0.0;
        for (std::size_t cell = 0; cell < solid.volumes.size(); ++cell) {
            if (solid.mesh.cellTypes[cell] == static_cast<std::uint8_t>(shape.type)) {
                ++count;
                volume += solid.volumes[cell];
            }
        }
        if (count > 0) {
            table.rows.push_back({std::string(shape.name), count, volume});
        }
    }
    return table;
}

std::vector<std::string> CellRemarks(const interop::SolidMesh& solid) {
    std::vector<std::string> remarks;
    if (solid.madeLinear > 0) {
        remarks.push_back(text::CountText(solid.madeLinear, "quadratic cell") + " made linear");
    }
    if (solid.leftOut > 0) {
        remarks.push_back(text::CountText(solid.leftOut, "cell") + " without volume left out");
    }
    return remarks;
}

info::FactTable RegionTable(const std::vector<RegionRow>& rows) {
    info::FactTable table{
        "regions", "Regions", {{"region", "Region"}, {"cells", "Cells"}, {"origin", "Origin"}}, {}};
    for (const RegionRow& row : rows) {
        table.rows.push_back({row.name, row.cells, row.origin});
    }
    return table;
}

info::FactTable ArrayTable(const std::vector<ArrayRow>& rows) {
    info::FactTable table{"arrays",
                          "Arrays, over all times",
                          {{"quantity", "Quantity"},
                           {"array", "Array"},
                           {"on", "On"},
                           {"chosen_by", "Chosen by"},
                           {"min", "Minimum"},
                           {"max", "Maximum"},
                           {"unit", "Unit"}},
                          {}};
    for (const ArrayRow& row : rows) {
        table.rows.push_back({row.quantity.empty() ? std::string("-") : row.quantity, row.array.name,
                              PlaceText(row), std::string(ChoiceText(row)), row.low, row.high, row.unit});
    }
    return table;
}

info::FactTable TimeTable(const std::vector<TimeRow>& rows) {
    info::FactTable table{"times",
                          "Output times",
                          {{"time_s", "Time s"}, {"file", "File"}, {"output_time", "Output time"}},
                          {}};
    for (const TimeRow& row : rows) {
        table.rows.push_back(
            {row.seconds, row.file,
             row.index == 0 ? std::string("base time") : "index " + std::to_string(row.index)});
    }
    return table;
}

}  // namespace qnl::imports
