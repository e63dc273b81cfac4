#pragma once

#include <string>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::testing {

struct NamedMesh {
    std::string name;
    kernel::MeshData mesh;
};

/// One solid body each: every fill, plain, jiggled, bent and shuffled.
std::vector<NamedMesh> SingleBodies();

/// Bodies that touch or overlap in every way, slits, folded and collapsed cells.
std::vector<NamedMesh> AwkwardBodies();

/// Two blocks of 2 x 1 x 1 mm above each other, `gap` apart: the lower one ends at z = 1.
kernel::MeshData TwoBlocks(int fill, double gap);
inline constexpr int kFillCount = 5;

/// A shuffled plate of 7,560 tetras; from 0.2 on some turn over and are turned back.
kernel::MeshData LargerPlate(double jiggle);

}  // namespace qnl::testing
