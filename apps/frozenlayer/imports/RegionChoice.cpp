#include "imports/RegionChoice.h"

#include <algorithm>
#include <string>
#include <vector>

#include "imports/ImportArrays.h"
#include "text/NumberText.h"

namespace qnl::imports {

namespace {

using Names = std::vector<std::string>;

bool Holds(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::size_t BlockOf(const interop::ForeignArray& blocks, std::size_t cell) {
    return static_cast<std::size_t>(blocks.values[cell]);
}

/// The cell array of several named blocks; null when there are none.
const interop::ForeignArray* BlocksOf(const interop::ForeignSnapshot& snapshot) {
    return snapshot.blocks.empty() ? nullptr : FindCellArray(snapshot, interop::kBlockArray);
}

/// Each region with its number of cells.
std::string ListRegionsOf(const interop::ForeignSnapshot& snapshot) {
    std::string list;
    for (const RegionSize& region : SizesOfRegions(snapshot)) {
        list += (list.empty() ? "" : ", ") + ("\"" + region.name + "\" (") +
                text::CountText(region.cells, "cell") + ")";
    }
    return list;
}

void CheckNames(const Names& wanted, const char* option, const interop::ForeignSnapshot& snapshot,
                const std::string& list) {
    const std::vector<RegionSize> regions = SizesOfRegions(snapshot);
    const auto wrong = std::find_if(wanted.begin(), wanted.end(), [&](const std::string& name) {
        return std::none_of(regions.begin(), regions.end(),
                            [&](const RegionSize& region) { return region.name == name; });
    });
    if (wrong != wanted.end()) {
        throw interop::ForeignProblem(snapshot.file + " has no region \"" + *wrong + "\" of " + option +
                                      "; there are " + list);
    }
}

/// Whether each cell is in one of the named regions.
std::vector<bool> CellsOf(const Names& names, const interop::ForeignSnapshot& snapshot) {
    std::vector<bool> inside(snapshot.mesh.cellTypes.size(), false);
    if (const interop::ForeignArray* blocks = BlocksOf(snapshot)) {
        for (std::size_t cell = 0; cell < inside.size(); ++cell) {
            inside[cell] = Holds(names, snapshot.blocks[BlockOf(*blocks, cell)]);
        }
    }
    for (const interop::ForeignSet& set : snapshot.sets) {
        for (std::size_t i = 0; Holds(names, set.name) && i < set.cells.size(); ++i) {
            inside[static_cast<std::size_t>(set.cells[i])] = true;
        }
    }
    return inside;
}

/// The cells of the regions that the request chooses.
std::vector<std::size_t> ChosenCells(const ImportRequest& request, const interop::ForeignSnapshot& snapshot) {
    const std::vector<bool> parts = CellsOf(request.parts, snapshot);
    const std::vector<bool> ignored = CellsOf(request.ignored, snapshot);
    std::vector<std::size_t> cells;
    for (std::size_t cell = 0; cell < parts.size(); ++cell) {
        if ((request.parts.empty() || parts[cell]) && !ignored[cell]) {
            cells.push_back(cell);
        }
    }
    return cells;
}

/// Keeps these cells, with their entries in the arrays.
void KeepCells(interop::ForeignSnapshot& snapshot, const std::vector<std::size_t>& kept) {
    const interop::ForeignMesh& mesh = snapshot.mesh;
    interop::ForeignMesh left;
    left.offsets.push_back(0);
    for (const std::size_t cell : kept) {
        left.cellTypes.push_back(mesh.cellTypes[cell]);
        left.nodes.insert(left.nodes.end(), mesh.nodes.begin() + mesh.offsets[cell],
                          mesh.nodes.begin() + mesh.offsets[cell + 1]);
        left.offsets.push_back(static_cast<std::int64_t>(left.nodes.size()));
    }
    for (interop::ForeignArray& array : snapshot.arrays) {
        if (!array.onCells) {
            continue;
        }
        const auto width = static_cast<std::size_t>(array.components);
        std::vector<double> values;
        values.reserve(kept.size() * width);
        for (const std::size_t cell : kept) {
            const auto first = array.values.begin() + static_cast<std::ptrdiff_t>(cell * width);
            values.insert(values.end(), first, first + array.components);
        }
        array.values = std::move(values);
    }
    snapshot.mesh.cellTypes = std::move(left.cellTypes);
    snapshot.mesh.offsets = std::move(left.offsets);
    snapshot.mesh.nodes = std::move(left.nodes);
}

}  // namespace

std::vector<RegionSize> SizesOfRegions(const interop::ForeignSnapshot& snapshot) {
    std::vector<RegionSize> regions;
    if (const interop::ForeignArray* blocks = BlocksOf(snapshot)) {
        for (const std::string& name : snapshot.blocks) {
            regions.push_back({name, 0});
        }
        for (std::size_t cell = 0; cell < blocks->values.size(); ++cell) {
            ++regions[BlockOf(*blocks, cell)].cells;
        }
    }
    for (const interop::ForeignSet& set : snapshot.sets) {
        regions.push_back({set.name, static_cast<std::int64_t>(set.cells.size())});
    }
    return regions;
}

void KeepChosenBlocks(const ImportRequest& request, interop::ForeignSnapshot& snapshot) {
    const bool chooses = !request.parts.empty() || !request.ignored.empty();
    const std::string list = ListRegionsOf(snapshot);
    if (!chooses) {
        if (BlocksOf(snapshot) != nullptr && request.regionArray.empty()) {
            throw interop::ForeignProblem(snapshot.file + " has several regions, " + list +
                                          "; say which are the part with --part NAME,..., or which are not "
                                          "with --ignore NAME,...");
        }
        return;
    }
    if (list.empty()) {
        throw interop::ForeignProblem(snapshot.file +
                                      " has no named regions to choose from; leave out --part and --ignore, "
                                      "or tell regions by a cell array with --region-array");
    }
    CheckNames(request.parts, "--part", snapshot, list);
    CheckNames(request.ignored, "--ignore", snapshot, list);
    KeepCells(snapshot, ChosenCells(request, snapshot));
    if (snapshot.mesh.cellTypes.empty()) {
        throw interop::ForeignProblem(snapshot.file + ": --part and --ignore leave no cell of " + list);
    }
}

}  // namespace qnl::imports
