#include "kernel/rays/RayWalk.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "kernel/mesh/Prefetch.h"
#include "kernel/rays/AscendingSort.h"
#include "kernel/rays/CellPieces.h"
#include "kernel/rays/RayHazards.h"
#include "kernel/rays/RayTolerance.h"

namespace qnl::kernel {
namespace {

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

}  // namespace

RayWalker::RayWalker(FaceTopology topology, double meshSize, bool singlePrecision)
    : topology_(std::move(topology)), scale_(meshSize, singlePrecision) {
    IndexBoundary();
    const RayHazards hazards = FindRayHazards(topology_, scale_);
    IndexHazards(hazards);
    origins_ = OriginCells(topology_, hazards, scale_);
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

void RayWalker::IndexHazards(const RayHazards& hazards) {
    hazards_ = hazards.cells;
    hazardBoxes_ = BoxHierarchy(hazards.boxes);
    if (!hazards_.empty()) {
        isHazard_.assign(static_cast<std::size_t>(topology_.Cells()), false);
    }
    for (const int cell : hazards_) {
        isHazard_[static_cast<std::size_t>(cell)] = true;
    }
}

void RayWalker::AddBoundaryFace(int cell, std::size_t face, std::vector<Box>& boxes) {
    const CornerTriangles triangles = SplitFace(topology_, cell, face);
    Box box = Box::Nothing();
    double overshoot = 0.0;
    for (std::size_t t = 0; t < triangles.count; ++t) {
        const Triangle triangle = TriangleOf(cell, face, triangles.corner[t]);
        for (const Point& corner : triangle) {
            box.Extend(corner);
        }
        overshoot = std::max(overshoot, EdgeOvershoot(triangle, scale_.epsilon));
    }
    const bool thin = overshoot > scale_.reach;
    box.Grow(thin ? 1.001 * overshoot + scale_.reach : scale_.reach);
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
            box.Grow(scale_.reach);
        }
        cellBoxes_ = BoxHierarchy(boxes);
    });
    return cellBoxes_;
}

int* RayWalker::Find(int& count, const Point& origin, const Point& direction, int slot) {
    double insideEnd = 0.0;
    return Find(count, insideEnd, origin, direction, slot);
}

