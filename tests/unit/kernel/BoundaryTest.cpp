#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <random>

#include "base/Vector3.h"
#include "kernel/mesh/CellTetras.h"
#include "kernel/mesh/EntityRecords.h"
#include "kernel/mesh/NodeNormals.h"
#include "kernel/topology/BoundaryGraph.h"
#include "support/MeshBuilder.h"

namespace {

using qnl::kernel::BoundaryFace;
using qnl::kernel::CellType;
using qnl::kernel::MeshData;
using qnl::kernel::Point;
using qnl::testing::Fill;

bool OnOneSide(const MeshData& mesh, const BoundaryFace& face) {
    bool found = false;
    for (std::size_t a = 0; a < 3; ++a) {
        for (const double side : {0.0, 1.0}) {
            bool all = true;
            for (std::size_t c = 0; c < face.corners; ++c) {
                all = all && mesh.points[static_cast<std::size_t>(face.nodes[c])][a] == side;
            }
            found = found || all;
        }
    }
    return found;
}

// Faces on the sides of the unit box, found by place.
std::vector<BoundaryFace> BoxSides(const MeshData& mesh) {
    std::vector<BoundaryFace> faces;
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        const qnl::kernel::CellShape& shape = mesh.Shape(cell);
        for (int f = 0; f < shape.faces; ++f) {
            const BoundaryFace face{cell, static_cast<std::uint8_t>(f),
                                    shape.faceCorners[static_cast<std::size_t>(f)],
                                    qnl::kernel::FaceNodes(shape, mesh.Corners(cell), f)};
            if (OnOneSide(mesh, face)) {
                faces.push_back(face);
            }
        }
    }
    return faces;
}

std::vector<BoundaryFace> FacesOfFirstCell(const MeshData& mesh) {
    std::vector<BoundaryFace> faces;
    for (int f = 0; f < mesh.Shape(0).faces; ++f) {
        faces.push_back({0, static_cast<std::uint8_t>(f),
                         mesh.Shape(0).faceCorners[static_cast<std::size_t>(f)],
                         qnl::kernel::FaceNodes(mesh.Shape(0), mesh.Corners(0), f)});
    }
    return faces;
}

MeshData UnitBox(Fill fill, int n, bool shuffled) {
    qnl::testing::BoxMesh box;
    box.fill = fill;
    box.blocks = {n, n, n};
    box.shuffled = shuffled;
    return BuildBox(box);
}

std::vector<Point> NormalsOf(const MeshData& mesh, const std::vector<BoundaryFace>& boundary) {
    const qnl::kernel::EntityRecords faces = qnl::kernel::FaceRecords(mesh.points, boundary);
    return qnl::kernel::NodeNormals(qnl::kernel::NodeRecords(mesh), faces.records);
}

double OnGrid(double value) {
    return std::nearbyint(value * 17179869184.0) / 17179869184.0;
}

// On a box the direction is (+-1 or 0 by side) divided by its length, whatever the cells.
Point BoxNormal(const Point& point) {
    Point direction{};
    for (std::size_t a = 0; a < 3; ++a) {
        direction[a] = point[a] == 0.0 ? -1.0 : (point[a] == 1.0 ? 1.0 : 0.0);
    }
    const double length = qnl::Length(direction);
    for (double& component : direction) {
        component = length == 0.0 ? 0.0 : OnGrid(component / length);
    }
    return direction;
}

class BoxNormals : public testing::TestWithParam<Fill> {};

