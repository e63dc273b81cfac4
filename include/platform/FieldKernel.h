#pragma once

#include <array>
#include <memory>

class CQNLOptKer;

namespace qnl {

/// How far the surroundings of the nodes determined their gradients, in numbers of nodes. A node counts once,
/// by the least determined of its fields.
struct GradientReport {
    int nodes = 0;            ///< nodes with a gradient of at least one field
    int withoutValue = 0;     ///< nodes without a value, or without neighbours that have one, in some field
    int fewerCurvatures = 0;  ///< some second derivative was open and taken as 0: walls of one cell
    int fewerSlopes = 0;      ///< some slope was open and taken as 0: all neighbours in a plane or on a line
};

/// A stretch of a ray inside one tetra of a cell. A cell that is no tetra is the union of the tetras that
/// join the average of its corners to the triangles of its faces.
struct RayPiece {
    double from;                   ///< mm from the ray's origin, 0 or more
    double to;                     ///< mm, more than `from`
    std::array<double, 4> atFrom;  ///< barycentric coordinates of the entry by vertex; their sum is 1
    std::array<double, 4> atTo;    ///< those of the exit; between the two they are linear in the depth
    std::array<int, 4> vertex;     ///< node index, 1-based; 0 is the average of the cell's corners
    int cell;                      ///< cell index, 1-based
};

/// Pieces in ascending order of `from`, then `to`, then cell.
struct RayPieces {
    const RayPiece* first;  ///< 0-based
    int count;
};

/// What a mesh kernel may offer beyond CQNLOptKer: fields inside the cells, instead of averages over them.
/// Indices are 1-based as in the kernel, lengths in mm. Raises std::bad_alloc.
class FieldKernel {
public:
    FieldKernel() = default;
    virtual ~FieldKernel() = default;
    FieldKernel(const FieldKernel&) = delete;
    FieldKernel& operator=(const FieldKernel&) = delete;

    /// Recovers the gradients of `count` nodal fields at once. fields[f] is an array by node of
    /// m_nNodes + 1 entries whose entry 0 is unused; a value that is not finite is missing, and is left out
    /// of the surroundings of the other nodes.
    ///
    /// `gradients` receives 3 * count * (m_nNodes + 1) doubles, field unit by mm: those of field f (0-based)
    /// at node n begin at 3 * (count * n + f); 0 at nodes without a value, and for node 0. Exact for
    /// quadratic fields where the surroundings determine them. Runs on the threads of the parallel runtime;
    /// the bits depend neither on their number nor on what other fields are recovered along. One call at a
    /// time.
    virtual GradientReport RecoverGradients(const double* const* fields, int count, double* gradients) = 0;

    /// Makes the slots 0 to n - 1 of FindPieces. Not to be called while pieces are searched.
    virtual void PrepareSlots(int n) = 0;

    /// Pieces of the ray from `origin` along the unit vector `direction` in the cells that it passes, by the
    /// rule that decides whether a cell is passed. `passElements` are the ids that FindPassElemByAnyRay gave
    /// for the same ray (0-based array, ascending); faces among them are passed over. Of pieces that
    /// overlap, in cells that share a face or an edge along the ray, those are given that reach farthest.
    ///
    /// The array belongs to the slot and holds until the next call on it. Safe from several threads with
    /// distinct slots. Raises std::out_of_range for a slot that was not prepared.
    virtual RayPieces FindPieces(const std::array<double, 3>& origin, const std::array<double, 3>& direction,
                                 const int* passElements, int count, int slot) = 0;
};

/// The extension of a kernel that has read its mesh; null from a kernel that has none or has read nothing. It
/// refers to the kernel's mesh: to be made anew after another mesh was read, and not to outlive the kernel.
std::unique_ptr<FieldKernel> MakeFieldKernel(CQNLOptKer& kernel);

}  // namespace qnl
