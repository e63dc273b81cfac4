#pragma once

#include <cstdint>
#include <functional>

#include "kernel/mesh/MeshData.h"

/// Generated meshes for tests. All cells have positive volume, all meshes are conforming, and the same
/// arguments give the same mesh on every system.
namespace qnl::testing {

enum class Fill {
    Tetra,    ///< six per block
    Hexa,     ///< one per block
    Wedge,    ///< two per block, triangles in the x-y plane
    Pyramid,  ///< six per block, around a node in its middle
    Mixed,    ///< along x: hexas, wedges, blocks of pyramids that end in tetras, tetras
};

struct BoxMesh {
    Fill fill = Fill::Tetra;
    std::array<int, 3> blocks{1, 1, 1};
    kernel::Point origin{0.0, 0.0, 0.0};
    kernel::Point size{1.0, 1.0, 1.0};
    double jiggle = 0.0;  ///< largest move of inner nodes, in block edge lengths
    std::function<kernel::Point(const kernel::Point&)> map;  ///< applied to every node in the end
    std::function<int(const kernel::Point&)> region;         ///< region of a cell by its corner average
    bool shuffled = false;                                   ///< cells and nodes in random order
    std::uint32_t seed = 1;
};

kernel::MeshData BuildBox(const BoxMesh& box);

/// One cell with the corners of the unit cube's lower left part: tetra (0, x, y, z), wedge the half cube,
/// hexa the cube, pyramid with its apex above the middle of the base at height 1.
kernel::MeshData SingleCell(kernel::CellType type);

/// Map for BoxMesh that bends all quads out of their planes by about `amount`.
std::function<kernel::Point(const kernel::Point&)> Twist(double amount);

/// Appends the nodes and cells of another mesh; nothing is merged.
void Append(kernel::MeshData& mesh, const kernel::MeshData& other);

/// Puts cells and nodes in a random order.
void Shuffle(kernel::MeshData& mesh, std::uint32_t seed);

}  // namespace qnl::testing
