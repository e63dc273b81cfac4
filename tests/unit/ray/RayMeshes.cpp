#include "RayMeshes.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <utility>

#include "base/Vector3.h"
#include "support/MeshBuilder.h"

namespace qnl::testing {
namespace {

struct NamedFill {
    const char* name;
    Fill fill;
};

constexpr NamedFill kFills[] = {{"tetra", Fill::Tetra},
                                {"hexa", Fill::Hexa},
                                {"wedge", Fill::Wedge},
                                {"pyramid", Fill::Pyramid},
                                {"mixed", Fill::Mixed}};

BoxMesh Plate(Fill fill) {
    BoxMesh box;
    box.fill = fill;
    box.blocks = {8, 5, 3};
    box.size = {4.0, 2.5, 1.2};
    return box;
}

BoxMesh Block(Fill fill, const kernel::Point& origin, const kernel::Point& size) {
    BoxMesh box;
    box.fill = fill;
    box.blocks = {4, 2, 2};
    box.origin = origin;
    box.size = size;
    return box;
}

kernel::MeshData Pair(const BoxMesh& first, const BoxMesh& second) {
    kernel::MeshData mesh = BuildBox(first);
    Append(mesh, BuildBox(second));
    return mesh;
}

// Gives cells for which `above` holds their own copies of the nodes for which `onSlit` holds.
kernel::MeshData Slit(kernel::MeshData mesh, const std::function<bool(const kernel::Point&)>& onSlit,
                      const std::function<bool(const kernel::Point&)>& above) {
    std::vector<int> copy(mesh.points.size(), -1);
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        const auto begin = static_cast<std::size_t>(mesh.offsets[static_cast<std::size_t>(cell)]);
        const auto end = static_cast<std::size_t>(mesh.offsets[static_cast<std::size_t>(cell) + 1]);
        kernel::Point middle{};
        for (std::size_t i = begin; i < end; ++i) {
            for (std::size_t a = 0; a < 3; ++a) {
                middle[a] += mesh.points[static_cast<std::size_t>(mesh.connectivity[i])][a] /
                             static_cast<double>(end - begin);
            }
        }
        for (std::size_t i = begin; above(middle) && i < end; ++i) {
            int& node = mesh.connectivity[i];
            const kernel::Point place = mesh.points[static_cast<std::size_t>(node)];
            if (!onSlit(place)) {
                continue;
            }
            int& twin = copy[static_cast<std::size_t>(node)];
            if (twin < 0) {
                twin = mesh.Nodes();
                mesh.points.push_back(place);
            }
            node = twin;
        }
    }
    return mesh;
}

// Makes one node of nodes that stand in the same place.
kernel::MeshData Merged(kernel::MeshData mesh, const std::function<bool(const kernel::Point&)>& where) {
    for (int& node : mesh.connectivity) {
        const kernel::Point place = mesh.points[static_cast<std::size_t>(node)];
        const auto first = std::find(mesh.points.begin(), mesh.points.end(), place);
        node = where(place) ? static_cast<int>(first - mesh.points.begin()) : node;
    }
    return mesh;
}

double SixVolumesOf(const kernel::MeshData& mesh, const int* c) {
    const auto at = [&](int i) { return mesh.points[static_cast<std::size_t>(c[i])]; };
    return qnl::Dot(qnl::Cross(Minus(at(1), at(0)), Minus(at(2), at(0))), Minus(at(3), at(0)));
}

void TurnTetras(kernel::MeshData& mesh) {
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        int* corners = mesh.connectivity.data() + mesh.offsets[static_cast<std::size_t>(cell)];
        if (mesh.Shape(cell).type == kernel::CellType::Tetra && SixVolumesOf(mesh, corners) < 0.0) {
            std::swap(corners[2], corners[3]);
        }
    }
}

// Moves inner nodes so far that tetras turn over, and turns those back.
kernel::MeshData Tangled(double jiggle) {
    BoxMesh box = Plate(Fill::Tetra);
    box.jiggle = jiggle;
    kernel::MeshData mesh = BuildBox(box);
    TurnTetras(mesh);
    return mesh;
}

// Bent so far that pieces of cells turn over.
kernel::MeshData StronglyBent(Fill fill) {
    BoxMesh box = Plate(fill);
    box.map = Twist(0.5);
    kernel::MeshData mesh = BuildBox(box);
    TurnTetras(mesh);
    return mesh;
}

