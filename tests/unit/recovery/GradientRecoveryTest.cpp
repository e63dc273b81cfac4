#include "kernel/recovery/GradientRecovery.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <set>

#include "support/RecordedMesh.h"

namespace qnl {
namespace {

using kernel::Point;
using testing::Fill;
using testing::JiggledPlate;
using testing::kAllFills;
using testing::RecordedMesh;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

double Linear(const Point& p) {
    return 230.0 + 3.0 * p[0] - 7.0 * p[1] + 11.0 * p[2];
}

double Quadratic(const Point& p) {
    return Linear(p) + 2.0 * p[0] * p[0] - p[1] * p[1] + 5.0 * p[2] * p[2] + 3.0 * p[0] * p[1] -
           4.0 * p[1] * p[2] + p[2] * p[0];
}

Point QuadraticSlope(const Point& p) {
    return {3.0 + 4.0 * p[0] + 3.0 * p[1] + p[2], -7.0 - 2.0 * p[1] + 3.0 * p[0] - 4.0 * p[2],
            11.0 + 10.0 * p[2] - 4.0 * p[1] + p[0]};
}

double Range(const std::vector<double>& values) {
    const auto [low, high] = std::minmax_element(values.begin() + 1, values.end());
    return *high - *low;
}

// Largest difference of a gradient from the expected one, times the spacing, by the range of the field.
template <class Slope>
double LargestError(const RecordedMesh& mesh, const std::vector<double>& values,
                    const std::vector<double>& gradients, double spacing, Slope slope) {
    double largest = 0.0;
    for (int node = 1; node <= mesh.Data().Nodes(); ++node) {
        const Point expected = slope(mesh.Place(node));
        for (std::size_t a = 0; a < 3; ++a) {
            const double error = std::fabs(gradients[3 * static_cast<std::size_t>(node) + a] - expected[a]);
            largest = error <= largest ? largest : error;  // keeps what is not a number
        }
    }
    return largest * spacing / Range(values);
}

Point LinearSlope(const Point&) {
    return {3.0, -7.0, 11.0};
}

TEST(GradientRecovery, IsExactForLinearAndQuadraticFieldsOnJiggledMeshesOfEveryCellType) {
    for (const auto& [name, fill] : kAllFills) {
        for (const int through : {2, 3, 5}) {
            SCOPED_TRACE(std::string(name) + ", " + std::to_string(through) + " cells");
            const RecordedMesh mesh(JiggledPlate(fill, through, 5));
            GradientReport report;
            const std::vector<double> linear = mesh.Values(Linear);
            EXPECT_LT(LargestError(mesh, linear, mesh.Gradients(linear), 2.0 / through, LinearSlope), 1e-9);
            const std::vector<double> quadratic = mesh.Values(Quadratic);
            EXPECT_LT(LargestError(mesh, quadratic, mesh.Gradients(quadratic, &report), 2.0 / through,
                                   QuadraticSlope),
                      1e-9);
            EXPECT_EQ(report.nodes, mesh.Data().Nodes());
            EXPECT_EQ(report.withoutValue, 0);
            EXPECT_EQ(report.fewerCurvatures, 0);
            EXPECT_EQ(report.fewerSlopes, 0);
        }
    }
}

// One cell tells no curvature across the wall, but all along it, and every slope. A pyramid mesh has a
// further node inside.
TEST(GradientRecovery, TakesTheOpenCurvatureOfAWallOfOneCellAsZero) {
    for (const auto& [name, fill] : kAllFills) {
        if (fill == Fill::Pyramid || fill == Fill::Mixed) {
            continue;
        }
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 1));
        GradientReport report;
        const std::vector<double> linear = mesh.Values(Linear);
        EXPECT_LT(LargestError(mesh, linear, mesh.Gradients(linear, &report), 2.0, LinearSlope), 1e-9);
        EXPECT_EQ(report.fewerCurvatures, mesh.Data().Nodes());
        EXPECT_EQ(report.fewerSlopes, 0);
    }
}

