#pragma once

#include <array>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::testing {

/// The ray rule applied to every cell and face of a mesh, in extended precision, as the measure of the walk.
/// Shares no code with it.
class BruteRay {
public:
    using Real = long double;
    using Vector = std::array<Real, 3>;

    struct Result {
        std::vector<int> ids;  ///< ascending
        double insideEnd = 0.0;
        Real narrowest =
            1e30L;  ///< how near a touched cell's passed length came to the limit, over the limit
    };

    BruteRay(const kernel::MeshData& mesh, double meshSize);

    /// `direction` is a unit vector.
    Result Find(const kernel::Point& origin, const kernel::Point& direction) const;

    int Faces() const { return static_cast<int>(faces_.size()); }
    /// 0-based nodes of boundary faces, ascending.
    std::vector<int> BoundaryNodes() const;
    /// Inward direction at a node from the triangles of its boundary faces; zero when they cancel.
    kernel::Point InwardDirection(int node) const;
    /// Mean length of the distinct edges of the boundary faces.
    static double MeanEdge(const kernel::MeshData& mesh);

private:
    struct Plane {
        Vector normal;  // unit, outward
        Real offset;
    };
    using Piece = std::array<Plane, 4>;
    struct Triangle {
        std::array<int, 3> nodes;
        std::array<Vector, 3> corners;
        Vector normal;                // unit
        std::array<Vector, 3> edges;  // out of the edge after each corner, in the plane
        std::array<Real, 3> rooms;    // epsilon times their lengths
    };
    struct Interval {
        Real low;
        Real high;
    };

    void AddCell(int cell);
    void AddPiece(const std::array<Vector, 4>& corners);
    void AddTriangles(const std::vector<int>& face);
    std::vector<Interval> Touched(std::size_t cell, const Vector& origin, const Vector& direction) const;
    bool FacePassed(std::size_t face, const Vector& origin, const Vector& direction, Real end) const;

    const kernel::MeshData& mesh_;
    Real epsilon_;
    Real passLength_;
    std::vector<std::size_t> firstPiece_;
    std::vector<Piece> pieces_;
    std::vector<std::vector<int>> faces_;           // node lists, in the numbering order
    std::vector<std::vector<Triangle>> triangles_;  // of each face, without those of no area
};

/// Node lists of the boundary faces by owning cell, then local face.
std::vector<std::vector<int>> BruteBoundary(const kernel::MeshData& mesh);

}  // namespace qnl::testing