TEST_P(BoxNormals, AreExactAtSidesEdgesAndCorners) {
    for (const int n : {1, 3, 4}) {
        const MeshData mesh = UnitBox(GetParam(), n, true);
        const std::vector<Point> normals = NormalsOf(mesh, BoxSides(mesh));
        ASSERT_EQ(normals.size(), mesh.points.size() + 1);
        for (std::size_t i = 0; i < mesh.points.size(); ++i) {
            EXPECT_EQ(normals[i + 1], BoxNormal(mesh.points[i])) << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachFill, BoxNormals,
                         testing::Values(Fill::Tetra, Fill::Hexa, Fill::Wedge, Fill::Pyramid, Fill::Mixed));

TEST(Normals, TheTetraByHand) {
    const MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    const std::vector<Point> normals = NormalsOf(mesh, FacesOfFirstCell(mesh));
    const double third = OnGrid(-1.0 / std::sqrt(3.0));
    EXPECT_EQ(normals[1], (Point{third, third, third}));
    // At (1, 0, 0): two faces with angle pi/4 and normals -y, -z, one with pi/3 and (1, 1, 1)/sqrt 3.
    const double pi = std::acos(-1.0);
    const double along = pi / 3.0 / std::sqrt(3.0);
    const Point sum{along, along - pi / 4.0, along - pi / 4.0};
    for (std::size_t a = 0; a < 3; ++a) {
        EXPECT_NEAR(normals[2][a], sum[a] / qnl::Length(sum), 6e-11);
        EXPECT_EQ(normals[2][a], OnGrid(normals[2][a]));
    }
}

// Normals of loose triangles, by node number from 1.
std::vector<Point> NormalsOfTriangles(const std::vector<Point>& points,
                                      const std::vector<std::array<int, 3>>& triangles) {
    std::vector<NodeRecord> nodes(1);
    for (const Point& point : points) {
        nodes.push_back({point[0], point[1], point[2], static_cast<int>(nodes.size()), 0});
    }
    std::vector<int> lists{0};
    for (const auto& triangle : triangles) {
        lists.insert(lists.end(), triangle.begin(), triangle.end());
    }
    std::vector<SurfaceRecord> faces(triangles.size() + 1);
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        faces[i + 1].nNode = 3;
        faces[i + 1].nodes = lists.data() + 3 * i;
    }
    return qnl::kernel::NodeNormals(nodes, faces);
}

TEST(Normals, ACornerWithoutAreaAddsNothing) {
    const std::vector<Point> normals =
        NormalsOfTriangles({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}}, {{1, 2, 3}, {1, 2, 4}});
    EXPECT_EQ(normals[2], (Point{0, 0, 1}));
    EXPECT_EQ(normals[4], (Point{0, 0, 0}));
}

// The normal of the triangle at its first corner is (slope, 1, 0) to the last bit: its length rounds to 1.
Point NormalOfSlope(double slope) {
    return NormalsOfTriangles({{0, 0, 0}, {0, 0, 1}, {1, -slope, 0}}, {{1, 2, 3}})[1];
}

TEST(Normals, TiesGoToTheEvenMultiple) {
    const double step = 1.0 / 17179869184.0;  // 2^-34
    EXPECT_EQ(NormalOfSlope(0.5 * step)[0], 0.0);
    EXPECT_EQ(NormalOfSlope(-0.5 * step)[0], 0.0);
    EXPECT_EQ(NormalOfSlope(0.75 * step)[0], step);
    EXPECT_EQ(NormalOfSlope(-0.75 * step)[0], -step);
    EXPECT_EQ(NormalOfSlope(1.5 * step)[0], 2.0 * step);
    EXPECT_EQ(NormalOfSlope(2.5 * step)[0], 2.0 * step);
    EXPECT_EQ(NormalOfSlope(3.5 * step)[0], 4.0 * step);
}

// The corner angle of a needle is its width, and so is the length of its share.
TEST(Normals, ASumShorterThanTheLimitStaysZero) {
    const auto normalOfWidth = [](double width) {
        return NormalsOfTriangles({{0, 0, 0}, {1, 0, 0}, {1, width, 0}}, {{1, 2, 3}})[1];
    };
    EXPECT_EQ(normalOfWidth(0.99e-30), (Point{0, 0, 0}));
    EXPECT_EQ(normalOfWidth(1.01e-30), (Point{0, 0, 1}));
}

TEST(Normals, GiveTheSameBitsOnAnyThreadCount) {
    MeshData mesh = UnitBox(Fill::Tetra, 5, true);
    const std::vector<BoundaryFace> faces = BoxSides(mesh);
    const auto twist = qnl::testing::Twist(0.1);
    for (Point& point : mesh.points) {
        point = twist(point);
    }
    const int before = omp_get_max_threads();
    omp_set_num_threads(1);
    const std::vector<Point> expected = NormalsOf(mesh, faces);
    for (const int threads : {2, 8}) {
        omp_set_num_threads(threads);
        EXPECT_EQ(NormalsOf(mesh, faces), expected);
    }
    omp_set_num_threads(before);
}

TEST(BoundaryGraph, NeighboursShareAnEdge) {
    const MeshData mesh = UnitBox(Fill::Hexa, 2, false);
    const qnl::kernel::BoundaryGraph graph(BoxSides(mesh), mesh.Nodes());
    ASSERT_EQ(graph.Nodes().size(), 26u);
    const auto neighbours = [&](std::size_t i) {
        std::vector<int> nodes;
        for (const int* n = graph.NeighboursBegin(i); n != graph.NeighboursEnd(i); ++n) {
            nodes.push_back(graph.Nodes()[static_cast<std::size_t>(*n)]);
        }
        return nodes;
    };
    EXPECT_EQ(neighbours(0), (std::vector<int>{1, 3, 9}));
    EXPECT_EQ(neighbours(1), (std::vector<int>{0, 2, 4, 10}));
    EXPECT_EQ(graph.Nodes()[13], 14) << "the middle node is not on the boundary";
    EXPECT_EQ(neighbours(13), (std::vector<int>{5, 11, 17, 23}));
}

