#include "kernel/rays/RayHazards.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "kernel/rays/CellPieces.h"
#include "kernel/rays/RayGeometry.h"

namespace qnl::kernel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double LongestEdge(const Tetra& tetra) {
    double longest = 0.0;
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = i + 1; j < 4; ++j) {
            const Point edge = Minus(tetra[i], tetra[j]);
            longest = std::max(longest, Dot(edge, edge));
        }
    }
    return std::sqrt(longest);
}

// Twice the area of the smallest and of all faces.
struct Areas {
    double smallest;
    double sum;
};

Areas FaceAreas(const Tetra& tetra) {
    Areas areas{kInfinity, 0.0};
    for (const auto& face : kTetraFaces) {
        const Point normal =
            Cross(Minus(tetra[face[1]], tetra[face[0]]), Minus(tetra[face[2]], tetra[face[0]]));
        const double area = std::sqrt(Dot(normal, normal));
        areas.smallest = std::min(areas.smallest, area);
        areas.sum += area;
    }
    return areas;
}

struct CellCheck {
    bool turned = false;
    double overshoot = 0.0;
};

CellCheck CheckCell(const FaceTopology& topology, int cell, double epsilon, double reach) {
    CellCheck check;
    ForPieces(topology, cell, [&](const Tetra& piece) {
        const double sixVolumes = SixVolumes(piece);
        if (sixVolumes > 0.0) {
            check.overshoot = std::max(check.overshoot, PlaneOvershoot(piece, sixVolumes, epsilon, reach));
            return;
        }
        if (FaceAreas(piece).smallest > 0.0) {
            check.turned = true;
            const double moved =
                sixVolumes < 0.0 ? PlaneOvershoot(piece, -sixVolumes, epsilon, reach) : kInfinity;
            check.overshoot = std::max(check.overshoot, moved);
        }
    });
    return check;
}

Box BoxOf(const FaceTopology& topology, int cell) {
    Box box = Box::Nothing();
    const int* corners = topology.Corners(cell);
    for (int c = 0; c < topology.Shape(cell).corners; ++c) {
        box.Extend(topology.Place(corners[c]));
    }
    return box;
}

void SortUnique(std::vector<int>& list) {
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
}

void AddNeighbours(const FaceTopology& topology, int cell, std::vector<int>& cells) {
    const int* neighbours = topology.Neighbours(cell);
    for (int f = 0; f < topology.Shape(cell).faces; ++f) {
        if (neighbours[f] >= 0) {
            cells.push_back(neighbours[f]);
        }
    }
}

std::vector<int> HazardCells(const FaceTopology& topology, double epsilon, double reach) {
    std::vector<int> cells = topology.foldedCells;
    const int count = topology.Cells();
#pragma omp parallel
    {
        std::vector<int> own;
#pragma omp for schedule(static)
        for (int cell = 0; cell < count; ++cell) {
            const CellCheck check = CheckCell(topology, cell, epsilon, reach);
            if (check.turned || !(check.overshoot <= reach)) {
                own.push_back(cell);
            }
            if (check.turned) {
                AddNeighbours(topology, cell, own);
            }
        }
#pragma omp critical(qnl_ray_hazards)
        cells.insert(cells.end(), own.begin(), own.end());
    }
    SortUnique(cells);
    return cells;
}

// Around the cell and its middle, which may lie outside a turned cell.
Box HazardBox(const FaceTopology& topology, int cell, double epsilon, double reach) {
    const double overshoot = CheckCell(topology, cell, epsilon, reach).overshoot;
    Box box = BoxOf(topology, cell);
    const Point extent = Minus(box.high, box.low);
    if (!(overshoot <= 1e6 * std::sqrt(Dot(extent, extent)))) {
        return Box::Everything();
    }
    box.Grow(overshoot * 1.001 + reach);
    return box;
}

// Runs of this many cells along the curve share one query for the boundary nodes among them.
constexpr int kRun = 16;

class NearCellSearch {
public:
    NearCellSearch(const FaceTopology& topology, double reach)
        : topology_(topology), reach_(reach), nodes_(BoundaryNodes(topology)) {
        std::vector<Box> boxes(nodes_.size());
        for (std::size_t i = 0; i < nodes_.size(); ++i) {
            boxes[i] = {topology.Place(nodes_[i]), topology.Place(nodes_[i])};
        }
        places_ = BoxHierarchy(boxes);
    }

