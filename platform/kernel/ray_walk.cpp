#include "kernel/ray_walk.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "kernel/cell_pieces.h"
#include "kernel/prefetch.h"
#include "kernel/ray_hazards.h"
#include "kernel/ray_tolerance.h"

namespace qnl {
namespace {

// The distance around a ray within which cells are followed: far above the rounding of positions and the
// tolerance, far below the size of a cell.
double FollowDistance(double meshSize, double epsilon) {
    return std::max(1e-4 * meshSize, 1e3 * epsilon);
}

bool IsFinite(const Point& p) {
    return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
}

// Directions that are unit vectors but for rounding stay as they are.
std::optional<Point> UnitVector(const Point& direction) {
    const double largest =
        std::max({std::fabs(direction[0]), std::fabs(direction[1]), std::fabs(direction[2])});
    if (!IsFinite(direction) || !(largest > 0.0)) {
        return std::nullopt;
    }
    if (std::fabs(Dot(direction, direction) - 1.0) < 1e-12) {
        return direction;
    }
    Point unit{direction[0] / largest, direction[1] / largest, direction[2] / largest};
    const double length = std::sqrt(Dot(unit, unit));
    for (double& component : unit) {
        component /= length;
    }
    return unit;
}

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
        const double side = p.u * q.v - p.v * q.u;
        const double slack = margin * (std::fabs(p.u - q.u) + std::fabs(p.v - q.v) + margin);
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

RayWalker::RayWalker(FaceTopology topology, double meshSize, bool singlePrecision)
    : topology_(std::move(topology)),
      epsilon_(RayEpsilon(meshSize, singlePrecision)),
      passLength_(RayPassLength(meshSize)),
      reach_(FollowDistance(meshSize, epsilon_)) {
    IndexBoundary();
    RayHazards hazards = FindRayHazards(topology_, epsilon_, reach_);
    hazards_ = std::move(hazards.cells);
    hazardBoxes_ = BoxHierarchy(hazards.boxes);
    origins_ = OriginCells(topology_, hazards.nearCells);
}

void RayWalker::IndexBoundary() {
    faces_.reserve(static_cast<std::size_t>(topology_.boundaryFaces));
    std::vector<Box> boxes;
    boxes.reserve(faces_.capacity());
    for (int cell = 0; cell < topology_.Cells(); ++cell) {
        const int* neighbours = topology_.Neighbours(cell);
        for (std::size_t f = 0; f < static_cast<std::size_t>(topology_.Shape(cell).faces); ++f) {
            if (neighbours[f] < 0) {
                AddBoundaryFace(cell, f, boxes);
            }
        }
    }
    faceBoxes_ = BoxHierarchy(boxes);
}

void RayWalker::AddBoundaryFace(int cell, std::size_t face, std::vector<Box>& boxes) {
    const FaceTriangles triangles = SplitFace(topology_, cell, face);
    Box box = Box::Nothing();
    double overshoot = 0.0;
    for (std::size_t t = 0; t < triangles.count; ++t) {
        const Triangle triangle = TriangleOf(cell, face, triangles.corner[t]);
        for (const Point& corner : triangle) {
            box.Extend(corner);
        }
        overshoot = std::max(overshoot, EdgeOvershoot(triangle, epsilon_));
    }
    const bool thin = overshoot > reach_;
    box.Grow(thin ? 1.001 * overshoot + reach_ : reach_);
    boxes.push_back(box);
    faces_.push_back({cell, static_cast<std::uint8_t>(face), thin});
}

Triangle RayWalker::TriangleOf(int cell, std::size_t face, const std::array<std::size_t, 3>& corner) const {
    const auto& corners = topology_.Shape(cell).face[face];
    Triangle triangle;
    for (std::size_t i = 0; i < 3; ++i) {
        triangle[i] = topology_.Place(topology_.Corners(cell)[corners[corner[i]]]);
    }
    return triangle;
}

void RayWalker::PrepareSlots(int n) {
    while (static_cast<int>(slots_.size()) < n) {
        slots_.push_back(std::make_unique<RaySlot>());
    }
}

RaySlot& RayWalker::SlotOf(int slot) {
    if (slot >= 0 && static_cast<std::size_t>(slot) < slots_.size()) {
        return *slots_[static_cast<std::size_t>(slot)];
    }
    const std::lock_guard<std::mutex> lock(furtherSlotsMutex_);
    return furtherSlots_[slot];
}

const BoxHierarchy& RayWalker::CellBoxes() {
    std::call_once(cellBoxesMade_, [this] {
        std::vector<Box> boxes(static_cast<std::size_t>(topology_.Cells()), Box::Nothing());
        for (int cell = 0; cell < topology_.Cells(); ++cell) {
            Box& box = boxes[static_cast<std::size_t>(cell)];
            for (int c = 0; c < topology_.Shape(cell).corners; ++c) {
                box.Extend(topology_.Place(topology_.Corners(cell)[c]));
            }
            box.Grow(reach_);
        }
        cellBoxes_ = BoxHierarchy(boxes);
    });
    return cellBoxes_;
}

int* RayWalker::Find(int& count, const Point& origin, const Point& direction, int slot) {
    RaySlot& own = SlotOf(slot);
    own.ids.clear();
    const std::optional<Point> unit = UnitVector(direction);
    if (unit && IsFinite(origin)) {
        const Ray ray(origin, *unit);
        if (Trace(own, ray) && CollectCells(own)) {
            CollectFaces(own);
            std::sort(own.ids.begin(), own.ids.end());
        }
    }
    own.ids.reserve(1);
    count = static_cast<int>(own.ids.size());
    return own.ids.data();
}

double RayWalker::InsideEnd(const Point& origin, const Point& direction, int slot) {
    RaySlot& own = SlotOf(slot);
    own.ids.clear();
    const std::optional<Point> unit = UnitVector(direction);
    if (!unit || !IsFinite(origin) || !Trace(own, Ray(origin, *unit)) || !CollectCells(own)) {
        return 0.0;
    }
    return own.reached;
}

// Follows cells until neither the walk nor the boundary and hazards near the ray give any further one.
bool RayWalker::Trace(RaySlot& slot, const Ray& ray) {
    slot.visited.Clear();
    slot.stack.clear();
    slot.waiting.clear();
    slot.touched.clear();
    slot.detached.clear();
    slot.reached = 0.0;
    PushOrigin(slot, ray);
    do {
        Follow(slot, ray);
        PushNearby(slot, ray);
    } while (!slot.stack.empty());
    return ContainsOrigin(slot);
}

void RayWalker::PushOrigin(RaySlot& slot, const Ray& ray) {
    const auto push = [&](int cell) {
        if (slot.visited.Insert(cell)) {
            slot.stack.push_back(cell);
        }
    };
    const OriginCells::Range known = origins_.At(topology_, ray.origin);
    if (known.first != nullptr) {
        std::for_each(known.begin(), known.end(), push);
        return;
    }
    const Box place{ray.origin, ray.origin};
    CellBoxes().ForOverlap(place, [&](std::size_t cell) { push(static_cast<int>(cell)); });
}

void RayWalker::PushNearby(RaySlot& slot, const Ray& ray) const {
    slot.faceHits.clear();
    const Segment segment(ray.origin, ray.direction, -(epsilon_ + reach_), Horizon(slot));
    faceBoxes_.ForSegment(segment, [&](std::size_t face) { TestFace(slot, ray, faces_[face]); });
    hazardBoxes_.ForSegment(segment, [&](std::size_t i) {
        if (slot.visited.Insert(hazards_[i])) {
            slot.stack.push_back(hazards_[i]);
        }
    });
}

void RayWalker::TestFace(RaySlot& slot, const Ray& ray, const OwnedFace& face) const {
    const FaceTriangles triangles = SplitFace(topology_, face.cell, face.localFace);
    for (std::size_t t = 0; t < triangles.count; ++t) {
        const Triangle triangle = TriangleOf(face.cell, face.localFace, triangles.corner[t]);
        const bool near =
            MayMeet(LookAt(ray, triangle[0]), LookAt(ray, triangle[1]), LookAt(ray, triangle[2]), reach_);
        if (near && slot.visited.Insert(face.cell)) {
            slot.stack.push_back(face.cell);
        }
        if (!near && !face.thin) {
            continue;
        }
        const TriangleHit hit = HitTriangle(triangle, ray, epsilon_);
        if (hit.crossed || hit.containsOrigin) {
            const int id = ~topology_.Neighbours(face.cell)[face.localFace] + 1;
            slot.faceHits.push_back({hit.crossed ? hit.depth : -1.0, id, hit.containsOrigin});
        }
    }
}

void RayWalker::Follow(RaySlot& slot, const Ray& ray) const {
    do {
        while (!slot.stack.empty()) {
            const int cell = slot.stack.back();
            slot.stack.pop_back();
            if (topology_.IsTetra(cell)) {
                VisitTetra(slot, ray, cell);
            } else {
                VisitOther(slot, ray, cell);
            }
        }
    } while (ResumeWaiting(slot));
}

// Joins spans that now connect, and takes up the cells that have come within the horizon.
bool RayWalker::ResumeWaiting(RaySlot& slot) const {
    for (bool grown = true; grown && !slot.detached.empty();) {
        grown = false;
        for (const Span& span : slot.detached) {
            if (span.low <= slot.reached + epsilon_ && span.high > slot.reached) {
                slot.reached = span.high;
                grown = true;
            }
        }
    }
    const double horizon = Horizon(slot);
    const auto beyond = std::partition(slot.waiting.begin(), slot.waiting.end(),
                                       [&](const RaySlot::Waiting& w) { return w.depth > horizon; });
    for (auto w = beyond; w != slot.waiting.end(); ++w) {
        if (slot.visited.Insert(w->cell)) {
            slot.stack.push_back(w->cell);
        }
    }
    slot.waiting.erase(beyond, slot.waiting.end());
    return !slot.stack.empty();
}

void RayWalker::Step(RaySlot& slot, int neighbour, double nearest, double farthest) const {
    if (farthest < -(epsilon_ + reach_)) {
        return;
    }
    if (nearest > Horizon(slot)) {
        slot.waiting.push_back({nearest, neighbour});
        return;
    }
    if (slot.visited.Insert(neighbour)) {
        Prefetch(topology_.Corners(neighbour));
        slot.stack.push_back(neighbour);
    }
}

void RayWalker::Touch(RaySlot& slot, int cell, const Span& span) const {
    if (!(span.low <= span.high) || span.high < -epsilon_) {
        return;
    }
    slot.touched.push_back({span, cell});
    if (span.low <= slot.reached + epsilon_) {
        slot.reached = std::max(slot.reached, span.high);
    } else {
        slot.detached.push_back(span);
    }
}

void RayWalker::VisitTetra(RaySlot& slot, const Ray& ray, int cell) const {
    const int* corners = topology_.Corners(cell);
    const int* neighbours = corners + 4;
    Tetra tetra;
    std::array<Seen, 4> seen;
    for (std::size_t c = 0; c < 4; ++c) {
        tetra[c] = topology_.Place(corners[c]);
        seen[c] = LookAt(ray, tetra[c]);
    }
    Touch(slot, cell, ClipTetra(tetra, ray.origin, ray.direction, epsilon_));
    const EdgeSides sides = SidesOf(seen, reach_);
    for (std::size_t f = 0; f < 4; ++f) {
        if (neighbours[f] >= 0 && MayMeetFace(sides, kFaceEdges[f])) {
            const double a = seen[kTetraFaces[f][0]].depth;
            const double b = seen[kTetraFaces[f][1]].depth;
            const double c = seen[kTetraFaces[f][2]].depth;
            Step(slot, neighbours[f], std::min({a, b, c}), std::max({a, b, c}));
        }
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
        const FaceTriangles triangles = SplitFace(topology_, cell, f);
        for (std::size_t t = 0; t < triangles.count && neighbours[f] >= 0; ++t) {
            const Seen& a = seen[shape.face[f][triangles.corner[t][0]]];
            const Seen& b = seen[shape.face[f][triangles.corner[t][1]]];
            const Seen& c = seen[shape.face[f][triangles.corner[t][2]]];
            if (MayMeet(a, b, c, reach_)) {
                Step(slot, neighbours[f], std::min({a.depth, b.depth, c.depth}),
                     std::max({a.depth, b.depth, c.depth}));
            }
        }
    }
}

void RayWalker::ClipPieces(RaySlot& slot, const Ray& ray, int cell) const {
    slot.pieces.clear();
    ForPieces(topology_, cell, [&](const Tetra& piece) {
        const Span span = ClipAnyTetra(piece, ray.origin, ray.direction, epsilon_);
        if (span.low <= span.high) {
            slot.pieces.push_back(span);
        }
    });
    JoinOverlapping(slot.pieces);
    for (const Span& span : slot.pieces) {
        Touch(slot, cell, span);
    }
}

// The joined spans begin at the origin when one of them contains it, or when the gap around it closes.
bool RayWalker::ContainsOrigin(const RaySlot& slot) const {
    double before = -2.0 * epsilon_;
    double after = 2.0 * epsilon_;
    for (const RaySlot::Touched& touched : slot.touched) {
        if (touched.span.low <= 0.0 && touched.span.high >= 0.0) {
            return true;
        }
        if (touched.span.high < 0.0) {
            before = std::max(before, touched.span.high);
        } else {
            after = std::min(after, touched.span.low);
        }
    }
    return after - before <= epsilon_;
}

bool RayWalker::CollectCells(RaySlot& slot) const {
    for (std::size_t i = 0; i < slot.touched.size();) {
        const int cell = slot.touched[i].cell;
        double length = 0.0;
        for (; i < slot.touched.size() && slot.touched[i].cell == cell; ++i) {
            const Span& span = slot.touched[i].span;
            length += std::max(0.0, std::min(span.high, slot.reached) - std::max(span.low, 0.0));
        }
        if (length > passLength_) {
            slot.ids.push_back(topology_.boundaryFaces + topology_.fileCell[static_cast<std::size_t>(cell)] +
                               1);
        }
    }
    return !slot.ids.empty();
}

void RayWalker::CollectFaces(RaySlot& slot) const {
    int last = 0;
    for (const RaySlot::FaceHit& hit : slot.faceHits) {
        const bool inside = hit.depth > epsilon_ && hit.depth <= slot.reached + epsilon_;
        if ((inside || hit.containsOrigin) && hit.face != last) {
            slot.ids.push_back(hit.face);
            last = hit.face;
        }
    }
}

}  // namespace qnl
