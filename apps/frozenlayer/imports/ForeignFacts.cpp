#include "imports/ForeignFacts.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <set>

#include "host/Interrupts.h"
#include "imports/ImportMeshData.h"
#include "imports/ImportTables.h"
#include "imports/ImportUnits.h"
#include "imports/RegionChoice.h"
#include "interop/ForeignSeries.h"
#include "interop/SolidMesh.h"
#include "text/NumberText.h"

namespace qnl::imports {

namespace {

constexpr const char* kOwnMesh = ".hdf";

std::vector<RegionRow> NamedRegions(const interop::ForeignSnapshot& snapshot) {
    std::vector<RegionRow> rows;
    for (const RegionSize& region : SizesOfRegions(snapshot)) {
        rows.push_back({region.name, region.cells, "for --part, --ignore"});
    }
    if (rows.empty()) {
        rows.push_back({"-", static_cast<std::int64_t>(snapshot.mesh.cellTypes.size()), "no named regions"});
    }
    return rows;
}

/// The quantity that an array of this name and size stands for where no option names one.
std::string QuantityOf(const interop::ForeignSnapshot& snapshot, const interop::ForeignArray& array,
                       ChosenArray& chosen) {
    for (const QuantityRule& rule : kQuantityRules) {
        const ChosenArray found = ChooseArray(rule, {}, snapshot);
        if (found.by != ChosenBy::Nothing && found.name == array.name && found.onCells == array.onCells) {
            chosen = found;
            return rule.name;
        }
    }
    chosen = {ChosenBy::Nothing, array.name, array.onCells};
    return {};
}

/// Widens the range of a row by the finite values of an array.
void Widen(ArrayRow& row, const interop::ForeignArray& array) {
    for (const double value : array.values) {
        if (std::isfinite(value)) {
            row.low = std::min(row.low, value);
            row.high = std::max(row.high, value);
        }
    }
}

void AddArrays(const interop::ForeignSnapshot& snapshot, std::vector<ArrayRow>& rows) {
    for (const interop::ForeignArray& array : snapshot.arrays) {
        const auto known = std::find_if(rows.begin(), rows.end(), [&](const ArrayRow& row) {
            return row.array.name == array.name && row.array.onCells == array.onCells &&
                   row.components == array.components;
        });
        if (known != rows.end()) {
            Widen(*known, array);
            continue;
        }
        ArrayRow row{"",
                     {},
                     array.components,
                     "",
                     std::numeric_limits<double>::infinity(),
                     -std::numeric_limits<double>::infinity(),
                     "as in the file"};
        row.quantity = QuantityOf(snapshot, array, row.array);
        Widen(row, array);
        rows.push_back(std::move(row));
    }
}

void AddMesh(const interop::ForeignSnapshot& snapshot, double millimetres, info::FileFacts& facts) {
    facts.Add("points", "Points", "", static_cast<std::int64_t>(snapshot.mesh.points.size()));
    facts.Add("cells", "Cells", "", static_cast<std::int64_t>(snapshot.mesh.cellTypes.size()));
    try {
        const interop::SolidMesh solid = interop::BuildSolidMesh(snapshot.mesh, millimetres, snapshot.file);
        facts.Add("nodes", "Nodes of volume cells", "", std::int64_t{solid.mesh.Nodes()});
        for (const std::string& remark : CellRemarks(solid)) {
            facts.Add("remark", "Remark", "", remark);
        }
        facts.tables.push_back(CellTable(solid));
    } catch (const interop::ForeignProblem& problem) {
        facts.Add("refused", "Import refuses the mesh", "", std::string(problem.what()));
    }
    facts.tables.push_back(RegionTable(NamedRegions(snapshot)));
}

std::set<double> NumbersOf(const interop::ForeignArray& array) {
    return {array.values.begin(), array.values.end()};
}

bool IsRegionArray(const interop::ForeignArray& array) {
    return array.onCells && array.components == 1 &&
           std::all_of(array.values.begin(), array.values.end(),
                       [](double value) { return std::trunc(value) == value; });
}

}  // namespace

bool IsForeignFile(const std::string& path) {
    return std::filesystem::path(path).extension() != kOwnMesh && interop::IsForeignFormat(path);
}

info::FileFacts ReadForeignFacts(const std::string& path) {
    const auto series = interop::OpenForeignSeries({path});
    ImportRequest request;
    request.lengthUnit = series->IsSi() ? "m" : "mm";
    info::FileFacts facts;
    std::vector<ArrayRow> arrays;
    std::vector<TimeRow> times;
    const auto count = static_cast<std::size_t>(series->Count());
    for (std::size_t index = 0; index < count; ++index) {
        host::RaiseIfInterrupted();
        const interop::ForeignSnapshot snapshot = series->Read(static_cast<int>(index));
        if (index == 0) {
            AddMesh(snapshot, LengthUnit(request), facts);
        }
        AddArrays(snapshot, arrays);
        if (snapshot.seconds) {
            times.push_back({*snapshot.seconds, snapshot.file, index + 1 == count ? 0 : index + 1});
        }
    }
    facts.tables.push_back(ArrayTable(arrays));
    facts.tables.push_back(TimeTable(times));
    return facts;
}

void ListRegions(const ImportRequest& request, std::ostream& out) {
    constexpr std::size_t kMostListed = 20;
    const interop::ForeignSnapshot snapshot =
        interop::OpenForeignSeries(request.files, request.values)->Read(0);
    info::PrintTable(RegionTable(NamedRegions(snapshot)), out);
    for (const interop::ForeignArray& array : snapshot.arrays) {
        if (!IsRegionArray(array)) {
            continue;
        }
        const std::set<double> numbers = NumbersOf(array);
        std::string list;
        for (auto it = numbers.begin(); it != numbers.end() && list.size() < kMostListed * 4; ++it) {
            list += (list.empty() ? "" : ", ") + text::NumberText(*it);
        }
        out << "\n--region-array " + array.name + ": " +
                   text::CountText(static_cast<long long>(numbers.size()), "number") + ", " + list + "\n";
    }
}

}  // namespace qnl::imports
