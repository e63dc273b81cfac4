#pragma once

#include <array>
#include <cstddef>

#include "platform/FieldKernel.h"
#include "platform/MeshRecords.h"
#include "profile/resolved/FieldRange.h"

namespace qnl::profile {

/// A field by node, borrowed.
struct NodalField {
    const double* values = nullptr;  ///< 1-based
    /// Three a node, field unit by mm, those of node n at gradients + stride * n; null: linear between nodes.
    const double* gradients = nullptr;
    std::ptrdiff_t stride = 3;
    FieldRange known{};  ///< the quadratic keeps within it
};

/// A field along a straight stretch, by the part 0 to 1 of the way.
struct LineField {
    double first;
    double last;
    double bend;  ///< factor of part^2

    double At(double part) const { return first + part * (last - first) - part * (1.0 - part) * bend; }
};

/// A field inside one tetra: sum of l_i v_i - sum over pairs of l_i l_j c_ij / 2, l the barycentric
/// coordinates.
struct TetraField {
    std::array<double, 4> value;
    std::array<double, 6> curvature;  ///< of the pairs 01, 02, 03, 12, 13, 23

    double At(const std::array<double, 4>& lambda) const;
    /// Factor of part^2 on the straight way between two points.
    double BendBetween(const std::array<double, 4>& first, const std::array<double, 4>& last) const;
};

/// A field inside a cell that is a tetra, as CellField has it, for corners in any order (node index,
/// 1-based).
TetraField FieldOfTetra(const FieldMesh& mesh, const NodalField& field, const std::array<int, 4>& corners);

/// A field inside one cell, quadratic between its corners: for each pair of corners the limited curvature of
/// their edge. With unlimited curvatures it is the sum of l_i T_i and l_i l_j (g_i - g_j).(x_j - x_i) / 2, g
/// the gradients. It is the same on both sides of a face, and exact for quadratic fields.
///
/// A cell that is no tetra has a value at the average of its corners, T_c = mean T - sum of c_ij / (2 n^2),
/// and curvatures between it and the corners, mean of c_ij over j - sum of c_jk / n^2, over all pairs of
/// corners. For unlimited curvatures these are the mean of T_i + g_i.(c - x_i) / 2 and (mean g - g_i).(c -
/// x_i) of a field with symmetric second derivatives.
class CellField {
public:
    /// Takes a cell, 1-based; does nothing when it has that cell already.
    void Take(const FieldMesh& mesh, const NodalField& field, int cell);

    /// To be called when field values have changed.
    void Forget() { cell_ = 0; }

    /// The field in one tetra of the cell.
    TetraField In(const RayPiece& piece) const;

private:
    static constexpr std::size_t kMost = 9;  // corners of a hexa and their average

    /// Of a pair of places in either order.
    static std::size_t PairOf(std::size_t i, std::size_t j) {
        return i < j ? j * (j - 1) / 2 + i : i * (i - 1) / 2 + j;
    }
    void TakePairs(const NodeRecord* nodes, const NodalField& field);
    void TakeAverage();
    std::size_t PlaceOf(int vertex) const;

    int cell_ = 0;
    std::size_t corners_ = 0;
    const int* nodes_ = nullptr;  // of the corners, 0-based array
    std::array<double, kMost> value_{};
    std::array<double, kMost*(kMost - 1) / 2> curvature_{};  // by pair
};

}  // namespace qnl::profile