int* RayWalker::Find(int& count, double& insideEnd, const Point& origin, const Point& direction, int slot) {
    RaySlot& own = SlotOf(slot);
    own.ids.clear();
    insideEnd = 0.0;
    const std::optional<Point> unit = UnitVector(direction);
    if (unit && IsFinite(origin)) {
        const Ray ray(origin, *unit);
        if (Trace(own, ray) && CollectCells(own)) {
            insideEnd = own.reached;
            CollectFaces(own);
            SortAscending(own.ids, own.sorting);
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
    slot.endings.clear();
    slot.reached = 0.0;
    slot.holdsOrigin = false;
    slot.startNode = -1;
    PushOrigin(slot, ray);
    do {
        Follow(slot, ray);
        PushNearby(slot, ray);
    } while (!slot.stack.empty());
    return slot.startNode >= 0 || ContainsOrigin(slot);
}

void RayWalker::PushOrigin(RaySlot& slot, const Ray& ray) {
    const OriginCells::Entry known = origins_.At(topology_, ray.origin);
    if (known.node < 0) {
        CellBoxes().ForOverlap({ray.origin, ray.origin},
                               [&](std::size_t cell) { Push(slot, static_cast<int>(cell)); });
    } else if (!StartAtNode(slot, ray, known)) {
        for (const int cell : known) {
            Push(slot, cell);
        }
    }
}

void RayWalker::PushNearby(RaySlot& slot, const Ray& ray) const {
    slot.faceHits.clear();
    const Segment segment(ray.origin, ray.direction, -(scale_.epsilon + scale_.reach), Horizon(slot));
    faceBoxes_.ForSegment(segment, [&](std::size_t face) { TestFace(slot, ray, faces_[face]); });
    hazardBoxes_.ForSegment(segment, [&](std::size_t i) { Push(slot, hazards_[i]); });
}

bool RayWalker::HasCorner(const OwnedFace& face, int node) const {
    const CellShape& shape = topology_.Shape(face.cell);
    const int* corners = topology_.Corners(face.cell);
    for (std::size_t c = 0; c < shape.faceCorners[face.localFace]; ++c) {
        if (corners[shape.face[face.localFace][c]] == node) {
            return true;
        }
    }
    return false;
}

void RayWalker::TestFace(RaySlot& slot, const Ray& ray, const OwnedFace& face) const {
    const int id = ~topology_.Neighbours(face.cell)[face.localFace] + 1;
    if (slot.startNode >= 0 && HasCorner(face, slot.startNode)) {
        slot.faceHits.push_back({-1.0, id, true});
        return;
    }
    const CornerTriangles triangles = SplitFace(topology_, face.cell, face.localFace);
    for (std::size_t t = 0; t < triangles.count; ++t) {
        const Triangle triangle = TriangleOf(face.cell, face.localFace, triangles.corner[t]);
        const bool near = MayMeet(LookAt(ray, triangle[0]), LookAt(ray, triangle[1]),
                                  LookAt(ray, triangle[2]), scale_.reach);
        if (near) {
            Push(slot, face.cell);
        }
        if (!near && !face.thin) {
            continue;
        }
        const TriangleHit hit = HitTriangle(triangle, ray, scale_.epsilon);
        if (hit.crossed || hit.containsOrigin) {
            slot.faceHits.push_back({hit.crossed ? hit.depth : -1.0, id, hit.containsOrigin});
        }
    }
}

void RayWalker::Follow(RaySlot& slot, const Ray& ray) const {
    do {
        while (!slot.stack.empty()) {
            const int cell = slot.stack.back();
            slot.stack.pop_back();
            Visit(slot, ray, cell);
        }
        ClipEndings(slot, ray);
    } while (ResumeWaiting(slot));
}

// Moving its planes can carry the end of a cell's span farther, at most by the reach beyond its corners.
void RayWalker::ClipEndings(RaySlot& slot, const Ray& ray) const {
    for (const RaySlot::Ending& ending : slot.endings) {
        if (ending.depth + scale_.reach > slot.reached) {
            slot.reached = std::max(slot.reached, ClipTetraCell(ray, ending.cell).high);
        }
    }
    slot.endings.clear();
}

// Joins spans that now connect, and takes up the cells that have come within the horizon.
bool RayWalker::ResumeWaiting(RaySlot& slot) const {
    for (bool grown = true; grown && !slot.detached.empty();) {
        grown = false;
        for (const Span& span : slot.detached) {
            if (Connects(slot, span) && span.high > slot.reached) {
                slot.reached = span.high;
                grown = true;
            }
        }
    }
    const double horizon = Horizon(slot);
    const auto beyond = std::partition(slot.waiting.begin(), slot.waiting.end(),
                                       [&](const RaySlot::Waiting& w) { return w.depth > horizon; });
    for (auto w = beyond; w != slot.waiting.end(); ++w) {
        Push(slot, w->cell);
    }
    slot.waiting.erase(beyond, slot.waiting.end());
    return !slot.stack.empty();
}

// The joined spans begin at the origin when one of them contains it, or when the gap around it closes.
bool RayWalker::ContainsOrigin(const RaySlot& slot) const {
    if (slot.holdsOrigin) {
        return true;
    }
    double before = -2.0 * scale_.epsilon;
    double after = 2.0 * scale_.epsilon;
    for (const RaySlot::Touched& touched : slot.touched) {
        if (touched.span.high < 0.0) {
            before = std::max(before, touched.span.high);
        } else {
            after = std::min(after, touched.span.low);
        }
    }
    return after - before <= scale_.epsilon;
}

bool RayWalker::CollectCells(RaySlot& slot) const {
    for (std::size_t i = 0; i < slot.touched.size();) {
        const int cell = slot.touched[i].cell;
        double length = 0.0;
        for (; i < slot.touched.size() && slot.touched[i].cell == cell; ++i) {
            const Span& span = slot.touched[i].span;
            length += std::max(0.0, std::min(span.high, slot.reached) - std::max(span.low, 0.0));
        }
        if (length > scale_.passLength) {
            slot.ids.push_back(topology_.boundaryFaces + topology_.fileCell[static_cast<std::size_t>(cell)] +
                               1);
        }
    }
    return !slot.ids.empty();
}

void RayWalker::CollectFaces(RaySlot& slot) const {
    int last = 0;
    for (const RaySlot::FaceHit& hit : slot.faceHits) {
        const bool inside = hit.depth > scale_.epsilon && hit.depth <= slot.reached + scale_.epsilon;
        if ((inside || hit.containsOrigin) && hit.face != last) {
            slot.ids.push_back(hit.face);
            last = hit.face;
        }
    }
}

}  // namespace qnl::kernel
