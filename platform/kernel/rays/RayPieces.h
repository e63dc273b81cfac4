#pragma once

#include <memory>
#include <vector>

#include "kernel/mesh/RecordMesh.h"
#include "kernel/mesh/TetraGeometry.h"
#include "platform/FieldKernel.h"

namespace qnl::kernel {

/// Finds the stretches of a ray inside the tetras of the cells that it passes: the intervals by which
/// RayWalker decides that a cell is passed, tetra by tetra.
class PieceFinder {
public:
    /// `epsilon` and `passLength`, mm, are those of the walk (RayScale). The mesh is borrowed.
    PieceFinder(const RecordMesh& mesh, int boundaryFaces, double epsilon, double passLength);

    /// Makes slots 0 to n - 1.
    void PrepareSlots(int n);

    /// As FieldKernel::FindPieces.
    RayPieces Find(const Point& origin, const Point& direction, const int* passElements, int count, int slot);

private:
    struct Ray {
        const Point& origin;
        const Point& direction;
    };
    using Slot = std::vector<RayPiece>;

    void AddCell(Slot& pieces, const Ray& ray, int cell) const;
    void AddTetra(Slot& pieces, const Ray& ray, int cell, std::array<int, 4> vertex,
                  const Point& middle) const;
    void EndAtGap(Slot& pieces, double lastEntry) const;

    RecordMesh mesh_;
    int boundaryFaces_;
    double epsilon_;
    double passLength_;
    std::vector<std::unique_ptr<Slot>> slots_;
};

}  // namespace qnl::kernel
