#include "profile/resolved/CellField.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "support/RecordedMesh.h"

namespace qnl::profile {
namespace {

using kernel::Point;
using testing::Fill;
using testing::JiggledPlate;
using testing::RecordedMesh;
using testing::RecordedRays;

constexpr FieldRange kAbove40{40.0, std::numeric_limits<double>::infinity()};

double Linear(const Point& p) {
    return 50.0 + 3.0 * p[0] - 7.0 * p[1] + 11.0 * p[2];
}

double Quadratic(const Point& p) {
    return Linear(p) + 2.0 * p[0] * p[0] - p[1] * p[1] - 40.0 * p[2] * p[2] + 3.0 * p[0] * p[1] -
           4.0 * p[1] * p[2] + p[2] * p[0];
}

double Front(const Point& p) {
    return p[2] <= 0.0 || p[2] >= 2.0 ? 40.0 : 230.0;
}

Point At(const Point& origin, const Point& direction, double depth) {
    return {origin[0] + depth * direction[0], origin[1] + depth * direction[1],
            origin[2] + depth * direction[2]};
}

std::array<double, 4> Between(const RayPiece& piece, double part) {
    std::array<double, 4> lambda{};
    for (std::size_t v = 0; v < 4; ++v) {
        lambda[v] = (1.0 - part) * piece.atFrom[v] + part * piece.atTo[v];
    }
    return lambda;
}

std::array<double, 4> AtDepth(const RayPiece& piece, double depth) {
    return Between(piece, (depth - piece.from) / (piece.to - piece.from));
}

struct Oblique {
    Point origin;
    Point direction;
};

std::vector<Oblique> ObliqueRays() {
    std::mt19937 random(5);
    const auto number = [&] { return static_cast<double>(random()) / 4294967296.0; };
    std::vector<Oblique> rays;
    for (int i = 0; i < 40; ++i) {
        Point direction{number() - 0.5, number() - 0.5, 0.6};
        const double length = Length(direction);
        for (double& component : direction) {
            component /= length;
        }
        rays.push_back({{1.0 + 2.0 * number(), 1.0 + 2.0 * number(), 0.0}, direction});
    }
    return rays;
}

// Calls check(piece, field in it, ray) for all pieces of oblique rays.
template <class Check>
void ForPieces(const RecordedMesh& mesh, const NodalField& field, Check check) {
    RecordedRays rays(mesh, 0.5);
    CellField cell;
    const kernel::RecordMesh view = mesh.View();
    int pieces = 0;
    for (const Oblique& ray : ObliqueRays()) {
        const RayPieces found = rays.Pieces(ray.origin, ray.direction);
        for (const RayPiece* p = found.first; p != found.first + found.count; ++p, ++pieces) {
            cell.Take({view.nodes, view.cells}, field, p->cell);
            check(*p, cell.In(*p), ray);
        }
    }
    EXPECT_GT(pieces, 100);
}

double Range(const std::vector<double>& values) {
    const auto [low, high] = std::minmax_element(values.begin() + 1, values.end());
    return *high - *low;
}

// Outside its tetra by the distance tolerance a piece knows less, hence 1e-9 of the range within it.
TEST(CellField, IsExactForQuadraticFieldsInEveryCellType) {
    for (const auto& [name, fill] : testing::kAllFills) {
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 4));
        const std::vector<double> values = mesh.Values(Quadratic);
        const std::vector<double> gradients = mesh.Gradients(values);
        double largest = 0.0;
        ForPieces(mesh, {values.data(), gradients.data(), 3},
                  [&](const RayPiece& p, const TetraField& f, const Oblique& r) {
                      for (const double part : {0.0, 0.3, 0.5, 1.0}) {
                          const double exact =
                              Quadratic(At(r.origin, r.direction, p.from + part * (p.to - p.from)));
                          largest = std::max(largest, std::fabs(f.At(Between(p, part)) - exact));
                      }
                  });
        EXPECT_LT(largest, 1e-9 * Range(values));
    }
}

TEST(CellField, IsLinearWithoutGradients) {
    for (const auto& [name, fill] : testing::kAllFills) {
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 3));
        const std::vector<double> values = mesh.Values(Linear);
        ForPieces(mesh, {values.data()}, [&](const RayPiece& p, const TetraField& f, const Oblique& r) {
            const double exact = Linear(At(r.origin, r.direction, p.from + 0.4 * (p.to - p.from)));
            EXPECT_NEAR(f.At(Between(p, 0.4)), exact, 1e-9 * Range(values));
        });
    }
}

// At a front gradients are limited; the value where one piece ends is that where the next one begins.
TEST(CellField, IsContinuousAcrossFacesAtAFront) {
    for (const auto& [name, fill] : testing::kAllFills) {
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 4, 8, 0.15));
        const std::vector<double> values = mesh.Values(Front);
        const std::vector<double> gradients = mesh.Gradients(values);
        RayPiece last{};
        TetraField lastField{};
        double largest = 0.0;
        int joints = 0;
        ForPieces(mesh, {values.data(), gradients.data(), 3, kAbove40},
                  [&](const RayPiece& p, const TetraField& f, const Oblique&) {
                      if (std::fabs(p.from - last.to) < 1e-6 && p.from > 0.0) {
                          const double depth = 0.5 * (p.from + last.to);
                          const double jump = f.At(AtDepth(p, depth)) - lastField.At(AtDepth(last, depth));
                          largest = std::max(largest, std::fabs(jump));
                          ++joints;
                      }
                      if (p.from == 0.0 || p.to > last.to) {
                          last = p;
                          lastField = f;
                      }
                  });
        EXPECT_LT(largest, 1e-5);
        EXPECT_GT(joints, 50);
    }
}

