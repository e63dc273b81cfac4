#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "kernel/boxes/BoxHierarchy.h"
#include "kernel/rays/OriginCells.h"
#include "kernel/rays/RayHazards.h"
#include "kernel/rays/RaySlot.h"
#include "kernel/rays/RayTolerance.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

/// Finds the cells and boundary faces that a ray passes while it is inside the solid.
///
/// The rule, with h the mean length of the boundary edges, the distance tolerance epsilon = 1e-8 h (1e-6 h
/// for meshes in single precision) and the least length tau = 1e-4 h:
///
/// * A cell is *touched* at the ray parameters t at which the ray is inside it when every plane of its
///   tetras is moved outward by epsilon. A tetra is one tetra; another cell is the union of the tetras from
///   its corner average to the triangles of its faces (quads split through their corner of smallest node
///   number). Tetras of negative volume are turned, tetras with a face of zero area are ignored. So a cell
///   counts when the ray runs in its face or along its edge.
/// * The ray is *inside* from t = 0 to the end t_e of the connected union of all touched intervals that
///   contains 0, with gaps of up to epsilon closed. All regions count.
/// * A cell is *passed* when its touched length between 0 and t_e exceeds tau. Without a passed cell the
///   result is empty.
/// * A boundary face is passed when it contains the origin (within epsilon of its plane and edges), or when
///   the ray crosses it at a t in (epsilon, t_e + epsilon]: the point in the plane of one of its triangles
///   lies inside that triangle with its edges moved outward by epsilon. A ray with |normal . direction| up
///   to 1e-6 is parallel to the triangle and does not cross it.
///
/// The result is that of testing every cell and face, for any mesh. It is found by following the cells from
/// neighbour to neighbour within a small distance around the ray, beginning at all cells at the origin, at
/// the owners of all boundary faces near the ray, and at the few cells that such a walk could miss (see
/// RayHazards). A straight path inside that neighbourhood from any touched cell to the origin either stays
/// in cells or leaves them through a boundary face, so no touched cell is missed.
///
/// Two short cuts leave the result as it is. Where the ray crosses the faces of tetras well inside, it
/// meets no other cell, and depths of crossings bound the touched intervals closely enough; the planes are
/// moved only for cells near the end. And where a ray leaves a boundary node well inside one tetra, the
/// other cells at the node are neither passed nor do they prolong the way (see OriginCells).
class RayWalker {
public:
    /// Takes the topology over. `meshSize` is h, in mm.
    RayWalker(FaceTopology topology, double meshSize, bool singlePrecision);
    RayWalker(const RayWalker&) = delete;
    RayWalker& operator=(const RayWalker&) = delete;

    /// Makes slots 0 to n - 1. Not to be called while rays are searched.
    void PrepareSlots(int n);

    /// Ids of the faces and cells passed, ascending: boundary face f (1-based) is f, cell c (1-based, in the
    /// file's order) is the number of boundary faces + c. `count` receives their number: 0 for a ray that
    /// starts outside, or whose origin or direction is not finite or whose direction is zero. A direction
    /// that is not a unit vector is made one. The array (0-based, never null) belongs to the slot until the
    /// next call on it. Safe from several threads with distinct slots; a slot beyond those prepared is made
    /// on the spot. Origins other than boundary nodes need a further tree, made by the first of them.
    int* Find(int& count, const Point& origin, const Point& direction, int slot);

    /// The same; `insideEnd` receives the length t_e inside the solid, 0 when no cell is passed.
    int* Find(int& count, double& insideEnd, const Point& origin, const Point& direction, int slot);

    /// The length t_e inside the solid, 0 when no cell is passed.
    double InsideEnd(const Point& origin, const Point& direction, int slot);

    int BoundaryFaces() const { return topology_.boundaryFaces; }

private:
    struct OwnedFace {
        int cell;
        std::uint8_t localFace;
        bool thin;  ///< moving the edges of a triangle carries its corners farther than the reach
    };