    std::vector<RayHazards::NearCell> Search() const {
        std::vector<RayHazards::NearCell> found;
        const int runs = topology_.Cells() / kRun + (topology_.Cells() % kRun == 0 ? 0 : 1);
#pragma omp parallel
        {
            std::vector<RayHazards::NearCell> own;
            std::vector<int> candidates;
#pragma omp for schedule(static)
            for (int run = 0; run < runs; ++run) {
                const int begin = run * kRun;
                SearchRun(begin, begin + std::min(kRun, topology_.Cells() - begin), candidates, own);
            }
#pragma omp critical(qnl_ray_hazards)
            found.insert(found.end(), own.begin(), own.end());
        }
        std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
            return a.node != b.node ? a.node < b.node : a.cell < b.cell;
        });
        return found;
    }

private:
    void SearchRun(int begin, int end, std::vector<int>& candidates,
                   std::vector<RayHazards::NearCell>& found) const {
        std::array<Box, kRun> boxes;
        Box all = Box::Nothing();
        for (int cell = begin; cell < end; ++cell) {
            Box& box = boxes[static_cast<std::size_t>(cell - begin)];
            box = BoxOf(topology_, cell);
            box.Grow(reach_);
            all.Extend(box.low);
            all.Extend(box.high);
        }
        candidates.clear();
        places_.ForOverlap(all, [&](std::size_t i) { candidates.push_back(nodes_[i]); });
        for (int cell = begin; cell < end && !candidates.empty(); ++cell) {
            SearchCell(cell, boxes[static_cast<std::size_t>(cell - begin)], candidates, found);
        }
    }

    void SearchCell(int cell, const Box& box, const std::vector<int>& candidates,
                    std::vector<RayHazards::NearCell>& found) const {
        const int* corners = topology_.Corners(cell);
        const int* end = corners + topology_.Shape(cell).corners;
        for (const int node : candidates) {
            const Point& place = topology_.Place(node);
            if (box.Contains(place) && std::find(corners, end, node) == end && Contains(cell, place)) {
                found.push_back({node, cell});
            }
        }
    }

    bool Contains(int cell, const Point& place) const {
        bool contains = false;
        ForPieces(topology_, cell, [&](const Tetra& piece) {
            const Span span = SpanInTetra(piece, place, {0.0, 0.0, 0.0}, reach_);
            contains = contains || span.low <= span.high;
        });
        return contains;
    }

    const FaceTopology& topology_;
    double reach_;
    std::vector<int> nodes_;
    BoxHierarchy places_;
};

}  // namespace

// Moving all planes of a tetra outward by epsilon scales it about its inner centre by 1 + epsilon / r, with
// the inner radius r = 3 V / A; no point moves farther than epsilon L / r, L the longest edge. The quick
// bound uses A <= sqrt(3) L^2.
double PlaneOvershoot(const Tetra& tetra, double sixVolumes, double epsilon, double enough) {
    const double longest = LongestEdge(tetra);
    const double quick = 3.4642 * epsilon * longest * longest * longest / sixVolumes;
    if (quick <= enough) {
        return quick;
    }
    return epsilon * longest * FaceAreas(tetra).sum / sixVolumes;
}

std::vector<int> BoundaryNodes(const FaceTopology& topology) {
    std::vector<std::uint8_t> onBoundary(topology.nodes.size(), 0);
    for (int cell = 0; cell < topology.Cells(); ++cell) {
        const CellShape& shape = topology.Shape(cell);
        const int* corners = topology.Corners(cell);
        const int* neighbours = topology.Neighbours(cell);
        for (std::size_t f = 0; f < static_cast<std::size_t>(shape.faces); ++f) {
            for (std::size_t c = 0; neighbours[f] < 0 && c < shape.faceCorners[f]; ++c) {
                onBoundary[static_cast<std::size_t>(corners[shape.face[f][c]])] = 1;
            }
        }
    }
    std::vector<int> nodes;
    for (std::size_t i = 0; i < onBoundary.size(); ++i) {
        if (onBoundary[i] != 0) {
            nodes.push_back(static_cast<int>(i));
        }
    }
    return nodes;
}

RayHazards FindRayHazards(const FaceTopology& topology, const RayScale& scale) {
    RayHazards hazards;
    hazards.cells = HazardCells(topology, scale.epsilon, scale.reach);
    hazards.boxes.reserve(hazards.cells.size());
    for (const int cell : hazards.cells) {
        hazards.boxes.push_back(HazardBox(topology, cell, scale.epsilon, scale.reach));
    }
    hazards.nearCells = NearCellSearch(topology, scale.reach).Search();
    return hazards;
}

}  // namespace qnl::kernel
