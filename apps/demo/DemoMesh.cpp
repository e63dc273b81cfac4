#include "demo/DemoMesh.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace qnl::demo {

namespace {

/// Number below `count`; the same on every system, which the distributions of the library do not promise.
std::size_t RandomBelow(std::mt19937& random, std::size_t count) {
    return static_cast<std::size_t>(random()) % count;
}

class DemoMesher {
public:
    explicit DemoMesher(const DemoPart& part) : part_(part) {
        for (std::size_t a = 0; a < 3; ++a) {
            nodes_[a] = part.blocks[a] + (a == 0 && part.Closed() ? 0 : 1);
        }
    }

    kernel::MeshData Build() {
        FillBlocks();
        CountBlocksAtNodes();
        AddNodes();
        AddTetras();
        return std::move(mesh_);
    }

private:
    using Index = std::array<int, 3>;

    static constexpr int kCorners = 8;
    static constexpr double kLargestMove = 0.15;

    static std::size_t Flat(const Index& index, const Index& extent) {
        const auto at = [](int i) { return static_cast<std::size_t>(i); };
        return at(index[0]) + at(extent[0]) * (at(index[1]) + at(extent[1]) * at(index[2]));
    }

    template <typename Visit>
    static void ForEach(const Index& low, const Index& high, Visit visit) {
        for (int k = low[2]; k < high[2]; ++k) {
            for (int j = low[1]; j < high[1]; ++j) {
                for (int i = low[0]; i < high[0]; ++i) {
                    visit(Index{i, j, k});
                }
            }
        }
    }

    template <typename Visit>
    void ForEachFilledBlock(Visit visit) const {
        ForEach({0, 0, 0}, part_.blocks, [&](const Index& block) {
            if (filled_[Flat(block, part_.blocks)]) {
                visit(block);
            }
        });
    }

    /// Corner `bits` of a block: bit 0, 1, 2 for the far side along x, y, z.
    std::size_t Corner(const Index& block, int bits) const {
        const int i = block[0] + (bits & 1);
        return Flat({i == nodes_[0] ? 0 : i, block[1] + (bits >> 1 & 1), block[2] + (bits >> 2)}, nodes_);
    }

    void FillBlocks() {
        filled_.resize(static_cast<std::size_t>(part_.blocks[0]) * static_cast<std::size_t>(part_.blocks[1]) *
                       static_cast<std::size_t>(part_.blocks[2]));
        for (const BlockBox& brick : part_.bricks) {
            ForEach(brick.low, brick.high,
                    [this](const Index& block) { filled_[Flat(block, part_.blocks)] = true; });
        }
    }

    void CountBlocksAtNodes() {
        blocksAt_.resize(static_cast<std::size_t>(nodes_[0]) * static_cast<std::size_t>(nodes_[1]) *
                         static_cast<std::size_t>(nodes_[2]));
        ForEachFilledBlock([this](const Index& block) {
            for (int bits = 0; bits < kCorners; ++bits) {
                ++blocksAt_[Corner(block, bits)];
            }
        });
    }

    void AddNodes() {
        number_.resize(blocksAt_.size());
        ForEach({0, 0, 0}, nodes_, [this](const Index& node) {
            const std::size_t at = Flat(node, nodes_);
            if (blocksAt_[at] > 0) {
                number_[at] = mesh_.Nodes();
                mesh_.points.push_back(part_.Place(GridPlace(node, blocksAt_[at] == kCorners)));
            }
        });
    }

    kernel::Point GridPlace(const Index& node, bool inside) {
        constexpr double kHalfRange = 2147483648.0;
        kernel::Point place{};
        for (std::size_t a = 0; a < 3; ++a) {
            const double move =
                inside ? kLargestMove * (static_cast<double>(random_()) / kHalfRange - 1.0) : 0.0;
            place[a] = node[a] + move;
        }
        return place;
    }

    void AddTetras() {
        constexpr int kTetras[kTetrasPerBlock][4] = {{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                                     {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};
        const auto blocks = static_cast<std::size_t>(std::count(filled_.begin(), filled_.end(), true));
        mesh_.connectivity.reserve(std::size_t{4} * kTetrasPerBlock * blocks);
        ForEachFilledBlock([&](const Index& block) {
            for (const auto& tetra : kTetras) {
                for (const int bits : tetra) {
                    mesh_.connectivity.push_back(number_[Corner(block, bits)]);
                }
            }
        });
        const std::size_t cells = mesh_.connectivity.size() / 4;
        mesh_.cellTypes.assign(cells, static_cast<std::uint8_t>(kernel::CellType::Tetra));
        mesh_.regions.assign(cells, 0);
        mesh_.offsets.resize(cells + 1);
        for (std::size_t cell = 0; cell <= cells; ++cell) {
            mesh_.offsets[cell] = static_cast<std::int64_t>(4 * cell);
        }
    }

    const DemoPart& part_;
    Index nodes_{};                       // extent of the node grid
    std::vector<bool> filled_;            // by block
    std::vector<std::uint8_t> blocksAt_;  // filled blocks around a node of the grid
    std::vector<int> number_;             // of a node of the grid in the mesh
    std::mt19937 random_{1};
    kernel::MeshData mesh_;
};

}  // namespace

kernel::MeshData MeshDemoPart(const DemoPart& part) {
    return DemoMesher(part).Build();
}

kernel::MeshData MakeDemoMesh(DemoShape shape, int cells) {
    return MeshDemoPart(PlanDemoPart(shape, cells));
}

void ShuffleTetras(kernel::MeshData& mesh, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<int> place(mesh.points.size());
    std::iota(place.begin(), place.end(), 0);
    for (std::size_t i = place.size(); i > 1; --i) {
        std::swap(place[i - 1], place[RandomBelow(random, i)]);
    }
    std::vector<kernel::Point> points(mesh.points.size());
    for (std::size_t i = 0; i < place.size(); ++i) {
        points[static_cast<std::size_t>(place[i])] = mesh.points[i];
    }
    mesh.points = std::move(points);
    for (int& node : mesh.connectivity) {
        node = place[static_cast<std::size_t>(node)];
    }
    for (std::size_t i = mesh.cellTypes.size(); i > 1; --i) {
        const auto last = mesh.connectivity.begin() + static_cast<std::ptrdiff_t>(4 * (i - 1));
        const auto other =
            mesh.connectivity.begin() + static_cast<std::ptrdiff_t>(4 * RandomBelow(random, i));
        std::swap_ranges(last, last + 4, other);
    }
}

}  // namespace qnl::demo
