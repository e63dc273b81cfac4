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
    std::vector<double> cellVolumes;  ///< mm3, 0-based, in the order of the file
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

}  // namespace qnl::kernel

class CQNLOptKer;

namespace qnl::kernel {

/// Takes the mesh out of a kernel that is not used any more, for another one to adopt. What points into the
/// mesh's arrays stays valid as long as the mesh lives.
KernelMesh TakeMesh(CQNLOptKer& kernel);

/// Gives a kernel a mesh as if it had read it.
void AdoptMesh(CQNLOptKer& kernel, KernelMesh mesh);

/// What a kernel owns.
struct MeshKernelState {
    KernelMesh mesh;
    BoxTree tree;
    bool treeLacksMesh = false;  ///< the entities of the mesh are still to be put into the tree
    std::deque<std::vector<int>> treeSlots;
    std::mutex treeMutex;  ///< guards the late filling of the tree and the growth of the slots
};

}  // namespace qnl::kernel
