#include "interop/NodeFields.h"

#include <algorithm>
#include <cmath>

#include "interop/CellReconstruction.h"

namespace qnl::interop {

namespace {

/// Weighted sums per node.
struct Sums {
    explicit Sums(std::size_t nodes) : value(nodes), weight(nodes) {}
    void Add(std::size_t node, double addend, double by) {
        value[node] += by * addend;
        weight[node] += by;
    }
    std::vector<double> value;
    std::vector<double> weight;
};

template <typename Visit>
void ForEachCorner(const kernel::MeshData& mesh, int cell, const Visit& visit) {
    const int* corners = mesh.Corners(cell);
    for (int c = 0; c < mesh.Shape(cell).corners; ++c) {
        visit(static_cast<std::size_t>(corners[c]));
    }
}

double Entry(const ForeignArray& array, std::int64_t entity, int component) {
    return array.values[static_cast<std::size_t>(entity * array.components + component)];
}

/// The faces of all nodes of which are nodes of the solid, and that have a value of the array.
std::vector<BoundaryValue> ValuesOnFaces(const ForeignArray& array, int component, const SolidMesh& solid,
                                         const std::vector<ForeignFaces>& boundary) {
    constexpr std::int64_t kMostCorners = 4;
    std::vector<BoundaryValue> values;
    for (const ForeignFaces& faces : boundary) {
        const auto own =
            std::find_if(faces.arrays.begin(), faces.arrays.end(), [&](const ForeignArray& other) {
                return other.name == array.name && other.components == array.components;
            });
        for (std::size_t f = 0; own != faces.arrays.end() && f + 1 < faces.offsets.size(); ++f) {
            const std::int64_t corners = faces.offsets[f + 1] - faces.offsets[f];
            BoundaryValue face{
                {}, static_cast<std::size_t>(corners), Entry(*own, static_cast<std::int64_t>(f), component)};
            bool known = corners >= 3 && corners <= kMostCorners;
            for (std::int64_t c = 0; known && c < corners; ++c) {
                const int node = solid.NodeOf(faces.points[static_cast<std::size_t>(faces.offsets[f] + c)]);
                face.nodes[static_cast<std::size_t>(c)] = node;
                known = node >= 0;
            }
            if (known) {
                values.push_back(face);
            }
        }
    }
    return values;
}

std::vector<double> FromCells(const ForeignArray& array, int component, const SolidMesh& solid,
                              const std::vector<ForeignFaces>& boundary) {
    std::vector<double> values;
    values.reserve(solid.cellSource.size());
    for (const std::int64_t cell : solid.cellSource) {
        values.push_back(Entry(array, cell, component));
    }
    return ReconstructAtNodes(values, solid, ValuesOnFaces(array, component, solid, boundary));
}

/// One layer of missing values; false when nothing changed.
bool FillLayer(std::vector<double>& values, const SolidMesh& solid) {
    Sums sums(values.size());
    for (int cell = 0; cell < solid.mesh.Cells(); ++cell) {
        double sum = 0.0;
        int finite = 0;
        ForEachCorner(solid.mesh, cell, [&](std::size_t node) {
            sum += std::isfinite(values[node]) ? values[node] : 0.0;
            finite += std::isfinite(values[node]) ? 1 : 0;
        });
        if (finite > 0 && finite < solid.mesh.Shape(cell).corners) {
            ForEachCorner(solid.mesh, cell, [&](std::size_t node) { sums.Add(node, sum / finite, finite); });
        }
    }
    bool changed = false;
    for (std::size_t node = 0; node < values.size(); ++node) {
        if (!std::isfinite(values[node]) && sums.weight[node] > 0.0) {
            values[node] = sums.value[node] / sums.weight[node];
            changed = true;
        }
    }
    return changed;
}

std::int64_t CountMissing(const std::vector<double>& values) {
    return std::count_if(values.begin(), values.end(), [](double value) { return !std::isfinite(value); });
}

}  // namespace

std::vector<double> NodeValues(const ForeignArray& array, int component, const SolidMesh& solid,
                               const std::vector<ForeignFaces>& boundary) {
    if (array.onCells) {
        return FromCells(array, component, solid, boundary);
    }
    std::vector<double> values;
    values.reserve(solid.pointSource.size());
    for (const std::int64_t point : solid.pointSource) {
        values.push_back(Entry(array, point, component));
    }
    return values;
}

std::int64_t FillMissing(std::vector<double>& values, const SolidMesh& solid) {
    std::int64_t missing = CountMissing(values);
    while (missing > 0 && FillLayer(values, solid)) {
        missing = CountMissing(values);
    }
    return missing;
}

}  // namespace qnl::interop
