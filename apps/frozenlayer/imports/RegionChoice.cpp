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

/// Each block with its number of cells.
std::string ListBlocks(const interop::ForeignSnapshot& snapshot, const interop::ForeignArray& blocks) {
    std::vector<long long> cells(snapshot.blocks.size(), 0);
    for (std::size_t cell = 0; cell < blocks.values.size(); ++cell) {
        ++cells[BlockOf(blocks, cell)];
    }
    std::string list;
    for (std::size_t block = 0; block < cells.size(); ++block) {
        list += (block == 0 ? "" : ", ") + ("\"" + snapshot.blocks[block] + "\" (") +
                text::CountText(cells[block], "cell") + ")";
    }
    return list;
}

void CheckNames(const Names& wanted, const char* option, const interop::ForeignSnapshot& snapshot,
                const std::string& list) {
    const auto wrong = std::find_if(wanted.begin(), wanted.end(),
                                    [&](const std::string& name) { return !Holds(snapshot.blocks, name); });
    if (wrong != wanted.end()) {
        throw interop::ForeignProblem(snapshot.file + " has no region \"" + *wrong + "\" of " + option +
                                      "; there are " + list);
    }
}

/// The cells of the blocks that the request chooses.
std::vector<std::size_t> ChosenCells(const ImportRequest& request, const Names& names,
                                     const interop::ForeignArray& blocks) {
    std::vector<bool> chosen;
    for (const std::string& name : names) {
        chosen.push_back((request.parts.empty() || Holds(request.parts, name)) &&
                         !Holds(request.ignored, name));
    }
    std::vector<std::size_t> cells;
    for (std::size_t cell = 0; cell < blocks.values.size(); ++cell) {
        if (chosen[BlockOf(blocks, cell)]) {
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

void KeepChosenBlocks(const ImportRequest& request, interop::ForeignSnapshot& snapshot) {
    const bool chooses = !request.parts.empty() || !request.ignored.empty();
    const interop::ForeignArray* blocks = FindCellArray(snapshot, interop::kBlockArray);
    if (snapshot.blocks.empty() || blocks == nullptr) {
        if (chooses) {
            throw interop::ForeignProblem(
                snapshot.file +
                " has no named regions to choose from; leave out --part and --ignore, "
                "or tell regions by a cell array with --region-array");
        }
        return;
    }
    const std::string list = ListBlocks(snapshot, *blocks);
    if (!chooses && request.regionArray.empty()) {
        throw interop::ForeignProblem(snapshot.file + " has several regions, " + list +
                                      "; say which are the part with --part NAME,..., or which are not with "
                                      "--ignore NAME,...");
    }
    CheckNames(request.parts, "--part", snapshot, list);
    CheckNames(request.ignored, "--ignore", snapshot, list);
    KeepCells(snapshot, ChosenCells(request, snapshot.blocks, *blocks));
    if (snapshot.mesh.cellTypes.empty()) {
        throw interop::ForeignProblem(snapshot.file + ": --part and --ignore leave no cell of " + list);
    }
}

}  // namespace qnl::imports