// Wedges written as hexas with two pairs of equal corners, beside a true hexa.
kernel::MeshData CollapsedHexas() {
    kernel::MeshData mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1},
                   {1, 1, 1}, {0, 1, 1}, {2, 0, 0}, {2, 1, 0}, {2, 0, 1}, {2, 1, 1}};
    mesh.connectivity = {0, 1, 2, 2, 4, 5, 6, 6, 0, 2, 3, 3, 4, 6, 7, 7, 1, 8, 9, 2, 5, 10, 11, 6};
    mesh.offsets = {0, 8, 16, 24};
    mesh.cellTypes.assign(3, static_cast<std::uint8_t>(kernel::CellType::Hexa));
    mesh.regions.assign(3, 0);
    return mesh;
}

// Positive slivers: a layer that is far thinner than long.
kernel::MeshData FlatLayer(double thickness) {
    BoxMesh box = Plate(Fill::Tetra);
    box.map = [thickness](const kernel::Point& p) {
        return kernel::Point{p[0], p[1],
                             p[2] > 0.41 && p[2] < 0.79 ? p[2]
                             : p[2] > 0.79              ? 0.4 + thickness + (p[2] - 0.8)
                                                        : p[2]};
    };
    return BuildBox(box);
}

kernel::MeshData Rounded(kernel::MeshData mesh) {
    for (kernel::Point& point : mesh.points) {
        for (double& component : point) {
            component = static_cast<double>(static_cast<float>(component));
        }
    }
    mesh.singlePrecision = true;
    return mesh;
}

kernel::MeshData RandomCells(std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto number = [&] { return static_cast<double>(random()) / 4294967296.0; };
    kernel::MeshData mesh;
    mesh.offsets = {0};
    for (int node = 0; node < 40; ++node) {
        mesh.points.push_back({number(), number(), number()});
    }
    for (int cell = 0; cell < 60; ++cell) {
        int c[4];
        for (int i = 0; i < 4; ++i) {
            do {
                c[i] = static_cast<int>(random() % 40);
            } while (std::find(c, c + i, c[i]) != c + i);
        }
        mesh.connectivity.insert(mesh.connectivity.end(), c, c + 4);
        mesh.offsets.push_back(static_cast<std::int64_t>(mesh.connectivity.size()));
        mesh.cellTypes.push_back(static_cast<std::uint8_t>(kernel::CellType::Tetra));
        mesh.regions.push_back(0);
    }
    TurnTetras(mesh);
    return mesh;
}

}  // namespace

std::vector<NamedMesh> SingleBodies() {
    std::vector<NamedMesh> meshes;
    for (const NamedFill& fill : kFills) {
        const std::string name = fill.name;
        BoxMesh box = Plate(fill.fill);
        meshes.push_back({name + " plain", BuildBox(box)});
        box.shuffled = true;
        meshes.push_back({name + " shuffled", BuildBox(box)});
        box.jiggle = 0.2;
        meshes.push_back({name + " jiggled", BuildBox(box)});
        meshes.push_back({name + " single precision", Rounded(BuildBox(box))});
        box.map = Twist(0.08);
        meshes.push_back({name + " bent", BuildBox(box)});
        box = BoxMesh{};
        box.fill = fill.fill;
        box.blocks = {4, 1, 1};
        meshes.push_back({name + " bar", BuildBox(box)});
        box = Plate(fill.fill);
        box.blocks = {24, 3, 2};
        box.map = [](const kernel::Point& p) {
            const double angle = 1.2 * p[0];
            return kernel::Point{(2.0 + p[2]) * std::cos(angle), (2.0 + p[2]) * std::sin(angle), p[1]};
        };
        meshes.push_back({name + " arc", BuildBox(box)});
    }
    for (const kernel::CellType type : {kernel::CellType::Tetra, kernel::CellType::Hexa,
                                        kernel::CellType::Wedge, kernel::CellType::Pyramid}) {
        meshes.push_back({"single cell", SingleCell(type)});
    }
    return meshes;
}

