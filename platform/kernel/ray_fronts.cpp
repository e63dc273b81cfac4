// The short cuts of the walk: from tetra to tetra through the inside of faces, and the start at a node.
#include <algorithm>
#include <array>
#include <cmath>

#include "kernel/prefetch.h"
#include "kernel/ray_walk.h"

namespace qnl {
namespace {

double SquaredDistance(const Seen& s) {
    return s.u * s.u + s.v * s.v + s.depth * s.depth;
}

}  // namespace

double RayWalker::Front::Depth() const {
    return (seen[0].depth * side[1] + seen[1].depth * side[2] + seen[2].depth * side[0]) /
           (side[0] + side[1] + side[2]);
}

double RayWalker::Front::Farthest() const {
    return std::max({seen[0].depth, seen[1].depth, seen[2].depth});
}

// The front is the face through which the ray enters `cell`. As long as it leaves every cell inside a face,
// no other neighbour is within reach; the span between the two faces, which the touched span contains,
// shows that the cell is passed.
void RayWalker::FollowFronts(RaySlot& slot, const Ray& ray, int cell, Front& front) const {
    double entered = front.Depth();
    while (cell >= 0 && topology_.IsTetra(cell) && !IsHazard(cell)) {
        const int* corners = topology_.Corners(cell);
        if (!slot.visited.Insert(cell)) {
            return;
        }
        for (std::size_t f = 0; f < 4; ++f) {
            Prefetch(topology_.Corners(std::max(0, corners[4 + f])));
        }
        double farthest = front.Farthest();
        std::size_t exit = 0;
        if (!Advance(ray, cell, front, exit)) {
            slot.stack.push_back(cell);
            return;
        }
        farthest = std::max(farthest, front.Farthest());
        const double left = front.Depth();
        if (!(left - entered > 1.001 * scale_.passLength)) {
            slot.stack.push_back(cell);
            return;
        }
        Pass(slot, cell);
        slot.endings.push_back({farthest, cell});
        slot.reached = std::max(slot.reached, left);
        entered = left;
        cell = corners[4 + exit];
    }
    if (cell >= 0) {
        Push(slot, cell);
    }
}

// Moves the front to the face through which the ray leaves `cell`. False, with the front as it was, unless
// the ray is farther than the reach from all new edges.
bool RayWalker::Advance(const Ray& ray, int cell, Front& front, std::size_t& exit) const {
    const int* corners = topology_.Corners(cell);
    const int apex =
        corners[0] ^ corners[1] ^ corners[2] ^ corners[3] ^ front.node[0] ^ front.node[1] ^ front.node[2];
    const Seen seen = LookAt(ray, topology_.Place(apex));
    std::array<double, 3> side;
    bool clear = true;
    for (std::size_t i = 0; i < 3; ++i) {
        side[i] = SideOf(seen, front.seen[i]);
        clear &= std::fabs(side[i]) > SideSlack(seen, front.seen[i], scale_.reach);
    }
    if (!clear) {
        return false;
    }
    // The ray leaves between the apex and the two corners that have it between them.
    const std::size_t out = side[0] > 0.0 ? (side[1] < 0.0 ? 2 : 0) : (side[2] > 0.0 ? 1 : 0);
    const std::size_t next = (out + 1) % 3;
    const std::size_t previous = (out + 2) % 3;
    if (!(side[next] > 0.0 && side[previous] < 0.0)) {
        return false;
    }
    const int dropped = front.node[out];
    front.node[out] = apex;
    front.seen[out] = seen;
    front.side[out] = side[next];
    front.side[previous] = -side[previous];
    exit = kFaceOpposite[static_cast<std::size_t>(std::find(corners, corners + 3, dropped) - corners)];
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
    const auto corner = static_cast<std::size_t>(std::find(corners, corners + 3, entry.node) - corners);
    FollowFronts(slot, ray, corners[4 + kFaceOpposite[corner]], first);
    return true;
}

// True when a ray from a corner of the cell leaves it through the opposite face, which `front` becomes.
// `clear` tells whether the ray is off the planes at the corner by the sine: off all of them when it leaves
// through the face, off one of which the cell is on the other side when it does not.
bool RayWalker::LeavesThrough(const Ray& ray, int cell, int node, double sine, Front& front,
                              bool& clear) const {
    const int* corners = topology_.Corners(cell);
    const auto corner = static_cast<std::size_t>(std::find(corners, corners + 3, node) - corners);
    const auto& face = kTetraFaces[kFaceOpposite[corner]];
    std::array<double, 3> distance;
    for (std::size_t i = 0; i < 3; ++i) {
        front.node[i] = corners[face[i]];
        front.seen[i] = LookAt(ray, topology_.Place(front.node[i]));
        distance[i] = SquaredDistance(front.seen[i]);
    }
    bool inside = true;
    bool outside = false;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const double side = SideOf(front.seen[i], front.seen[j]);
        const bool off = side * side > sine * sine * distance[i] * distance[j];
        inside = inside && off && side > SideSlack(front.seen[i], front.seen[j], scale_.reach);
        outside = outside || (off && side < 0.0);
        front.side[i] = side;
    }
    clear = inside || outside;
    return inside;
}

}  // namespace qnl