    // A tetra face that the ray crosses farther than the reach from its edges, on its way out; corners
    // counterclockwise, one array a quantity.
    struct Front {
        std::array<double, 3> u;
        std::array<double, 3> v;
        std::array<double, 3> depth;
        std::array<double, 3> spread;  // |u| + |v|
        std::array<double, 3> side;    // SideOf corner i and the next one
        std::array<int, 3> node;

        void Set(std::size_t i, int number, const Seen& place) {
            u[i] = place.u;
            v[i] = place.v;
            depth[i] = place.depth;
            spread[i] = std::fabs(place.u) + std::fabs(place.v);
            node[i] = number;
        }
        Seen At(std::size_t i) const { return {u[i], v[i], depth[i]}; }
        double Depth() const;
        double Farthest() const;
    };

    void IndexBoundary();
    void IndexHazards(const RayHazards& hazards);
    void AddBoundaryFace(int cell, std::size_t face, std::vector<Box>& boxes);
    Triangle TriangleOf(int cell, std::size_t face, const std::array<std::size_t, 3>& corner) const;
    RaySlot& SlotOf(int slot);
    const BoxHierarchy& CellBoxes();

    bool Trace(RaySlot& slot, const Ray& ray);
    void PushOrigin(RaySlot& slot, const Ray& ray);
    void PushNearby(RaySlot& slot, const Ray& ray) const;
    bool HasCorner(const OwnedFace& face, int node) const;
    void TestFace(RaySlot& slot, const Ray& ray, const OwnedFace& face) const;
    void Follow(RaySlot& slot, const Ray& ray) const;
    void ClipEndings(RaySlot& slot, const Ray& ray) const;
    bool ResumeWaiting(RaySlot& slot) const;

    bool StartAtNode(RaySlot& slot, const Ray& ray, const OriginCells::Entry& entry) const;
    bool LeavesThrough(const Ray& ray, int cell, int node, double sine, Front& front, bool& clear) const;
    void FollowFronts(RaySlot& slot, const Ray& ray, int cell, Front& front) const;
    bool Advance(const Ray& ray, const int* corners, Front& front, std::size_t& exit) const;

    void Visit(RaySlot& slot, const Ray& ray, int cell) const;
    void VisitTetra(RaySlot& slot, const Ray& ray, int cell) const;
    void VisitOther(RaySlot& slot, const Ray& ray, int cell) const;
    Span ClipTetraCell(const Ray& ray, int cell) const;
    void ClipPieces(RaySlot& slot, const Ray& ray, int cell) const;
    void Push(RaySlot& slot, int cell) const;
    void Step(RaySlot& slot, int neighbour, double nearest, double farthest) const;
    void Touch(RaySlot& slot, int cell, const Span& span) const;
    void Pass(RaySlot& slot, int cell) const;
    bool IsHazard(int cell) const;
    // A span that begins no farther than epsilon behind what is joined joins it.
    bool Connects(const RaySlot& slot, const Span& span) const {
        return span.low <= slot.reached + scale_.epsilon;
    }
    double Horizon(const RaySlot& slot) const { return slot.reached + scale_.epsilon + scale_.reach; }

    bool ContainsOrigin(const RaySlot& slot) const;
    bool CollectCells(RaySlot& slot) const;
    void CollectFaces(RaySlot& slot) const;

    FaceTopology topology_;
    RayScale scale_;
    std::vector<OwnedFace> faces_;  ///< boundary faces in the order of their owners here
    BoxHierarchy faceBoxes_;
    std::vector<int> hazards_;
    std::vector<bool> isHazard_;  ///< per cell; empty when there are none
    BoxHierarchy hazardBoxes_;
    OriginCells origins_;
    std::once_flag cellBoxesMade_;
    BoxHierarchy cellBoxes_;
    std::vector<std::unique_ptr<RaySlot>> slots_;
    std::mutex furtherSlotsMutex_;
    std::map<int, RaySlot> furtherSlots_;
};

}  // namespace qnl::kernel
