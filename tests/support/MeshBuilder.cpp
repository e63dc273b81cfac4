#include "support/MeshBuilder.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace qnl::testing {
namespace {

using Block = std::array<int, 8>;

class BoxBuilder {
public:
    explicit BoxBuilder(const BoxMesh& box) : box_(box) {}

    kernel::MeshData Build() {
        mesh_.offsets.push_back(0);
        AddGridNodes();
        const auto [nx, ny, nz] = box_.blocks;
        for (int k = 0; k < nz; ++k) {
            for (int j = 0; j < ny; ++j) {
                for (int i = 0; i < nx; ++i) {
                    FillBlock(BlockCorners(i, j, k), FillOfColumn(i), SplitsUpperX(i));
                }
            }
        }
        Finish();
        return std::move(mesh_);
    }

private:
    int GridNode(int i, int j, int k) const {
        return i + (box_.blocks[0] + 1) * (j + (box_.blocks[1] + 1) * k);
    }

    Block BlockCorners(int i, int j, int k) const {
        return {GridNode(i, j, k),
                GridNode(i + 1, j, k),
                GridNode(i + 1, j + 1, k),
                GridNode(i, j + 1, k),
                GridNode(i, j, k + 1),
                GridNode(i + 1, j, k + 1),
                GridNode(i + 1, j + 1, k + 1),
                GridNode(i, j + 1, k + 1)};
    }

    void AddGridNodes() {
        std::mt19937 random(box_.seed);
        for (int k = 0; k <= box_.blocks[2]; ++k) {
            for (int j = 0; j <= box_.blocks[1]; ++j) {
                for (int i = 0; i <= box_.blocks[0]; ++i) {
                    AddGridNode({i, j, k}, random);
                }
            }
        }
    }

    void AddGridNode(const std::array<int, 3>& index, std::mt19937& random) {
        bool inner = true;
        for (std::size_t a = 0; a < 3; ++a) {
            inner = inner && index[a] > 0 && index[a] < box_.blocks[a];
        }
        kernel::Point point{};
        for (std::size_t a = 0; a < 3; ++a) {
            const double move =
                inner ? box_.jiggle * (static_cast<double>(random()) / 2147483648.0 - 1.0) : 0.0;
            point[a] = box_.origin[a] + box_.size[a] * (index[a] + move) / box_.blocks[a];
        }
        mesh_.points.push_back(point);
    }

    // Mixed boxes: 0 hexa, 1 wedge, 2 transition, 3 tetra.
    int MixedKind(int column) const { return 4 * column / box_.blocks[0]; }

    Fill FillOfColumn(int column) const {
        constexpr std::array<Fill, 4> kKinds{Fill::Hexa, Fill::Wedge, Fill::Pyramid, Fill::Tetra};
        return box_.fill == Fill::Mixed ? kKinds[static_cast<std::size_t>(MixedKind(column))] : box_.fill;
    }

    bool SplitsUpperX(int column) const {
        return box_.fill == Fill::Mixed && column + 1 < box_.blocks[0] && MixedKind(column) == 2 &&
               MixedKind(column + 1) == 3;
    }

    void AddCell(kernel::CellType type, std::initializer_list<int> corners) {
        mesh_.cellTypes.push_back(static_cast<std::uint8_t>(type));
        mesh_.connectivity.insert(mesh_.connectivity.end(), corners);
        mesh_.offsets.push_back(static_cast<std::int64_t>(mesh_.connectivity.size()));
    }

    void FillBlock(const Block& b, Fill fill, bool splitUpperX) {
        if (fill == Fill::Hexa) {
            AddCell(kernel::CellType::Hexa, {b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]});
        } else if (fill == Fill::Wedge) {
            AddCell(kernel::CellType::Wedge, {b[0], b[1], b[2], b[4], b[5], b[6]});
            AddCell(kernel::CellType::Wedge, {b[0], b[2], b[3], b[4], b[6], b[7]});
        } else if (fill == Fill::Tetra) {
            AddTetras(b);
        } else {
            AddPyramids(b, splitUpperX);
        }
    }

    // The six ways from the lowest to the highest corner along the axes.
    void AddTetras(const Block& b) {
        AddCell(kernel::CellType::Tetra, {b[0], b[1], b[2], b[6]});
        AddCell(kernel::CellType::Tetra, {b[0], b[2], b[3], b[6]});
        AddCell(kernel::CellType::Tetra, {b[0], b[3], b[7], b[6]});
        AddCell(kernel::CellType::Tetra, {b[0], b[7], b[4], b[6]});
        AddCell(kernel::CellType::Tetra, {b[0], b[4], b[5], b[6]});
        AddCell(kernel::CellType::Tetra, {b[0], b[5], b[1], b[6]});
    }

