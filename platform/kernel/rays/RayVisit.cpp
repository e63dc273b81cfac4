// Visiting one cell around the ray: its touched spans, and the neighbours within reach.
#include <algorithm>
#include <array>
#include <cmath>

#include "kernel/mesh/Prefetch.h"
#include "kernel/rays/CellPieces.h"
#include "kernel/rays/RayWalk.h"

namespace qnl::kernel {
namespace {

// Edges of a tetra, and for each local face the edges along which it runs forward and backward, as bits.
constexpr std::array<std::array<std::size_t, 2>, 6> kTetraEdges{
    {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}};

struct FaceEdges {
    unsigned forward;
    unsigned backward;
};

constexpr std::array<FaceEdges, 4> kFaceEdges{
    {{0b000010, 0b001001}, {0b010001, 0b000100}, {0b101000, 0b010000}, {0b000100, 0b100010}}};

// Bits of the edges that the ray has on one side, seen along it, or within the margin.
struct EdgeSides {
    unsigned left;
    unsigned right;
};

EdgeSides SidesOf(const std::array<Seen, 4>& seen, double margin) {
    EdgeSides sides{0, 0};
    for (std::size_t e = 0; e < 6; ++e) {
        const Seen& p = seen[kTetraEdges[e][0]];
        const Seen& q = seen[kTetraEdges[e][1]];
        const double side = SideOf(p, q);
        const double slack = SideSlack(p, q, margin);
        sides.left |= static_cast<unsigned>(side >= -slack) << e;
        sides.right |= static_cast<unsigned>(side <= slack) << e;
    }
    return sides;
}

bool MayMeetFace(const EdgeSides& sides, const FaceEdges& face) {
    const unsigned all = face.forward | face.backward;
    return ((sides.left & face.forward) | (sides.right & face.backward)) == all ||
           ((sides.right & face.forward) | (sides.left & face.backward)) == all;
}

// True when the ray crosses the face outward, farther than the margin from all its edges.
bool LeavesInside(const EdgeSides& sides, const FaceEdges& face) {
    const unsigned left = sides.left & ~sides.right;
    const unsigned right = sides.right & ~sides.left;
    return ((left & face.forward) | (right & face.backward)) == (face.forward | face.backward);
}

void JoinOverlapping(std::vector<Span>& spans) {
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.low < b.low; });
    std::size_t last = 0;
    for (std::size_t i = 1; i < spans.size(); ++i) {
        if (spans[i].low <= spans[last].high) {
            spans[last].high = std::max(spans[last].high, spans[i].high);
        } else {
            spans[++last] = spans[i];
        }
    }
    spans.resize(spans.empty() ? 0 : last + 1);
}

}  // namespace

bool RayWalker::IsHazard(int cell) const {
    return !isHazard_.empty() && isHazard_[static_cast<std::size_t>(cell)];
}

void RayWalker::Push(RaySlot& slot, int cell) const {
    if (slot.visited.Insert(cell)) {
        Prefetch(topology_.Corners(cell));
        slot.stack.push_back(cell);
    }
}

void RayWalker::Pass(RaySlot& slot, int cell) const {
    slot.ids.push_back(topology_.boundaryFaces + topology_.fileCell[static_cast<std::size_t>(cell)] + 1);
}

void RayWalker::Step(RaySlot& slot, int neighbour, double nearest, double farthest) const {
    if (farthest < -(scale_.epsilon + scale_.reach)) {
        return;
    }
    if (nearest > Horizon(slot)) {
        slot.waiting.push_back({nearest, neighbour});
        return;
    }
    Push(slot, neighbour);
}

void RayWalker::Touch(RaySlot& slot, int cell, const Span& span) const {
    if (!(span.low <= span.high) || span.high < -scale_.epsilon) {
        return;
    }
    slot.touched.push_back({span, cell});
    slot.holdsOrigin = slot.holdsOrigin || (span.low <= 0.0 && span.high >= 0.0);
    if (Connects(slot, span)) {
        slot.reached = std::max(slot.reached, span.high);
    } else {
        slot.detached.push_back(span);
    }
}

