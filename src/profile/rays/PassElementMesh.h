#pragma once

#include "base/Vector3.h"
#include "mesh/PassElementNumbering.h"
#include "platform/MeshRecords.h"

namespace qnl::profile {

/// Point that stands for a face or cell, mm: the middle of its box in x and y, its own middle in z.
inline Vector3 ReferencePoint(const EntityRecord& entity) {
    return {(entity.boxMin[0] + entity.boxMax[0]) / 2.0, (entity.boxMin[1] + entity.boxMax[1]) / 2.0,
            entity.zMiddle};
}

/// Mesh records by pass-element id.
struct PassElementMesh {
    const SurfaceRecord* faces;  ///< 1-based
    const CellRecord* cells;     ///< 1-based
    mesh::PassElementNumbering numbering;

    const EntityRecord& Record(int id) const {
        return numbering.IsFace(id) ? faces[numbering.FaceIndex(id)] : cells[numbering.CellIndex(id)];
    }
};

/// One field over faces and cells, read by pass-element id.
struct PassElementField {
    const double* faces;  ///< 1-based
    const double* cells;  ///< 1-based
    mesh::PassElementNumbering numbering;

    double operator[](int id) const {
        return numbering.IsFace(id) ? faces[numbering.FaceIndex(id)] : cells[numbering.CellIndex(id)];
    }
};

}  // namespace qnl::profile
