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
    /// A tetra that the ray meets, and how the ray stands to it.
    struct MetTetra {
        std::array<int, 4> vertex;
        TetraPlanes planes;
        double sixVolumes;
    };
    /// An interval of the ray inside a tetra, and the place of the tetra in the list.
    struct Interval {
        double from;
        double to;
        int cell;
        int place;
    };
    /// A passed cell between the depths of its nearest and its farthest corner.
    struct CellDepth {
        double nearest;
        double farthest;
        int cell;
    };
    struct Slot {
        std::vector<CellDepth> cells;
        std::vector<MetTetra> tetras;
        std::vector<Interval> intervals;
        std::vector<RayPiece> pieces;
    };

    void OrderCells(std::vector<CellDepth>& cells, const Ray& ray, const int* passElements, int count) const;
    void AddCell(Slot& slot, const Ray& ray, int cell) const;
    void AddParts(Slot& slot, const Ray& ray, int cell) const;
    void AddTetra(Slot& slot, const Ray& ray, Tetra tetra, int cell, std::array<int, 4> vertex) const;
    void EndAtGap(std::vector<Interval>& intervals, double lastEntry) const;

    RecordMesh mesh_;
    int boundaryFaces_;
    double epsilon_;
    double passLength_;
    std::vector<std::unique_ptr<Slot>> slots_;
};

}  // namespace qnl::kernel
