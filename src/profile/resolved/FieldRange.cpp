#include "profile/resolved/FieldRange.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace qnl::profile {

namespace {

// True when some node and all that share a cell with it reach `level`.
bool HasPatchAbove(const FieldMesh& mesh, const double* values, int nodes, int cells, double level) {
    std::vector<char> reaches(static_cast<std::size_t>(nodes) + 1, 0);
    for (int cell = 1; cell <= cells; ++cell) {
        const int* corners = mesh.cells[cell].nodes + 1;
        for (int c = 0; c < mesh.cells[cell].nNode; ++c) {
            reaches[static_cast<std::size_t>(corners[c])] = 1;
        }
    }
    for (int cell = 1; cell <= cells; ++cell) {
        const int* first = mesh.cells[cell].nodes + 1;
        const int* last = first + mesh.cells[cell].nNode;
        if (!std::all_of(first, last, [&](int node) { return values[node] >= level; })) {
            std::for_each(first, last, [&](int node) { reaches[static_cast<std::size_t>(node)] = 0; });
        }
    }
    return std::find(reaches.begin(), reaches.end(), 1) != reaches.end();
}

}  // namespace

FieldRange RangeOfCooling(const FieldMesh& mesh, const double* temperatures, int nodes, int cells) {
    constexpr double kFlat = 1e-3;
    FieldRange nodal{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (int node = 1; node <= nodes; ++node) {
        if (std::isfinite(temperatures[node])) {
            nodal.lowest = std::min(nodal.lowest, temperatures[node]);
            nodal.highest = std::max(nodal.highest, temperatures[node]);
        }
    }
    FieldRange known;
    if (nodal.lowest <= nodal.highest) {
        known.lowest = nodal.lowest;
        const double level = nodal.highest - kFlat * (nodal.highest - nodal.lowest);
        if (HasPatchAbove(mesh, temperatures, nodes, cells, level)) {
            known.highest = nodal.highest;
        }
    }
    return known;
}

}  // namespace qnl::profile
