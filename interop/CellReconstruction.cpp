#include "interop/CellReconstruction.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "base/Vector3.h"
#include "kernel/mesh/CellTetras.h"
#include "kernel/recovery/SlopeFit.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::interop {

namespace {

using kernel::CornerAverage;
using kernel::Point;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

/// Cells around each node.
class CellsOfNodes {
public:
    explicit CellsOfNodes(const kernel::MeshData& mesh) : start_(static_cast<std::size_t>(mesh.Nodes()) + 1) {
        for (const int node : mesh.connectivity) {
            ++start_[static_cast<std::size_t>(node) + 1];
        }
        for (std::size_t n = 1; n < start_.size(); ++n) {
            start_[n] += start_[n - 1];
        }
        cells_.resize(mesh.connectivity.size());
        std::vector<std::size_t> next(start_.begin(), start_.end() - 1);
        for (int cell = 0; cell < mesh.Cells(); ++cell) {
            for (int c = 0; c < mesh.Shape(cell).corners; ++c) {
                cells_[next[static_cast<std::size_t>(mesh.Corners(cell)[c])]++] = cell;
            }
        }
    }

    template <typename Visit>
    void ForCells(int node, const Visit& visit) const {
        const auto n = static_cast<std::size_t>(node);
        std::for_each(cells_.begin() + static_cast<std::ptrdiff_t>(start_[n]),
                      cells_.begin() + static_cast<std::ptrdiff_t>(start_[n + 1]), visit);
    }

private:
    std::vector<std::size_t> start_;
    std::vector<int> cells_;
};

/// Weighted mean of the values of a node.
struct Mean {
    double value = 0.0;
    double weight = 0.0;

    void Add(double addend, double by) {
        value += by * addend;
        weight += by;
    }
    double Value() const { return weight > 0.0 ? value / weight : kNothing; }
};

class Reconstruction {
public:
    Reconstruction(const std::vector<double>& values, const SolidMesh& solid,
                   const std::vector<BoundaryValue>& boundary)
        : values_(values), mesh_(solid.mesh), around_(mesh_), boundary_(boundary) {
        for (int cell = 0; cell < mesh_.Cells(); ++cell) {
            middles_.push_back(CornerAverage(mesh_.Shape(cell).corners,
                                             [&](int c) { return Place(mesh_.Corners(cell)[c]); }));
        }
        SortFaces();
    }

    std::vector<double> AtNodes() const {
        std::vector<Point> slopes(values_.size());
        const int cells = mesh_.Cells();
#pragma omp parallel for schedule(dynamic, 256)
        for (int cell = 0; cell < cells; ++cell) {
            slopes[static_cast<std::size_t>(cell)] = SlopeIn(cell);
        }
        const std::vector<char> outer = OuterNodes();
        std::vector<double> nodes(static_cast<std::size_t>(mesh_.Nodes()));
        for (std::size_t n = 0; n < nodes.size(); ++n) {
            nodes[n] = given_[n].weight > 0.0      ? given_[n].Value()
                       : repeated_[n].weight > 0.0 ? repeated_[n].Value()
                                                   : FromCells(static_cast<int>(n), slopes, outer[n] != 0);
        }
        return nodes;
    }

private:
    const Point& Place(int node) const {
        return mesh_.points[static_cast<std::size_t>(node)];
    }
    double ValueOf(int cell) const {
        return values_[static_cast<std::size_t>(cell)];
    }
    const Point& MiddleOf(int cell) const {
        return middles_[static_cast<std::size_t>(cell)];
    }

    bool Holds(int cell, int node) const {
        const int* corners = mesh_.Corners(cell);
        const int* end = corners + mesh_.Shape(cell).corners;
        return std::find(corners, end, node) != end;
    }

    /// The cell behind a face; -1 for a face that is of no cell.
    int OwnerOf(const BoundaryValue& face) const {
        int owner = -1;
        around_.ForCells(face.nodes[0], [&](int cell) {
            const bool all = std::all_of(face.nodes.begin(),
                                         face.nodes.begin() + static_cast<std::ptrdiff_t>(face.corners),
                                         [&](int node) { return Holds(cell, node); });
            owner = all ? cell : owner;
        });
        return owner;
    }

