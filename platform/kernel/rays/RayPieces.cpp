#include "kernel/rays/RayPieces.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>
#include <utility>

#include "kernel/mesh/CellTetras.h"
#include "kernel/rays/RayGeometry.h"

namespace qnl::kernel {
namespace {

constexpr int kMiddle = 0;  // vertex number of the corner average

// Moving the planes of a tetra carries its ends outside; far outside when it is very flat. The coordinates
// are held near the tetra then, so that no value is taken from beyond its vertices.
std::array<double, 4> Barycentric(const TetraPlanes& planes, double sixVolumes, double depth) {
    constexpr double kOutside = 1e-3;
    std::array<double, 4> lambda{};
    double sum = 0.0;
    for (std::size_t v = 0; v < 4; ++v) {
        lambda[v] =
            std::clamp(planes.RoomAt(kFaceOpposite[v], depth) / sixVolumes, -kOutside, 1.0 + kOutside);
        sum += lambda[v];
    }
    for (double& coordinate : lambda) {
        coordinate /= sum;
    }
    return lambda;
}

RayPiece PieceOf(double from, double to, int cell, const std::array<int, 4>& vertex,
                 const TetraPlanes& planes, double sixVolumes) {
    return {from,   to,  Barycentric(planes, sixVolumes, from), Barycentric(planes, sixVolumes, to),
            vertex, cell};
}

// Depths along the ray that a box keeps within.
struct DepthRange {
    double nearest;
    double farthest;
};

DepthRange DepthsOf(const CellRecord& cell, const Ray& ray) {
    DepthRange range{0.0, 0.0};
    for (std::size_t a = 0; a < 3; ++a) {
        const double low = ray.direction[a] * (cell.boxMin[a] - ray.origin[a]);
        const double high = ray.direction[a] * (cell.boxMax[a] - ray.origin[a]);
        range.nearest += std::min(low, high);
        range.farthest += std::max(low, high);
    }
    return range;
}

// How far any point of a tetra can get when its planes are moved outward by `margin`: that stretches it about
// the centre of its inner sphere, of radius 3 V by surface, by at most sqrt(3) L^3 / (3 V), L no shorter than
// its longest edge.
double PlaneOvershoot(double longest, double sixVolumes, double margin) {
    constexpr double kTwiceRootThree = 3.4641016151377546;
    return margin * kTwiceRootThree * longest * longest * longest / std::fabs(sixVolumes);
}

// Corners of a cell and their average, and how the ray sees them.
struct SeenCell {
    static constexpr std::size_t kMost = 9;
    std::array<Point, kMost> place;
    std::array<Seen, kMost> seen;
    double extent = 0.0;  // no shorter than any edge
};

SeenCell LookAtCell(const RecordMesh& mesh, const Ray& ray, int cell) {
    SeenCell look{};
    const int* corners = mesh.Corners(cell);
    const auto count = static_cast<std::size_t>(mesh.CornerCount(cell));
    for (std::size_t c = 0; c < count; ++c) {
        look.place[c] = mesh.Place(corners[c]);
    }
    look.place[count] = CornerAverage(static_cast<int>(count),
                                      [&](int c) { return look.place[static_cast<std::size_t>(c)]; });
    for (std::size_t c = 0; c <= count; ++c) {
        look.seen[c] = LookAt(ray, look.place[c]);
        const Point arm = Minus(look.place[c], look.place[count]);
        look.extent = std::max(look.extent, 2.0 * std::sqrt(Dot(arm, arm)));
    }
    return look;
}

// How far the box around some places, as the ray sees them, is from the ray; 0 or less where it may meet it.
double BoxDistance(const std::array<Seen, SeenCell::kMost>& seen, const std::array<std::size_t, 4>& place) {
    Seen low = seen[place[0]];
    Seen high = low;
    for (std::size_t v = 1; v < place.size(); ++v) {
        const Seen& s = seen[place[v]];
        low = {std::min(low.u, s.u), std::min(low.v, s.v), 0.0};
        high = {std::max(high.u, s.u), std::max(high.v, s.v), std::max(high.depth, s.depth)};
    }
    return std::max({low.u, -high.u, low.v, -high.v, -high.depth});
}

// The intervals, in ascending order, that a cover of the ray takes: at each step the one that reaches
// farthest of those that begin within what is covered; behind a gap it goes on with the next.
template <class Interval, class Take>
void TakeCover(const std::vector<Interval>& intervals, Take take) {
    std::size_t next = 0;
    while (next < intervals.size()) {
        double reached = intervals[next].from;
        const Interval* farthest = nullptr;
        do {
            farthest = nullptr;
            for (; next < intervals.size() && intervals[next].from <= reached; ++next) {
                if (intervals[next].to > (farthest == nullptr ? reached : farthest->to)) {
                    farthest = &intervals[next];
                }
            }
            if (farthest != nullptr) {
                take(*farthest);
                reached = farthest->to;
            }
        } while (farthest != nullptr);
    }
}

template <class Iterator>
void SortIntervals(Iterator first, Iterator last) {
    std::sort(first, last, [](const auto& a, const auto& b) {
        return std::tie(a.from, a.to, a.cell) < std::tie(b.from, b.to, b.cell);
    });
}

}  // namespace

PieceFinder::PieceFinder(const RecordMesh& mesh, int boundaryFaces, double epsilon, double passLength)
    : mesh_(mesh), boundaryFaces_(boundaryFaces), epsilon_(epsilon), passLength_(passLength) {}

void PieceFinder::PrepareSlots(int n) {
    while (static_cast<int>(slots_.size()) < n) {
        slots_.push_back(std::make_unique<Slot>());
    }
}

// Ascending by the nearest depth of the cells' boxes.
void PieceFinder::OrderCells(std::vector<CellDepth>& cells, const Ray& ray, const int* passElements,
                             int count) const {
    cells.clear();
    for (int i = 0; i < count; ++i) {
        if (passElements[i] > boundaryFaces_) {
            const int cell = passElements[i] - boundaryFaces_;
            const DepthRange range = DepthsOf(mesh_.cells[cell], ray);
            cells.push_back({range.nearest, range.farthest, cell});
        }
    }
    std::sort(cells.begin(), cells.end(), [](const CellDepth& a, const CellDepth& b) {
        return std::tie(a.nearest, a.farthest, a.cell) < std::tie(b.nearest, b.farthest, b.cell);
    });
}

// A cell that ends within what the cells before it cover adds nothing: a ray along an edge passes all cells
// around it, and is told of one of them at every depth.
RayPieces PieceFinder::Find(const Point& origin, const Point& direction, const int* passElements, int count,
                            int slot) {
    const Ray ray(origin, direction);
    Slot& own = *slots_.at(static_cast<std::size_t>(slot));
    std::vector<Interval>& intervals = own.intervals;
    OrderCells(own.cells, ray, passElements, count);
    own.tetras.clear();
    intervals.clear();
    own.pieces.clear();
    double lastEntry = 0.0;
    double covered = 0.0;
    for (const CellDepth& depth : own.cells) {
        if (depth.farthest <= covered) {
            continue;
        }
        const auto before = static_cast<std::ptrdiff_t>(intervals.size());
        AddCell(own, ray, depth.cell);
        const auto first = intervals.begin() + before;
        SortIntervals(first, intervals.end());
        lastEntry = first == intervals.end() ? lastEntry : std::max(lastEntry, first->from);
        covered =
            std::accumulate(first, intervals.end(), covered, [](double reached, const Interval& interval) {
                return interval.from <= reached ? std::max(reached, interval.to) : reached;
            });
    }
    SortIntervals(intervals.begin(), intervals.end());
    EndAtGap(intervals, lastEntry);
    TakeCover(intervals, [&own](const Interval& next) {
        const MetTetra& tetra = own.tetras[static_cast<std::size_t>(next.place)];
        own.pieces.push_back(
            PieceOf(next.from, next.to, next.cell, tetra.vertex, tetra.planes, tetra.sixVolumes));
    });
    return {own.pieces.data(), static_cast<int>(own.pieces.size())};
}

void PieceFinder::AddCell(Slot& slot, const Ray& ray, int cell) const {
    if (mesh_.Shape(cell).type != CellType::Tetra) {
        AddParts(slot, ray, cell);
        return;
    }
    const int* corners = mesh_.Corners(cell);
    AddTetra(
        slot, ray,
        {mesh_.Place(corners[0]), mesh_.Place(corners[1]), mesh_.Place(corners[2]), mesh_.Place(corners[3])},
        cell, {corners[0], corners[1], corners[2], corners[3]});
}

// Most of the parts of a cell are beside the ray by far, and need no clipping.
void PieceFinder::AddParts(Slot& slot, const Ray& ray, int cell) const {
    const CellShape& shape = mesh_.Shape(cell);
    const int* corners = mesh_.Corners(cell);
    const auto middle = static_cast<std::size_t>(shape.corners);
    const SeenCell look = LookAtCell(mesh_, ray, cell);
    for (std::size_t face = 0; face < static_cast<std::size_t>(shape.faces); ++face) {
        const auto& local = shape.face[face];
        const CornerTriangles triangles =
            SplitCorners(shape.faceCorners[face], [&](std::size_t c) { return corners[local[c]]; });
        for (std::size_t t = 0; t < triangles.count; ++t) {
            const auto& n = triangles.corner[t];
            const std::array<std::size_t, 4> place{local[n[0]], local[n[2]], local[n[1]], middle};
            const Tetra tetra{look.place[place[0]], look.place[place[1]], look.place[place[2]],
                              look.place[middle]};
            const double distance = BoxDistance(look.seen, place);
            if (distance > 0.0 &&
                distance > 2.0 * PlaneOvershoot(look.extent, SixVolumes(tetra), epsilon_) + epsilon_) {
                continue;
            }
            AddTetra(slot, ray, tetra, cell,
                     {corners[place[0]], corners[place[1]], corners[place[2]], kMiddle});
        }
    }
}

void PieceFinder::AddTetra(Slot& slot, const Ray& ray, Tetra tetra, int cell,
                           std::array<int, 4> vertex) const {
    if (SixVolumes(tetra) < 0.0) {
        std::swap(tetra[2], tetra[3]);
        std::swap(vertex[2], vertex[3]);
    }
    const double sixVolumes = SixVolumes(tetra);
    const TetraClip clip = ClipTetra(tetra, ray.origin, ray.direction, epsilon_);
    const double from = std::max(clip.span.low, 0.0);
    if (from < clip.span.high && sixVolumes != 0.0) {
        slot.intervals.push_back({from, clip.span.high, cell, static_cast<int>(slot.tetras.size())});
        slot.tetras.push_back({vertex, clip.planes, sixVolumes});
    }
}

// A cell with a bent face on the boundary may be left and entered again; the ray is then no longer inside. Up
// to the entry into the last cell it is: shorter gaps belong to cells too short to be passed.
void PieceFinder::EndAtGap(std::vector<Interval>& intervals, double lastEntry) const {
    double reached = 0.0;
    for (auto interval = intervals.begin(); interval != intervals.end(); ++interval) {
        if (interval->from > lastEntry && interval->from > reached + passLength_) {
            intervals.erase(interval, intervals.end());
            return;
        }
        reached = std::max(reached, interval->to);
    }
}

}  // namespace qnl::kernel