// Between nodes of 40 and 230, with slopes of a front, no value beyond those by more than what is allowed
// for.
TEST(CellField, DoesNotFallBelowTheLowestValue) {
    const RecordedMesh mesh(JiggledPlate(Fill::Hexa, 6, 8, 0.15));
    const std::vector<double> values = mesh.Values(Front);
    const std::vector<double> gradients = mesh.Gradients(values);
    double least = 1e9;
    ForPieces(mesh, {values.data(), gradients.data(), 3, kAbove40},
              [&](const RayPiece& p, const TetraField& f, const Oblique&) {
                  for (const double part : {0.0, 0.25, 0.5, 0.75, 1.0}) {
                      least = std::min(least, f.At(Between(p, part)));
                  }
              });
    EXPECT_GT(least, 40.0 - 0.001 * 190.0);
}

// One hexa by hand: T = 8 z (1 - z) has c = 16 between the corners at z = 0 and z = 1 and 0 within a layer.
// Each corner has four such partners: T_c = 0 - 2 * 16 * 16 / (4 * 64) = 2 with c_ij = -16 summed with its
// sign, which is the field at z = 1/2; curvature between centre and corner 16 * 4 / 8 - 16 * 16 * 2 / 128
// = 4.
TEST(CellField, GivesTheAverageOfAHexaTheValueOfTheField) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Hexa));
    const std::vector<double> values(9, 0.0);
    std::vector<double> gradients(27, 0.0);
    for (int node = 1; node <= 8; ++node) {
        gradients[3 * static_cast<std::size_t>(node) + 2] = mesh.Place(node)[2] > 0.5 ? -8.0 : 8.0;
    }
    const kernel::RecordMesh view = mesh.View();
    CellField cell;
    cell.Take({view.nodes, view.cells}, {values.data(), gradients.data(), 3}, 1);
    RayPiece piece{};
    piece.vertex = {1, 3, 2, 0};
    const TetraField tetra = cell.In(piece);
    EXPECT_EQ(tetra.value[3], 2.0);
    EXPECT_EQ(tetra.curvature, (std::array<double, 6>{0.0, 0.0, -4.0, 0.0, -4.0, -4.0}));
    EXPECT_EQ(tetra.At({0.25, 0.0, 0.25, 0.5}), 1.0 + 0.5 * (4.0 * 0.125 * 2.0)) << "8 z (1 - z) at z = 1/4";
}

// The cells at an edge list its ends in either order.
TEST(CellField, HasTheSameBitsOnBothSidesOfAFace) {
    std::mt19937 random(9);
    const auto number = [&] { return static_cast<double>(random()) / 4294967296.0; };
    const std::array<int, 5> upwards{0, 1, 2, 3, 4};
    const std::array<int, 5> downwards{0, 4, 3, 2, 1};
    std::array<NodeRecord, 5> nodes{};
    std::array<CellRecord, 3> cells{};
    cells[1] = {4, 0, upwards.data(), {}, {}, 0.0};
    cells[2] = {4, 0, downwards.data(), {}, {}, 0.0};
    RayPiece piece{};
    piece.vertex = {1, 2, 3, 4};
    for (int trial = 0; trial < 2000; ++trial) {
        std::vector<double> values{0.0};
        std::vector<double> gradients(3, 0.0);
        for (std::size_t node = 1; node <= 4; ++node) {
            nodes[node] = {number(), number(), number(), 0, 0};
            values.push_back(40.0 + number());
            for (int a = 0; a < 3; ++a) {
                gradients.push_back(20.0 * (number() - 0.5));
            }
        }
        CellField cell;
        const NodalField field{values.data(), gradients.data(), 3, kAbove40};
        cell.Take({nodes.data(), cells.data()}, field, 1);
        const TetraField first = cell.In(piece);
        cell.Take({nodes.data(), cells.data()}, field, 2);
        const TetraField second = cell.In(piece);
        ASSERT_EQ(first.curvature, second.curvature);
        ASSERT_EQ(first.value, second.value);
    }
}

TEST(CellField, TakesNewValuesAfterForget) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Tetra));
    std::vector<double> values(5, 1.0);
    const kernel::RecordMesh view = mesh.View();
    CellField cell;
    RayPiece piece{};
    piece.vertex = {1, 2, 3, 4};
    const std::array<double, 4> middle{0.25, 0.25, 0.25, 0.25};
    cell.Take({view.nodes, view.cells}, {values.data()}, 1);
    EXPECT_EQ(cell.In(piece).At(middle), 1.0);
    values.assign(5, 2.0);
    cell.Forget();
    cell.Take({view.nodes, view.cells}, {values.data()}, 1);
    EXPECT_EQ(cell.In(piece).At(middle), 2.0);
}

TEST(CellField, IsLinearWithoutGradientsAfterAFieldThatHasThem) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Tetra));
    const std::vector<double> values(5, 1.0);
    std::vector<double> gradients(15, 0.0);
    gradients[3 * 1] = 4.0;
    gradients[3 * 2] = -4.0;
    const kernel::RecordMesh view = mesh.View();
    CellField cell;
    RayPiece piece{};
    piece.vertex = {1, 2, 3, 4};
    const std::array<double, 4> halfWay{0.5, 0.5, 0.0, 0.0};
    cell.Take({view.nodes, view.cells}, {values.data(), gradients.data()}, 1);
    EXPECT_EQ(cell.In(piece).At(halfWay), 2.0) << "1 + 4 x (1 - x)";
    cell.Forget();
    cell.Take({view.nodes, view.cells}, {values.data()}, 1);
    EXPECT_EQ(cell.In(piece).At(halfWay), 1.0);
}

}  // namespace
}  // namespace qnl::profile
