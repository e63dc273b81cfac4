#pragma once

#include <string>
#include <vector>

#include "imports/ImportArrays.h"
#include "info/FileFacts.h"
#include "interop/ForeignSeries.h"
#include "interop/SolidMesh.h"

namespace qnl::imports {

// The tables by which import and info tell of foreign files.

/// Cells of the mesh by shape, with their volume.
info::FactTable CellTable(const interop::SolidMesh& solid);

/// What was made linear or left out, one sentence each.
std::vector<std::string> CellRemarks(const interop::SolidMesh& solid);

struct RegionRow {
    std::string name;
    std::int64_t cells;
    std::string origin;
};
info::FactTable RegionTable(const std::vector<RegionRow>& rows);

/// An array with the range of its finite values over all times.
struct ArrayRow {
    std::string quantity;  ///< empty: none
    ChosenArray array;
    int components;
    std::string option;  ///< that names it
    double low;
    double high;
    std::string unit;
};
info::FactTable ArrayTable(const std::vector<ArrayRow>& rows);

/// An output time by its file; index 0 is the base time.
struct TimeRow {
    double seconds;
    std::string file;
    std::size_t index;
};
info::FactTable TimeTable(const std::vector<TimeRow>& rows);

}  // namespace qnl::imports
