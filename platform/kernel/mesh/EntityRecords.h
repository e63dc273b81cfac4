#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"
#include "platform/MeshRecords.h"

namespace qnl::kernel {

/// 1-based node records; record 0 is all zero.
std::vector<NodeRecord> NodeRecords(const MeshData& mesh);

/// 1-based records of faces or cells with the node lists they point into.
struct EntityRecords {
    std::vector<EntityRecord> records;  ///< record 0 is all zero
    /// Node indices (1-based) of all entities, end to end after one unused entry: the unused entry 0 of a
    /// record's list is the last of the list before it. Must not grow or move its storage.
    std::vector<int> lists;
};

EntityRecords FaceRecords(const std::vector<Point>& points, const std::vector<BoundaryFace>& boundary);
EntityRecords CellRecords(const MeshData& mesh);

}  // namespace qnl::kernel
