#pragma once

#include "base/OneBased.h"
#include "base/Vector3.h"
#include "mesh/PassElementNumbering.h"
#include "platform/MeshRecords.h"

namespace qnl::profile {

/// What every face and every cell has one of, read by pass element.
template <typename T>
struct ByPassElement {
    OneBased<const T, FaceId> faces;
    OneBased<const T, CellId> cells;

    mesh::PassElementNumbering Numbering() const { return {faces.Count()}; }
    const T& operator[](PassElement element) const {
        const mesh::PassElementNumbering numbering = Numbering();
        return numbering.IsFace(element) ? faces[numbering.Face(element)] : cells[numbering.Cell(element)];
    }
};

using PassElementMesh = ByPassElement<EntityRecord>;
using PassElementField = ByPassElement<double>;

/// Point that stands for a face or cell, mm: the middle of its box in x and y, its own middle in z.
inline Vector3 ReferencePoint(const EntityRecord& entity) {
    return {(entity.boxMin[0] + entity.boxMax[0]) / 2.0, (entity.boxMin[1] + entity.boxMax[1]) / 2.0,
            entity.zMiddle};
}

}  // namespace qnl::profile
