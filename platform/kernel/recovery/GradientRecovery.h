#pragma once

#include "kernel/mesh/RecordMesh.h"
#include "kernel/recovery/NeighbourRows.h"
#include "platform/FieldKernel.h"

namespace qnl::kernel {

/// Gradients of nodal fields by a fit over each node's patch (see PatchFit).
///
/// The patch is made of the nodes that share a cell with the node and of those around these; a third ring is
/// taken where that leaves the fit ill-determined, and what is open after it is taken as 0. Kept are the
/// neighbour rows; while gradients are recovered there are 4 bytes more a node, a cell and thread.
class GradientRecovery {
public:
    /// The mesh is borrowed.
    explicit GradientRecovery(const RecordMesh& mesh) : mesh_(mesh), rows_(mesh) {}

    /// As FieldKernel::RecoverGradients.
    GradientReport Recover(const double* const* fields, int count, double* gradients) const;

    const NeighbourRows& Rows() const { return rows_; }

private:
    RecordMesh mesh_;
    NeighbourRows rows_;
};

}  // namespace qnl::kernel
