#include "interop/NodeFields.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

std::vector<double> FromCells(const ForeignArray& array, int component, const SolidMesh& solid) {
    Sums sums(solid.pointSource.size());
    for (int cell = 0; cell < solid.mesh.Cells(); ++cell) {
        const auto row = static_cast<std::size_t>(cell);
        const double value = Entry(array, solid.cellSource[row], component);
        if (std::isfinite(value)) {
            ForEachCorner(solid.mesh, cell,
                          [&](std::size_t node) { sums.Add(node, value, solid.volumes[row]); });
        }
    }
    std::vector<double> values(solid.pointSource.size(), std::numeric_limits<double>::quiet_NaN());
    for (std::size_t node = 0; node < values.size(); ++node) {
        values[node] = sums.weight[node] > 0.0 ? sums.value[node] / sums.weight[node] : values[node];
    }
    return values;
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

std::vector<double> NodeValues(const ForeignArray& array, int component, const SolidMesh& solid) {
    if (array.onCells) {
        return FromCells(array, component, solid);
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