TEST(GradientRecovery, IsExactForLinearFieldsOnASingleCell) {
    for (const kernel::CellType type : {kernel::CellType::Tetra, kernel::CellType::Hexa,
                                        kernel::CellType::Wedge, kernel::CellType::Pyramid}) {
        const RecordedMesh mesh(testing::SingleCell(type));
        const std::vector<double> linear = mesh.Values(Linear);
        EXPECT_LT(LargestError(mesh, linear, mesh.Gradients(linear), 1.0, LinearSlope), 1e-9);
    }
}

TEST(GradientRecovery, LeavesMissingValuesOutAndGivesTheirNodesNoGradient) {
    const RecordedMesh mesh(JiggledPlate(Fill::Tetra, 4));
    std::vector<double> values = mesh.Values(Quadratic);
    const double spacing = 0.5;
    const double range = Range(values);
    for (std::size_t node = 1; node < values.size(); node += 5) {
        values[node] = node % 2 == 0 ? kMissing : std::numeric_limits<double>::infinity();
    }
    GradientReport report;
    const std::vector<double> gradients = mesh.Gradients(values, &report);
    int missing = 0;
    for (int node = 1; node <= mesh.Data().Nodes(); ++node) {
        const auto n = static_cast<std::size_t>(node);
        const bool has = std::isfinite(values[n]);
        missing += has ? 0 : 1;
        const Point expected = has ? QuadraticSlope(mesh.Place(node)) : Point{};
        for (std::size_t a = 0; a < 3; ++a) {
            EXPECT_NEAR(gradients[3 * n + a], expected[a], has ? 1e-9 * range / spacing : 0.0) << node;
        }
    }
    EXPECT_EQ(report.withoutValue, missing);
    EXPECT_EQ(report.nodes, mesh.Data().Nodes() - missing);
}

// Values on a plane or a line only: the slopes in it are known, the others are open and 0.
TEST(GradientRecovery, TakesOpenSlopesAsZero) {
    const RecordedMesh mesh(JiggledPlate(Fill::Hexa, 4, 8, 0.0));
    const auto only = [&](auto keep) {
        std::vector<double> values = mesh.Values(Linear);
        for (int node = 1; node <= mesh.Data().Nodes(); ++node) {
            if (!keep(mesh.Place(node))) {
                values[static_cast<std::size_t>(node)] = kMissing;
            }
        }
        return values;
    };
    const auto check = [&](const std::vector<double>& values, const Point& slope, const char* what) {
        SCOPED_TRACE(what);
        GradientReport report;
        const std::vector<double> gradients = mesh.Gradients(values, &report);
        for (std::size_t n = 1; n < values.size(); ++n) {
            for (std::size_t a = 0; a < 3 && std::isfinite(values[n]); ++a) {
                EXPECT_NEAR(gradients[3 * n + a], slope[a], 1e-9) << n;
            }
        }
        EXPECT_GT(report.nodes, 0);
        EXPECT_EQ(report.fewerSlopes, report.nodes);
    };
    check(only([](const Point& p) { return p[2] == 0.0; }), {3.0, -7.0, 0.0}, "plane");
    check(only([](const Point& p) { return p[2] == 0.0 && p[1] == 0.0; }), {3.0, 0.0, 0.0}, "line");
}

TEST(GradientRecovery, GivesNoGradientToANodeWithoutNeighbours) {
    kernel::MeshData data = testing::SingleCell(kernel::CellType::Tetra);
    data.points.push_back({5.0, 5.0, 5.0});
    const RecordedMesh mesh(data);
    GradientReport report;
    const std::vector<double> gradients = mesh.Gradients(mesh.Values(Linear), &report);
    EXPECT_EQ(std::vector<double>(gradients.end() - 3, gradients.end()), std::vector<double>(3, 0.0));
    EXPECT_EQ(report.withoutValue, 1);
    EXPECT_EQ(report.nodes, 4);
}