    void SortFaces() {
        given_.resize(static_cast<std::size_t>(mesh_.Nodes()));
        repeated_.resize(given_.size());
        facesOf_.resize(values_.size());
        for (std::size_t f = 0; f < boundary_.size(); ++f) {
            const BoundaryValue& face = boundary_[f];
            const int owner = OwnerOf(face);
            if (owner < 0 || !std::isfinite(face.value)) {
                continue;
            }
            const bool repeats = face.value == ValueOf(owner);
            for (std::size_t c = 0; c < face.corners; ++c) {
                (repeats ? repeated_ : given_)[static_cast<std::size_t>(face.nodes[c])].Add(face.value,
                                                                                            AreaOf(face));
            }
            if (!repeats) {
                facesOf_[static_cast<std::size_t>(owner)].push_back(f);
            }
        }
    }

    double AreaOf(const BoundaryValue& face) const {
        const Point& first = Place(face.nodes[0]);
        double area = 0.0;
        for (std::size_t c = 2; c < face.corners; ++c) {
            area += 0.5 *
                    Length(Cross(Minus(Place(face.nodes[c - 1]), first), Minus(Place(face.nodes[c]), first)));
        }
        return area;
    }

    Point SlopeIn(int cell) const {
        kernel::SlopeFit fit;
        std::set<int> beside;
        const int* corners = mesh_.Corners(cell);
        for (int c = 0; c < mesh_.Shape(cell).corners; ++c) {
            around_.ForCells(corners[c], [&](int other) {
                if (other != cell && beside.insert(other).second) {
                    fit.Add(Minus(MiddleOf(other), MiddleOf(cell)), ValueOf(other) - ValueOf(cell));
                }
            });
        }
        for (const std::size_t f : facesOf_[static_cast<std::size_t>(cell)]) {
            const BoundaryValue& face = boundary_[f];
            const Point middle = CornerAverage(static_cast<int>(face.corners), [&](int c) {
                return Place(face.nodes[static_cast<std::size_t>(c)]);
            });
            fit.Add(Minus(middle, MiddleOf(cell)), face.value - ValueOf(cell));
        }
        return fit.Slope();
    }

    double FromCells(int node, const std::vector<Point>& slopes, bool isOuter) const {
        Mean mean;
        double low = std::numeric_limits<double>::infinity();
        double high = -low;
        around_.ForCells(node, [&](int cell) {
            const double value = ValueOf(cell);
            if (!std::isfinite(value)) {
                return;
            }
            const Point arm = Minus(Place(node), MiddleOf(cell));
            mean.Add(value + Dot(slopes[static_cast<std::size_t>(cell)], arm), 1.0 / Length(arm));
            low = std::min(low, value);
            high = std::max(high, value);
        });
        return isOuter || !(mean.weight > 0.0) ? mean.Value() : std::clamp(mean.Value(), low, high);
    }

    std::vector<char> OuterNodes() const {
        std::vector<char> outer(static_cast<std::size_t>(mesh_.Nodes()), 0);
        for (const kernel::BoundaryFace& face : kernel::BuildFaceTopology(mesh_).boundary) {
            for (std::size_t c = 0; c < face.corners; ++c) {
                outer[static_cast<std::size_t>(face.nodes[c])] = 1;
            }
        }
        return outer;
    }

    const std::vector<double>& values_;
    const kernel::MeshData& mesh_;
    CellsOfNodes around_;
    const std::vector<BoundaryValue>& boundary_;
    std::vector<Point> middles_;
    std::vector<Mean> given_;                        ///< by node: faces with values of their own
    std::vector<Mean> repeated_;                     ///< by node: faces that repeat a cell
    std::vector<std::vector<std::size_t>> facesOf_;  ///< by cell: faces with values of their own
};

}  // namespace

std::vector<double> ReconstructAtNodes(const std::vector<double>& cellValues, const SolidMesh& solid,
                                       const std::vector<BoundaryValue>& boundary) {
    return Reconstruction(cellValues, solid, boundary).AtNodes();
}

}  // namespace qnl::interop