void RayWalker::Visit(RaySlot& slot, const Ray& ray, int cell) const {
    if (topology_.IsTetra(cell)) {
        VisitTetra(slot, ray, cell);
    } else {
        VisitOther(slot, ray, cell);
    }
}

Span RayWalker::ClipTetraCell(const Ray& ray, int cell) const {
    const int* corners = topology_.Corners(cell);
    return ClipTetra({topology_.Place(corners[0]), topology_.Place(corners[1]), topology_.Place(corners[2]),
                      topology_.Place(corners[3])},
                     ray.origin, ray.direction, scale_.epsilon)
        .span;
}

void RayWalker::VisitTetra(RaySlot& slot, const Ray& ray, int cell) const {
    const int* corners = topology_.Corners(cell);
    const int* neighbours = corners + 4;
    Touch(slot, cell, ClipTetraCell(ray, cell));
    std::array<Seen, 4> seen;
    for (std::size_t c = 0; c < 4; ++c) {
        seen[c] = LookAt(ray, topology_.Place(corners[c]));
    }
    const EdgeSides sides = SidesOf(seen, scale_.reach);
    for (std::size_t f = 0; f < 4; ++f) {
        if (neighbours[f] < 0 || !MayMeetFace(sides, kFaceEdges[f])) {
            continue;
        }
        const auto& at = kTetraFaces[f];
        // Cells met on the short cut have no touched span: one of another cell must contain the origin.
        if (slot.holdsOrigin && LeavesInside(sides, kFaceEdges[f])) {
            Front front;
            for (std::size_t i = 0; i < 3; ++i) {
                front.Set(i, corners[at[i]], seen[at[i]]);
                front.side[i] = SideOf(seen[at[i]], seen[at[(i + 1) % 3]]);
            }
            const double depth = front.Depth();
            if (depth >= 0.0 && depth <= slot.reached) {
                FollowFronts(slot, ray, neighbours[f], front);
                continue;
            }
        }
        const double a = seen[at[0]].depth;
        const double b = seen[at[1]].depth;
        const double c = seen[at[2]].depth;
        Step(slot, neighbours[f], std::min({a, b, c}), std::max({a, b, c}));
    }
}

void RayWalker::VisitOther(RaySlot& slot, const Ray& ray, int cell) const {
    ClipPieces(slot, ray, cell);
    const CellShape& shape = topology_.Shape(cell);
    const int* corners = topology_.Corners(cell);
    const int* neighbours = topology_.Neighbours(cell);
    std::array<Seen, 8> seen;
    for (std::size_t c = 0; c < static_cast<std::size_t>(shape.corners); ++c) {
        seen[c] = LookAt(ray, topology_.Place(corners[c]));
    }
    for (std::size_t f = 0; f < static_cast<std::size_t>(shape.faces); ++f) {
        const CornerTriangles triangles = SplitFace(topology_, cell, f);
        for (std::size_t t = 0; t < triangles.count && neighbours[f] >= 0; ++t) {
            const Seen& a = seen[shape.face[f][triangles.corner[t][0]]];
            const Seen& b = seen[shape.face[f][triangles.corner[t][1]]];
            const Seen& c = seen[shape.face[f][triangles.corner[t][2]]];
            if (MayMeet(a, b, c, scale_.reach)) {
                Step(slot, neighbours[f], std::min({a.depth, b.depth, c.depth}),
                     std::max({a.depth, b.depth, c.depth}));
            }
        }
    }
}

void RayWalker::ClipPieces(RaySlot& slot, const Ray& ray, int cell) const {
    slot.pieces.clear();
    ForPieces(topology_, cell, [&](const Tetra& piece) {
        const Span span = SpanInTetra(piece, ray.origin, ray.direction, scale_.epsilon);
        if (span.low <= span.high) {
            slot.pieces.push_back(span);
        }
    });
    JoinOverlapping(slot.pieces);
    for (const Span& span : slot.pieces) {
        Touch(slot, cell, span);
    }
}

}  // namespace qnl::kernel
