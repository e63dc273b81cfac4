#pragma once

#include <array>
#include <memory>
#include <vector>

#include "kernel/mesh/RecordMesh.h"
#include "kernel/mesh/TetraGeometry.h"
#include "kernel/rays/RayGeometry.h"
#include "platform/FieldKernel.h"

namespace qnl::kernel {

/// Finds the stretches of a ray inside the tetras of the cells that it passes: the intervals by which
/// RayWalker decides that a cell is passed, tetra by tetra. Of intervals that overlap those are kept that
/// reach farthest.
class PieceFinder {
public:
    /// `epsilon` and `passLength`, mm, are those of the walk (RayScale). The mesh is borrowed.
    PieceFinder(const RecordMesh& mesh, int boundaryFaces, double epsilon, double passLength);

    /// Makes slots 0 to n - 1.
    void PrepareSlots(int n);

    /// As FieldKernel::FindPieces.
    RayPieces Find(const Point& origin, const Point& direction, const int* passElements, int count, int slot);

private:
    /// An interval of the ray inside a tetra.
    struct Interval {
        double from;
        double to;
        int cell;
        std::array<int, 4> vertex;
    };
    /// A passed cell between the depths of its nearest and its farthest corner.
    struct CellDepth {
        double nearest;
        double farthest;
        int cell;
    };
    struct Slot {
        std::vector<CellDepth> cells;
        std::vector<Interval> intervals;
        std::vector<RayPiece> pieces;
    };

    static bool IsBefore(const Interval& a, const Interval& b);
    void OrderCells(std::vector<CellDepth>& cells, const Ray& ray, const int* passElements, int count) const;
    void AddCell(std::vector<Interval>& intervals, const Ray& ray, int cell) const;
    void AddParts(std::vector<Interval>& intervals, const Ray& ray, int cell) const;
    void AddTetra(std::vector<Interval>& intervals, const Ray& ray, const Tetra& tetra, int cell,
                  const std::array<int, 4>& vertex) const;
    void EndAtGap(std::vector<Interval>& intervals, double lastEntry) const;
    RayPiece PieceOf(const Interval& interval, const Ray& ray) const;

    RecordMesh mesh_;
    int boundaryFaces_;
    double epsilon_;
    double passLength_;
    std::vector<std::unique_ptr<Slot>> slots_;
};

}  // namespace qnl::kernel
