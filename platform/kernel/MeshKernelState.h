#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "kernel/boxes/BoxTree.h"
#include "kernel/mesh/EntityRecords.h"
#include "kernel/mesh/NodeClasses.h"
#include "kernel/rays/RayWalk.h"
#include "kernel/topology/BoundaryGraph.h"

namespace qnl::kernel {

/// What a read mesh gives: the storage behind the kernel's public arrays, and what its searches need.
struct KernelMesh {
    std::vector<NodeRecord> nodes;
    EntityRecords faces;
    EntityRecords cells;
    LabelArrays byLabel;
    std::vector<int> runnerCells;
    bool hasLabels = false;
    std::array<double, 6> box{};  ///< x, y, z maximum, then minimum, mm
    double meshSize = 0.0;        ///< mm
    double geomTolerance = 0.0;   ///< mm
    double epsilon = 0.0;         ///< distance tolerance of the searches, mm
    BoundaryGraph boundary;
    std::unique_ptr<RayWalker> rays;
    int turnedCells = 0;  ///< wedges apart
    int lonelyNodes = 0;  ///< in no cell
};

/// Reads a mesh file and derives everything from it. Raises qnl::MeshFault with a line that names the file.
KernelMesh LoadKernelMesh(const char* path);

/// What a kernel owns.
struct MeshKernelState {
    KernelMesh mesh;
    BoxTree tree;
    bool treeLacksMesh = false;  ///< the entities of the mesh are still to be put into the tree
    std::deque<std::vector<int>> treeSlots;
    std::mutex treeMutex;  ///< guards the late filling of the tree and the growth of the slots
};

}  // namespace qnl::kernel
