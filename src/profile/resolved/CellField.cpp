#include "profile/resolved/CellField.h"

#include "profile/resolved/EdgeCurvature.h"

namespace qnl::profile {

namespace {

constexpr std::size_t kTetraCorners = 4;
constexpr std::array<std::array<std::size_t, 2>, 6> kPairs{{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}};

double Slope(const double* gradient, const std::array<double, 3>& edge) {
    return (gradient[0] * edge[0] + gradient[1] * edge[1]) + gradient[2] * edge[2];
}

// Of the edge between two nodes of a field with gradients.
double EdgeCurvature(const NodeRecord* nodes, const NodalField& field, int from, int to) {
    const NodeRecord& first = nodes[from];
    const NodeRecord& second = nodes[to];
    const std::array<double, 3> edge{second.x - first.x, second.y - first.y, second.z - first.z};
    return LimitedCurvature(
        {field.values[from], field.values[to], Slope(field.gradients + field.stride * from, edge),
         Slope(field.gradients + field.stride * to, edge)},
        field.known);
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

// The curvatures along the way are those of the products of the coordinates' changes.
double TetraField::BendBetween(const std::array<double, 4>& first, const std::array<double, 4>& last) const {
    std::array<double, 4> change{};
    for (std::size_t v = 0; v < change.size(); ++v) {
        change[v] = last[v] - first[v];
    }
    double bend = 0.0;
    for (std::size_t p = 0; p < kPairs.size(); ++p) {
        bend += change[kPairs[p][0]] * change[kPairs[p][1]] * curvature[p];
    }
    return -0.5 * bend;
}

TetraField FieldOfTetra(const FieldMesh& mesh, const NodalField& field, const std::array<int, 4>& corners) {
    TetraField tetra{};
    for (std::size_t v = 0; v < corners.size(); ++v) {
        tetra.value[v] = field.values[corners[v]];
    }
    if (field.gradients != nullptr) {
        for (std::size_t p = 0; p < kPairs.size(); ++p) {
            tetra.curvature[p] =
                EdgeCurvature(mesh.nodes, field, corners[kPairs[p][0]], corners[kPairs[p][1]]);
        }
    }
    return tetra;
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
    TakePairs(mesh.nodes, field);
    if (corners_ > kTetraCorners) {
        TakeAverage();
    }
}

void CellField::TakePairs(const NodeRecord* nodes, const NodalField& field) {
    if (field.gradients == nullptr) {
        curvature_ = {};
        return;
    }
    std::size_t pair = 0;
    for (std::size_t j = 1; j < corners_; ++j) {
        for (std::size_t i = 0; i < j; ++i) {
            curvature_[pair] = EdgeCurvature(nodes, field, nodes_[i], nodes_[j]);
            ++pair;
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
            row[i] += i == j ? 0.0 : curvature_[PairOf(i, j)];
        }
        both += row[i];
        sum += value_[i];
    }
    value_[corners_] = sum / n - both / (4.0 * n * n);
    for (std::size_t i = 0; i < corners_; ++i) {
        curvature_[PairOf(i, corners_)] = row[i] / n - both / (2.0 * n * n);
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
        tetra.curvature[p] = curvature_[PairOf(place[kPairs[p][0]], place[kPairs[p][1]])];
    }
    return tetra;
}

}  // namespace qnl::profile