// Nodes of one place, as a collapsed cell has them, tell nothing of a slope.
TEST(GradientRecovery, PassesOverNodesAtOnePlace) {
    kernel::MeshData data = JiggledPlate(Fill::Tetra, 3, 4);
    data.points.push_back(data.points[40]);
    data.points.back()[1] += 1e-9;
    data.connectivity[0] = data.Nodes() - 1;
    const RecordedMesh mesh(data);
    std::vector<double> values = mesh.Values(Linear);
    values.back() += 1e-9;
    EXPECT_LT(LargestError(mesh, values, mesh.Gradients(values), 0.5, LinearSlope), 1e-8);
}

// Stretched and turned cells: gradients turn with the mesh.
TEST(GradientRecovery, IsExactOnFlatAndTurnedCells) {
    testing::BoxMesh box;
    box.fill = Fill::Tetra;
    box.blocks = {6, 6, 4};
    box.size = {60.0, 3.0, 0.4};
    box.jiggle = 0.2;
    box.map = [](const Point& p) {
        return Point{0.8 * p[0] - 0.6 * p[2], 0.36 * p[0] + 0.8 * p[1] + 0.48 * p[2],
                     0.48 * p[0] - 0.6 * p[1] + 0.64 * p[2]};
    };
    const RecordedMesh mesh(testing::BuildBox(box));
    const std::vector<double> quadratic = mesh.Values(Quadratic);
    EXPECT_LT(LargestError(mesh, quadratic, mesh.Gradients(quadratic), 0.1, QuadraticSlope), 1e-9);
}

// A jump of the whole range within one cell, cells without height, and the two together: gradients stay
// finite, and no steeper than a few times the jump by the height of a cell.
TEST(GradientRecovery, StaysBoundedAtAJumpAndOnFlatCells) {
    for (const auto& [name, fill] : kAllFills) {
        for (const double height : {2.0, 1e-7}) {
            SCOPED_TRACE(std::string(name) + ", " + std::to_string(height) + " mm");
            testing::BoxMesh box;
            box.fill = fill;
            box.blocks = {4, 4, 4};
            box.size = {4.0, 4.0, height};
            const RecordedMesh mesh(testing::BuildBox(box));
            const auto jump = [&](const Point& p) { return p[2] > 0.49 * height ? 230.0 : 40.0; };
            const std::vector<double> gradients = mesh.Gradients(mesh.Values(jump));
            for (int node = 1; node <= mesh.Data().Nodes(); ++node) {
                const double* g = &gradients[3 * static_cast<std::size_t>(node)];
                ASSERT_LT(std::fabs(g[0]) + std::fabs(g[1]), 4.0 * 190.0) << node;
                ASSERT_LT(std::fabs(g[2]), 4.0 * 190.0 / (0.25 * height)) << node;
            }
        }
    }
}

// Within a millionth of the patch's radius a neighbour stands at the node's own place: its difference would
// outweigh all others. Ten times that away it counts.
TEST(GradientRecovery, LeavesOutNeighboursWithinAMillionthOfThePatch) {
    for (const double distance : {1e-7, 1e-4}) {
        kernel::MeshData data = JiggledPlate(Fill::Tetra, 3, 4, 0.0);
        const int node = 62;  // in the middle of the plate
        data.points.push_back(data.points[node - 1]);
        data.points.back()[0] += distance;
        data.connectivity[0] = data.Nodes() - 1;
        data.connectivity[1] = node - 1;
        const RecordedMesh mesh(data);
        std::vector<double> values = mesh.Values(Linear);
        values.back() = values[node] + 1.0;  // a fault of one kelvin
        const std::vector<double> gradients = mesh.Gradients(values);
        const double error = std::fabs(gradients[3 * node] - 3.0);
        if (distance < 1e-6) {
            EXPECT_LT(error, 1e-6);
        } else {
            EXPECT_GT(error, 10.0);
        }
    }
}