std::vector<NamedMesh> AwkwardBodies() {
    std::vector<NamedMesh> meshes;
    for (const NamedFill& fill : kFills) {
        const std::string name = fill.name;
        const BoxMesh base = Block(fill.fill, {0, 0, 0}, {2, 1, 1});
        meshes.push_back({name + " apart", Pair(base, Block(fill.fill, {0, 0, 1.5}, {2, 1, 1}))});
        meshes.push_back({name + " face to face", Pair(base, Block(fill.fill, {0, 0, 1}, {2, 1, 1}))});
        meshes.push_back({name + " face to face, not matching",
                          Pair(base, Block(fill.fill, {0.3, 0.2, 1}, {1.1, 0.7, 1}))});
        meshes.push_back({name + " edge to edge", Pair(base, Block(fill.fill, {0, 1, 1}, {2, 1, 1}))});
        meshes.push_back({name + " corner to corner", Pair(base, Block(fill.fill, {2, 1, 1}, {2, 1, 1}))});
        meshes.push_back(
            {name + " gap below the tolerance", Pair(base, Block(fill.fill, {0, 0, 1.0 + 1e-9}, {2, 1, 1}))});
        meshes.push_back(
            {name + " gap above the tolerance", Pair(base, Block(fill.fill, {0, 0, 1.0 + 2e-7}, {2, 1, 1}))});
        meshes.push_back(
            {name + " overlapping", Pair(base, Block(fill.fill, {0.31, 0.22, 0.43}, {2, 1, 1}))});
        meshes.push_back({name + " one inside the other",
                          Pair(base, Block(fill.fill, {0.4, 0.3, 0.3}, {0.9, 0.35, 0.4}))});
        meshes.push_back({name + " twice the same", Pair(base, base)});
        meshes.push_back({name + " slit", Slit(
                                              BuildBox(Plate(fill.fill)),
                                              [](const kernel::Point& p) {
                                                  return std::fabs(p[2] - 0.4) < 1e-9 && p[0] > 1.2 &&
                                                         p[0] < 3.3;
                                              },
                                              [](const kernel::Point& p) { return p[2] > 0.4; })});
        meshes.push_back({name + " strongly bent", StronglyBent(fill.fill)});
        kernel::MeshData runner = Pair(base, Block(fill.fill, {2, 0, 0}, {3, 1, 1}));
        for (std::size_t i = runner.regions.size() / 2; i < runner.regions.size(); ++i) {
            runner.regions[i] = 1;
        }
        meshes.push_back({name + " runner attached", std::move(runner)});
    }
    const BoxMesh tetras = Block(Fill::Tetra, {0, 0, 0}, {2, 1, 1});
    const kernel::MeshData edge = Pair(tetras, Block(Fill::Tetra, {0, 1, 1}, {2, 1, 1}));
    meshes.push_back({"merged along an edge",
                      Merged(edge, [](const kernel::Point& p) { return p[1] == 1.0 && p[2] == 1.0; })});
    const kernel::MeshData corner = Pair(tetras, Block(Fill::Tetra, {2, 1, 1}, {2, 1, 1}));
    meshes.push_back({"merged at a corner", Merged(corner, [](const kernel::Point& p) {
                          return p[0] == 2.0 && p[1] == 1.0 && p[2] == 1.0;
                      })});
    meshes.push_back({"tangled", Tangled(0.9)});
    meshes.push_back({"much tangled", Tangled(2.5)});
    meshes.push_back({"collapsed hexas", CollapsedHexas()});
    meshes.push_back({"flat layer", FlatLayer(1e-4)});
    meshes.push_back({"flatter layer", FlatLayer(1e-7)});
    for (std::uint32_t seed = 1; seed <= 4; ++seed) {
        meshes.push_back({"random cells", RandomCells(seed)});
    }
    return meshes;
}

kernel::MeshData TwoBlocks(int fill, double gap) {
    const Fill chosen = kFills[fill].fill;
    return Pair(Block(chosen, {0, 0, 0}, {2, 1, 1}), Block(chosen, {0, 0, 1.0 + gap}, {2, 1, 1}));
}

kernel::MeshData LargerPlate(double jiggle) {
    BoxMesh box;
    box.blocks = {18, 14, 5};
    box.size = {18.0, 14.0, 5.0};
    box.jiggle = jiggle;
    box.shuffled = true;
    box.seed = 11;
    kernel::MeshData mesh = BuildBox(box);
    TurnTetras(mesh);
    return mesh;
}

}  // namespace qnl::testing