TEST(Smoothing, OneSweepByHand) {
    const MeshData mesh = qnl::testing::SingleCell(CellType::Pyramid);
    const qnl::kernel::BoundaryGraph graph(FacesOfFirstCell(mesh), mesh.Nodes());
    std::vector<double> values{4.0, 8.0, 16.0, 32.0, 64.0};
    qnl::kernel::SmoothOverBoundary(graph, values.data(), 1);
    EXPECT_EQ(values,
              (std::vector<double>{(4 + 8 + 32 + 64) / 4.0, (8 + 4 + 16 + 64) / 4.0, (16 + 8 + 32 + 64) / 4.0,
                                   (32 + 4 + 16 + 64) / 4.0, (64 + 4 + 8 + 16 + 32) / 5.0}));
    const std::vector<double> once = values;
    qnl::kernel::SmoothOverBoundary(graph, values.data(), 0);
    qnl::kernel::SmoothOverBoundary(graph, values.data(), -3);
    EXPECT_EQ(values, once);
}

// The rule written down once more, with plain containers.
std::vector<double> SmoothPlainly(const std::vector<BoundaryFace>& faces, std::vector<double> values,
                                  int sweeps) {
    std::vector<std::vector<char>> linked(values.size(), std::vector<char>(values.size(), 0));
    for (const BoundaryFace& face : faces) {
        for (std::size_t c = 0; c < face.corners; ++c) {
            const auto a = static_cast<std::size_t>(face.nodes[c]);
            const auto b = static_cast<std::size_t>(face.nodes[(c + 1) % face.corners]);
            linked[a][b] = linked[b][a] = 1;
        }
    }
    for (int sweep = 0; sweep < sweeps; ++sweep) {
        const std::vector<double> old = values;
        for (std::size_t i = 0; i < values.size(); ++i) {
            double sum = old[i];
            int count = 1;
            for (std::size_t j = 0; j < old.size(); ++j) {
                if (linked[i][j] != 0) {
                    sum += old[j];
                    ++count;
                }
            }
            values[i] = sum / count;
        }
    }
    return values;
}

TEST(Smoothing, GivesTheSameBitsOnAnyThreadCount) {
    const MeshData mesh = UnitBox(Fill::Tetra, 6, true);
    const std::vector<BoundaryFace> faces = BoxSides(mesh);
    const qnl::kernel::BoundaryGraph graph(faces, mesh.Nodes());
    std::mt19937 random(7);
    std::vector<double> start(mesh.points.size());
    for (double& value : start) {
        value = static_cast<double>(random()) / 1e7 - 200.0;
    }
    const int before = omp_get_max_threads();
    for (const int sweeps : {1, 2, 7}) {
        const std::vector<double> expected = SmoothPlainly(faces, start, sweeps);
        for (const int threads : {1, 2, 8}) {
            omp_set_num_threads(threads);
            std::vector<double> values = start;
            qnl::kernel::SmoothOverBoundary(graph, values.data(), sweeps);
            EXPECT_EQ(values, expected) << sweeps << " sweeps, " << threads << " threads";
        }
    }
    omp_set_num_threads(before);
}

TEST(Smoothing, KeepsAConstantAndTheBounds) {
    const MeshData mesh = UnitBox(Fill::Mixed, 5, true);
    const qnl::kernel::BoundaryGraph graph(BoxSides(mesh), mesh.Nodes());
    std::vector<double> values(mesh.points.size(), 3.0);
    qnl::kernel::SmoothOverBoundary(graph, values.data(), 50);
    EXPECT_EQ(values, std::vector<double>(mesh.points.size(), 3.0));
    const std::size_t raised = static_cast<std::size_t>(graph.Nodes()[10]);
    values[raised] = 10.0;
    qnl::kernel::SmoothOverBoundary(graph, values.data(), 50);
    EXPECT_LT(values[raised], 4.0);
    for (const double value : values) {
        EXPECT_GE(value, 3.0 - 1e-12);
        EXPECT_LE(value, 10.0);
    }
}

}  // namespace
