#pragma once

#include <string>
#include <vector>

#include "kernel/mesh_data.h"

namespace qnl::testing {

struct NamedMesh {
    std::string name;
    MeshData mesh;
};

/// One solid body each: every fill, plain, jiggled, bent and shuffled.
std::vector<NamedMesh> SingleBodies();

/// Bodies that touch or overlap in every way, slits, folded and collapsed cells.
std::vector<NamedMesh> AwkwardBodies();

}  // namespace qnl::testing
