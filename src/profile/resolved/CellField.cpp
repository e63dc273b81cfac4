#include "profile/resolved/CellField.h"

#include "profile/resolved/EdgeCurvature.h"

namespace qnl::profile {

namespace {

constexpr std::size_t kTetraCorners = 4;
constexpr std::array<std::array<std::size_t, 2>, 6> kPairs{{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}};

double CurvatureBetween(const FieldMesh& mesh, const NodalField& field, int a, int b) {
    const NodeRecord& first = mesh.nodes[a];
    const NodeRecord& second = mesh.nodes[b];
    const std::array<double, 3> edge{second.x - first.x, second.y - first.y, second.z - first.z};
    const auto slope = [&](int node) {
        const double* g = field.gradients + field.stride * node;
        return (g[0] * edge[0] + g[1] * edge[1]) + g[2] * edge[2];
    };
    return LimitedCurvature({field.values[a], field.values[b], slope(a), slope(b)}, field.known);
}

}  // namespace

double TetraField::At(const std::array<double, 4>& lambda) const {
    double sum = 0.0;
    for (std::size_t v = 0; v < value.size(); ++v) {
        sum += lambda[v] * value[v];
    }
    double bend = 0.0;
    for (std::size_t p = 0; p < kPairs.size(); ++p) {
        bend += lambda[kPairs[p][0]] * lambda[kPairs[p][1]] * curvature[p];
    }
    return sum - 0.5 * bend;
}

void CellField::Take(const FieldMesh& mesh, const NodalField& field, int cell) {
    if (cell == cell_) {
        return;
    }
    cell_ = cell;
    corners_ = static_cast<std::size_t>(mesh.cells[cell].nNode);
    nodes_ = mesh.cells[cell].nodes + 1;
    for (std::size_t i = 0; i < corners_; ++i) {
        value_[i] = field.values[nodes_[i]];
    }
    TakePairs(mesh, field);
    if (corners_ > kTetraCorners) {
        TakeAverage();
    }
}

void CellField::TakePairs(const FieldMesh& mesh, const NodalField& field) {
    for (std::size_t i = 0; i < corners_; ++i) {
        curvature_[i][i] = 0.0;
        for (std::size_t j = i + 1; j < corners_; ++j) {
            const double c =
                field.gradients == nullptr ? 0.0 : CurvatureBetween(mesh, field, nodes_[i], nodes_[j]);
            curvature_[i][j] = c;
            curvature_[j][i] = c;
        }
    }
}

void CellField::TakeAverage() {
    const double n = static_cast<double>(corners_);
    std::array<double, kMost> row{};
    double both = 0.0;  // every pair twice
    double sum = 0.0;
    for (std::size_t i = 0; i < corners_; ++i) {
        for (std::size_t j = 0; j < corners_; ++j) {
            row[i] += curvature_[i][j];
        }
        both += row[i];
        sum += value_[i];
    }
    value_[corners_] = sum / n - both / (4.0 * n * n);
    for (std::size_t i = 0; i < corners_; ++i) {
        const double c = row[i] / n - both / (2.0 * n * n);
        curvature_[i][corners_] = c;
        curvature_[corners_][i] = c;
    }
}

// The average stands behind the corners.
std::size_t CellField::PlaceOf(int vertex) const {
    std::size_t place = 0;
    while (place < corners_ && nodes_[place] != vertex) {
        ++place;
    }
    return place;
}

TetraField CellField::In(const RayPiece& piece) const {
    std::array<std::size_t, 4> place{};
    TetraField tetra{};
    for (std::size_t v = 0; v < place.size(); ++v) {
        place[v] = PlaceOf(piece.vertex[v]);
        tetra.value[v] = value_[place[v]];
    }
    for (std::size_t p = 0; p < kPairs.size(); ++p) {
        tetra.curvature[p] = curvature_[place[kPairs[p][0]]][place[kPairs[p][1]]];
    }
    return tetra;
}

}  // namespace qnl::profile
