#include "kernel/mesh/NodeClasses.h"

#include <algorithm>
#include <new>
#include <string>

#include "kernel/mesh/MeshFault.h"

namespace qnl::kernel {
namespace {

// The larger rank decides between the cells at a node: special over runner, part over both.
enum Rank { kNoCell, kRunner, kSpecial, kPart };
constexpr std::array<int, 3> kRankOfRegion{kPart, kRunner, kSpecial};
constexpr std::array<int, 4> kClassOfRank{0, 0, -1, 1};

LabelArrays MakeArrays(std::size_t entries) {
    try {
        return {ZeroedArray<int>(entries), ZeroedArray<int>(entries), ZeroedArray<int>(entries)};
    } catch (const std::bad_alloc&) {
        throw MeshFault("the largest node label is " + std::to_string(entries - 1) +
                        ", and the three arrays by label, of " + std::to_string(entries * sizeof(int)) +
                        " bytes each, do not fit the memory: give the nodes smaller labels");
    }
}

}  // namespace

std::vector<int> NodeClasses(const MeshData& mesh, int& lonely) {
    std::vector<int> ranks(mesh.points.size(), kNoCell);
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        const std::int8_t region = mesh.regions[static_cast<std::size_t>(cell)];
        const int cellRank = kRankOfRegion[static_cast<std::uint8_t>(region)];
        for (int c = 0; c < mesh.Shape(cell).corners; ++c) {
            int& rank = ranks[static_cast<std::size_t>(mesh.Corners(cell)[c])];
            rank = std::max(rank, cellRank);
        }
    }
    lonely = static_cast<int>(std::count(ranks.begin(), ranks.end(), static_cast<int>(kNoCell)));
    for (int& rank : ranks) {
        rank = kClassOfRank[static_cast<std::size_t>(rank)];
    }
    return ranks;
}

LabelArrays ArraysByLabel(const MeshData& mesh, const std::vector<int>& classes) {
    const int largest =
        mesh.labels.empty() ? mesh.Nodes() : *std::max_element(mesh.labels.begin(), mesh.labels.end());
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): the checker takes the move of an owner for a leak
    LabelArrays arrays = MakeArrays(static_cast<std::size_t>(largest) + 1);
    for (int node = 0; node < mesh.Nodes(); ++node) {
        const std::size_t index = static_cast<std::size_t>(node);
        const std::size_t label =
            mesh.labels.empty() ? index + 1 : static_cast<std::size_t>(mesh.labels[index]);
        arrays.isPart.Set(label, classes[index] == 1 ? 1 : 0);
        arrays.nodeClass.Set(label, classes[index]);
        arrays.nodeIndex.Set(label, node + 1);
    }
    return arrays;
}

std::vector<int> RunnerCells(const MeshData& mesh) {
    std::vector<int> flags(mesh.regions.size() + 1, 0);
    std::transform(mesh.regions.begin(), mesh.regions.end(), flags.begin() + 1,
                   [](std::int8_t region) { return region != 0 ? 1 : 0; });
    return flags;
}

}  // namespace qnl::kernel