    void AddPyramids(const Block& b, bool splitUpperX) {
        kernel::Point middle{};
        for (const int corner : b) {
            for (std::size_t a = 0; a < 3; ++a) {
                middle[a] += mesh_.points[static_cast<std::size_t>(corner)][a] / 8.0;
            }
        }
        const int apex = mesh_.Nodes();
        mesh_.points.push_back(middle);
        AddCell(kernel::CellType::Pyramid, {b[0], b[1], b[2], b[3], apex});
        AddCell(kernel::CellType::Pyramid, {b[4], b[7], b[6], b[5], apex});
        AddCell(kernel::CellType::Pyramid, {b[0], b[4], b[5], b[1], apex});
        AddCell(kernel::CellType::Pyramid, {b[2], b[6], b[7], b[3], apex});
        AddCell(kernel::CellType::Pyramid, {b[3], b[7], b[4], b[0], apex});
        if (splitUpperX) {
            AddCell(kernel::CellType::Tetra, {b[1], b[5], b[6], apex});
            AddCell(kernel::CellType::Tetra, {b[1], b[6], b[2], apex});
        } else {
            AddCell(kernel::CellType::Pyramid, {b[1], b[5], b[6], b[2], apex});
        }
    }

    void Finish() {
        for (int cell = 0; cell < mesh_.Cells(); ++cell) {
            mesh_.regions.push_back(box_.region ? static_cast<std::int8_t>(box_.region(Average(cell))) : 0);
        }
        for (kernel::Point& point : mesh_.points) {
            point = box_.map ? box_.map(point) : point;
        }
        if (box_.shuffled) {
            Shuffle(mesh_, box_.seed);
        }
    }

    kernel::Point Average(int cell) const {
        const int corners = mesh_.Shape(cell).corners;
        kernel::Point average{};
        for (int c = 0; c < corners; ++c) {
            for (std::size_t a = 0; a < 3; ++a) {
                average[a] += mesh_.points[static_cast<std::size_t>(mesh_.Corners(cell)[c])][a] / corners;
            }
        }
        return average;
    }

    const BoxMesh& box_;
    kernel::MeshData mesh_;
};

// The same order on every system, which std::shuffle does not promise.
std::vector<int> RandomOrder(int count, std::mt19937& random) {
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = order.size(); i > 1; --i) {
        std::swap(order[i - 1], order[random() % i]);
    }
    return order;
}

}  // namespace

kernel::MeshData BuildBox(const BoxMesh& box) {
    return BoxBuilder(box).Build();
}

kernel::MeshData SingleCell(kernel::CellType type) {
    kernel::MeshData mesh;
    mesh.cellTypes = {static_cast<std::uint8_t>(type)};
    mesh.regions = {0};
    if (type == kernel::CellType::Tetra) {
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    } else if (type == kernel::CellType::Wedge) {
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
    } else if (type == kernel::CellType::Pyramid) {
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}};
    } else {
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                       {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    }
    mesh.connectivity.resize(mesh.points.size());
    std::iota(mesh.connectivity.begin(), mesh.connectivity.end(), 0);
    mesh.offsets = {0, mesh.Nodes()};
    return mesh;
}

std::function<kernel::Point(const kernel::Point&)> Twist(double amount) {
    return [amount](const kernel::Point& p) {
        return kernel::Point{p[0] + amount * std::sin(2.0 * p[1] + p[2]),
                             p[1] + amount * std::sin(1.5 * p[2] - p[0]),
                             p[2] + amount * std::sin(p[0] * p[1] + p[0])};
    };
}

void Append(kernel::MeshData& mesh, const kernel::MeshData& other) {
    const int nodes = mesh.Nodes();
    const std::int64_t corners = static_cast<std::int64_t>(mesh.connectivity.size());
    mesh.points.insert(mesh.points.end(), other.points.begin(), other.points.end());
    mesh.cellTypes.insert(mesh.cellTypes.end(), other.cellTypes.begin(), other.cellTypes.end());
    mesh.regions.insert(mesh.regions.end(), other.regions.begin(), other.regions.end());
    for (const int node : other.connectivity) {
        mesh.connectivity.push_back(nodes + node);
    }
    for (std::size_t i = 1; i < other.offsets.size(); ++i) {
        mesh.offsets.push_back(corners + other.offsets[i]);
    }
}

void Shuffle(kernel::MeshData& mesh, std::uint32_t seed) {
    std::mt19937 random(seed);
    const std::vector<int> cellOrder = RandomOrder(mesh.Cells(), random);
    const std::vector<int> newNode = RandomOrder(mesh.Nodes(), random);
    kernel::MeshData result = mesh;
    result.cellTypes.clear();
    result.regions.clear();
    result.connectivity.clear();
    result.offsets = {0};
    for (const int cell : cellOrder) {
        result.cellTypes.push_back(mesh.cellTypes[static_cast<std::size_t>(cell)]);
        result.regions.push_back(mesh.regions[static_cast<std::size_t>(cell)]);
        for (int c = 0; c < mesh.Shape(cell).corners; ++c) {
            result.connectivity.push_back(newNode[static_cast<std::size_t>(mesh.Corners(cell)[c])]);
        }
        result.offsets.push_back(static_cast<std::int64_t>(result.connectivity.size()));
    }
    for (std::size_t i = 0; i < newNode.size(); ++i) {
        result.points[static_cast<std::size_t>(newNode[i])] = mesh.points[i];
        if (!mesh.labels.empty()) {
            result.labels[static_cast<std::size_t>(newNode[i])] = mesh.labels[i];
        }
    }
    mesh = std::move(result);
}

}  // namespace qnl::testing
