#include "kernel/node_classes.h"

#include <algorithm>

namespace qnl {
namespace {

// By region, so that the larger rank decides between the cells at a node: special over runner, part over
// both.
enum Rank : std::int8_t { kNoCell, kRunner, kSpecial, kPart };
constexpr std::array<std::int8_t, 3> kRankOfRegion{kPart, kRunner, kSpecial};
constexpr std::array<std::int8_t, 4> kClassOfRank{0, 0, -1, 1};

}  // namespace

std::vector<std::int8_t> NodeClasses(const MeshData& mesh, int& lonely) {
    std::vector<std::int8_t> ranks(mesh.points.size(), kNoCell);
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        const std::size_t region = static_cast<std::size_t>(mesh.regions[static_cast<std::size_t>(cell)]);
        for (int c = 0; c < mesh.Shape(cell).corners; ++c) {
            std::int8_t& rank = ranks[static_cast<std::size_t>(mesh.Corners(cell)[c])];
            rank = std::max(rank, kRankOfRegion[region]);
        }
    }
    lonely = static_cast<int>(std::count(ranks.begin(), ranks.end(), static_cast<std::int8_t>(kNoCell)));
    for (std::int8_t& rank : ranks) {
        rank = kClassOfRank[static_cast<std::size_t>(rank)];
    }
    return ranks;
}

LabelArrays ArraysByLabel(const MeshData& mesh, const std::vector<std::int8_t>& classes) {
    const int largest =
        mesh.labels.empty() ? mesh.Nodes() : *std::max_element(mesh.labels.begin(), mesh.labels.end());
    const std::size_t entries = static_cast<std::size_t>(largest) + 1;
    LabelArrays arrays{std::vector<int>(entries), std::vector<int>(entries), std::vector<int>(entries)};
    for (int node = 0; node < mesh.Nodes(); ++node) {
        const std::size_t index = static_cast<std::size_t>(node);
        const std::size_t label =
            mesh.labels.empty() ? index + 1 : static_cast<std::size_t>(mesh.labels[index]);
        arrays.isPart[label] = classes[index] == 1 ? 1 : 0;
        arrays.nodeClass[label] = classes[index];
        arrays.nodeIndex[label] = node + 1;
    }
    return arrays;
}

std::vector<int> RunnerCells(const MeshData& mesh) {
    std::vector<int> flags(mesh.regions.size() + 1, 0);
    std::transform(mesh.regions.begin(), mesh.regions.end(), flags.begin() + 1,
                   [](std::int8_t region) { return region != 0 ? 1 : 0; });
    return flags;
}

}  // namespace qnl