std::vector<double> TwoFields(const RecordedMesh& mesh, const std::vector<double>& a,
                              const std::vector<double>& b) {
    std::vector<double> gradients(6 * a.size());
    const double* fields[] = {a.data(), b.data()};
    kernel::GradientRecovery(mesh.View()).Recover(fields, 2, gradients.data());
    return gradients;
}

TEST(GradientRecovery, GivesTheSameBitsAtAnyThreadCountAndBesideOtherFields) {
    const int threads = omp_get_max_threads();
    for (const auto& [name, fill] : kAllFills) {
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 3));
        const auto front = [](const Point& p) {
            return p[2] <= 0.0 || p[2] >= 2.0 ? 40.0 : 230.0 - p[0] * p[1];
        };
        const std::vector<double> first = mesh.Values(front);
        std::vector<double> second = mesh.Values(Quadratic);
        for (std::size_t node = 2; node < second.size(); node += 7) {
            second[node] = kMissing;
        }
        omp_set_num_threads(1);
        const std::vector<double> one = TwoFields(mesh, first, second);
        for (const int count : {2, 8}) {
            omp_set_num_threads(count);
            const std::vector<double> more = TwoFields(mesh, first, second);
            EXPECT_EQ(std::memcmp(one.data(), more.data(), one.size() * sizeof(double)), 0) << count;
        }
        const std::vector<double> alone = mesh.Gradients(second);
        for (std::size_t node = 0; node < second.size(); ++node) {
            ASSERT_EQ(std::memcmp(&one[6 * node + 3], &alone[3 * node], 3 * sizeof(double)), 0) << node;
        }
    }
    omp_set_num_threads(threads);
}

// The bits of one mesh, as g++ and clang++ gave them at -O0 and -O3; other packets of the dense algebra, as
// for AVX2, gave others.
TEST(GradientRecovery, GivesTheSameBitsInEveryBuild) {
    const RecordedMesh mesh(JiggledPlate(Fill::Tetra, 3, 6));
    const std::vector<double> gradients = mesh.Gradients(mesh.Values([](const Point& p) {
        return p[2] <= 0.0 || p[2] >= 2.0 ? 40.0 : 230.0 - p[0] * p[1] + p[2] * p[2] * p[2];
    }));
    std::uint64_t digest = 1469598103934665603U;
    for (const double component : gradients) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &component, sizeof bits);
        digest = (digest ^ bits) * 1099511628211U;
    }
    EXPECT_EQ(digest, 0xc2a34d65399f06c3U);
}

TEST(NeighbourRows, HoldTheNodesThatShareACell) {
    for (const auto& [name, fill] : kAllFills) {
        SCOPED_TRACE(name);
        const RecordedMesh mesh(JiggledPlate(fill, 3, 4));
        std::vector<std::set<int>> expected(static_cast<std::size_t>(mesh.Data().Nodes()) + 1);
        for (int cell = 0; cell < mesh.Data().Cells(); ++cell) {
            const int* corners = mesh.Data().Corners(cell);
            for (int i = 0; i < mesh.Data().Shape(cell).corners; ++i) {
                for (int j = 0; j < mesh.Data().Shape(cell).corners; ++j) {
                    if (i != j) {
                        expected[static_cast<std::size_t>(corners[i]) + 1].insert(corners[j] + 1);
                    }
                }
            }
        }
        const kernel::NeighbourRows rows(mesh.View());
        ASSERT_EQ(rows.Nodes(), mesh.Data().Nodes());
        for (int node = 1; node <= rows.Nodes(); ++node) {
            std::set<int> found;
            rows.ForNeighbours(node, [&](int other) { found.insert(other); });
            found.erase(node);
            EXPECT_EQ(found, expected[static_cast<std::size_t>(node)]);
        }
        EXPECT_LE(rows.Bytes(), 60U * static_cast<std::size_t>(rows.Nodes()));
    }
}

}  // namespace
}  // namespace qnl
