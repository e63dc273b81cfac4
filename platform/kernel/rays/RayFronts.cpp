// The short cuts of the walk: from tetra to tetra through the inside of faces, and the start at a node.
#include <algorithm>
#include <array>
#include <cmath>

#include "kernel/mesh/Prefetch.h"
#include "kernel/rays/RayWalk.h"

namespace qnl::kernel {
namespace {

constexpr std::array<std::size_t, 3> kAfter{1, 2, 0};
constexpr std::array<std::size_t, 3> kBefore{2, 0, 1};

// Position of a node among the corners of a tetra that has it; no branches, for it is hard to foresee.
std::size_t CornerOf(const int* corners, int node) {
    const std::size_t first = corners[1] == node ? 1 : 0;
    const std::size_t second = corners[2] == node ? 2 : 0;
    const std::size_t third = corners[3] == node ? 3 : 0;
    return first + second + third;
}

double SquaredDistance(const Seen& s) {
    return s.u * s.u + s.v * s.v + s.depth * s.depth;
}

}  // namespace

double RayWalker::Front::Depth() const {
    return (depth[0] * side[1] + depth[1] * side[2] + depth[2] * side[0]) / (side[0] + side[1] + side[2]);
}

double RayWalker::Front::Farthest() const {
    return std::max(std::max(depth[0], depth[1]), depth[2]);
}

// The front is the face through which the ray enters `cell`. As long as it leaves every cell inside a face,
// no other neighbour is within reach; the span between the two faces, which the touched span contains,
// shows that the cell is passed.
void RayWalker::FollowFronts(RaySlot& slot, const Ray& ray, int cell, Front& front) const {
    double entered = front.Depth();
    double farthest = front.Farthest();
    while (cell >= 0 && topology_.IsTetra(cell) && !IsHazard(cell)) {
        const int* corners = topology_.Corners(cell);
        if (!slot.visited.Insert(cell)) {
            return;
        }
        Prefetch(topology_.fileCell.data() + cell);
        for (std::size_t f = 4; f < 8; ++f) {
            Prefetch(topology_.Corners(std::max(0, corners[f])));
        }
        std::size_t exit = 0;
        const bool inside = Advance(ray, corners, front, exit);
        const double left = front.Depth();
        if (!inside || !(left - entered > 1.001 * scale_.passLength)) {
            slot.stack.push_back(cell);
            return;
        }
        const double ahead = front.Farthest();
        Pass(slot, cell);
        slot.endings.push_back({std::max(farthest, ahead), cell});
        slot.reached = std::max(slot.reached, left);
        entered = left;
        farthest = ahead;
        cell = corners[4 + exit];
    }
    if (cell >= 0) {
        Push(slot, cell);
    }
}

// Moves the front to the face through which the ray leaves the tetra with these corners. False, with the
// front as it was, unless the ray is farther than the reach from all new edges.
bool RayWalker::Advance(const Ray& ray, const int* corners, Front& front, std::size_t& exit) const {
    const auto& [a, b, c] = front.node;
    const int node = corners[0] ^ corners[1] ^ corners[2] ^ corners[3] ^ a ^ b ^ c;
    // Looked up before it is known which of them is needed.
    const std::array<std::size_t, 3> opposite{kFaceOpposite[CornerOf(corners, a)],
                                              kFaceOpposite[CornerOf(corners, b)],
                                              kFaceOpposite[CornerOf(corners, c)]};
    const Seen apex = LookAt(ray, topology_.Place(node));
    const std::array<double, 3> side{SideOf(apex, front.At(0)), SideOf(apex, front.At(1)),
                                     SideOf(apex, front.At(2))};
    const double widest = std::max(std::max(front.spread[0], front.spread[1]), front.spread[2]);
    const double slack = scale_.reach * (std::fabs(apex.u) + std::fabs(apex.v) + widest + scale_.reach);
    if (!(std::min(std::min(std::fabs(side[0]), std::fabs(side[1])), std::fabs(side[2])) > slack)) {
        return false;
    }
    // The ray leaves between the apex and the two corners that have it between them; the third drops out.
    constexpr std::array<std::size_t, 8> kDropped{3, 2, 0, 0, 1, 2, 1, 3};
    const std::size_t drop =
        kDropped[(side[0] > 0.0 ? 1U : 0U) | (side[1] > 0.0 ? 2U : 0U) | (side[2] > 0.0 ? 4U : 0U)];
    if (drop == 3) {
        return false;
    }
    const std::size_t previous = kBefore[drop];
    exit = opposite[drop];
    front.Set(drop, node, apex);
    front.side[drop] = side[kAfter[drop]];
    front.side[previous] = -side[previous];
    return true;
}

// Takes the one cell at the node into which the ray runs, when it stays clear of all others there.
bool RayWalker::StartAtNode(RaySlot& slot, const Ray& ray, const OriginCells::Entry& entry) const {
    if (entry.sine > 1.0F) {
        return false;
    }
    int entered = -1;
    Front first;
    for (const int cell : entry) {
        Front front;
        bool clear = false;
        const bool leaves =
            LeavesThrough(ray, cell, entry.node, static_cast<double>(entry.sine), front, clear);
        if (!clear || (leaves && entered >= 0)) {
            return false;
        }
        if (leaves) {
            entered = cell;
            first = front;
        }
    }
    if (entered < 0 || !(first.Depth() > 1.001 * scale_.passLength)) {
        return false;
    }
    slot.startNode = entry.node;
    slot.visited.Insert(entered);
    Pass(slot, entered);
    slot.endings.push_back({first.Farthest(), entered});
    slot.reached = first.Depth();
    const int* corners = topology_.Corners(entered);
    const std::size_t corner = CornerOf(corners, entry.node);
    FollowFronts(slot, ray, corners[4 + kFaceOpposite[corner]], first);
    return true;
}

// True when a ray from a corner of the cell leaves it through the opposite face, which `front` becomes.
// `clear` tells whether the ray is off the planes at the corner by the sine: off all of them when it leaves
// through the face, off one of which the cell is on the other side when it does not.
bool RayWalker::LeavesThrough(const Ray& ray, int cell, int node, double sine, Front& front,
                              bool& clear) const {
    const int* corners = topology_.Corners(cell);
    const std::size_t corner = CornerOf(corners, node);
    const auto& face = kTetraFaces[kFaceOpposite[corner]];
    std::array<double, 3> distance;
    for (std::size_t i = 0; i < 3; ++i) {
        const int other = corners[face[i]];
        const Seen seen = LookAt(ray, topology_.Place(other));
        front.Set(i, other, seen);
        distance[i] = SquaredDistance(seen);
    }
    bool inside = true;
    bool outside = false;
    for (std::size_t i = 0; i < 3; ++i) {
        const Seen p = front.At(i);
        const Seen q = front.At(kAfter[i]);
        const double side = SideOf(p, q);
        const bool off = side * side > sine * sine * distance[i] * distance[kAfter[i]];
        inside = inside && off && side > SideSlack(p, q, scale_.reach);
        outside = outside || (off && side < 0.0);
        front.side[i] = side;
    }
    clear = inside || outside;
    return inside;
}

}  // namespace qnl::kernel
