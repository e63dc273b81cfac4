#include "kernel/rays/RayPieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <stdexcept>

#include "base/Vector3.h"
#include "support/BruteRay.h"
#include "support/RecordedMesh.h"

namespace qnl {
namespace {

using kernel::Point;
using testing::BruteRay;
using testing::Fill;
using testing::kAllFills;
using testing::RecordedMesh;
using testing::RecordedRays;

Point Unit(const Point& p) {
    const double length = Length(p);
    return {p[0] / length, p[1] / length, p[2] / length};
}

Point Along(const Point& origin, const Point& direction, double depth) {
    return {origin[0] + depth * direction[0], origin[1] + depth * direction[1],
            origin[2] + depth * direction[2]};
}

struct Start {
    Point origin;
    Point direction;
};

// Boundary nodes inward, along the axes, towards other nodes, and in random directions.
std::vector<Start> Starts(const kernel::MeshData& mesh, const BruteRay& brute) {
    std::mt19937 random(3);
    const auto number = [&] { return static_cast<double>(random()) / 4294967296.0 - 0.5; };
    std::vector<Start> starts;
    const std::vector<int> nodes = brute.BoundaryNodes();
    for (const int node : nodes) {
        const Point& place = mesh.points[static_cast<std::size_t>(node)];
        const Point& other = mesh.points[random() % mesh.points.size()];
        const Point inward = brute.InwardDirection(node);
        if (Length(inward) > 0.5) {
            starts.push_back({place, inward});
        }
        starts.push_back({place, {0.0, 0.0, place[2] > 0.5 ? -1.0 : 1.0}});
        starts.push_back({place, Unit({number(), number(), number()})});
        if (other != place) {
            starts.push_back({place, Unit(Minus(other, place))});
        }
    }
    return starts;
}

// Length of the union of the pieces.
double UnionLength(const RayPieces& pieces) {
    double length = 0.0;
    double reached = 0.0;
    for (const RayPiece* p = pieces.first; p != pieces.first + pieces.count; ++p) {
        length += std::max(0.0, p->to - std::max(p->from, reached));
        reached = std::max(reached, p->to);
    }
    return length;
}

Point PlaceOf(const RecordedMesh& mesh, const RayPiece& piece, const std::array<double, 4>& lambda) {
    Point place{};
    for (std::size_t v = 0; v < 4; ++v) {
        Point vertex{};
        if (piece.vertex[v] != 0) {
            vertex = mesh.Place(piece.vertex[v]);
        } else {
            const kernel::RecordMesh view = mesh.View();
            const int corners = view.CornerCount(piece.cell);
            for (int c = 0; c < corners; ++c) {
                for (std::size_t a = 0; a < 3; ++a) {
                    vertex[a] += view.Place(view.Corners(piece.cell)[c])[a] / corners;
                }
            }
        }
        for (std::size_t a = 0; a < 3; ++a) {
            place[a] += lambda[v] * vertex[a];
        }
    }
    return place;
}

void CheckRay(const RecordedMesh& mesh, RecordedRays& rays, const BruteRay& brute, const Start& start) {
    const double h = rays.scale.passLength * 1e4;
    const BruteRay::Result walk = brute.Find(start.origin, start.direction);
    if (walk.narrowest < 1e-6L) {
        return;
    }
    const RayPieces pieces = rays.Pieces(start.origin, start.direction);
    EXPECT_NEAR(UnionLength(pieces), walk.insideEnd, 2.0 * rays.scale.passLength);
    for (int i = 0; i < pieces.count; ++i) {
        const RayPiece& piece = pieces.first[i];
        EXPECT_TRUE(std::binary_search(walk.ids.begin(), walk.ids.end(), piece.cell + brute.Faces()));
        EXPECT_GE(piece.from, 0.0);
        EXPECT_GT(piece.to, piece.from);
        EXPECT_LE(piece.to, walk.insideEnd + 1e-6 * h);
        if (i > 0) {
            const RayPiece& before = pieces.first[i - 1];
            EXPECT_TRUE(std::tie(before.from, before.to, before.cell) <=
                        std::tie(piece.from, piece.to, piece.cell));
        }
        const Point entry = PlaceOf(mesh, piece, piece.atFrom);
        const Point exit = PlaceOf(mesh, piece, piece.atTo);
        EXPECT_LT(Length(Minus(entry, Along(start.origin, start.direction, piece.from))), 1e-9 * h);
        EXPECT_LT(Length(Minus(exit, Along(start.origin, start.direction, piece.to))), 1e-9 * h);
        const double low = std::min(*std::min_element(piece.atFrom.begin(), piece.atFrom.end()),
                                    *std::min_element(piece.atTo.begin(), piece.atTo.end()));
        EXPECT_GT(low, -1e-5) << "outside its tetra";
    }
}

// Every ray's pieces join without gap from 0 to the end of the walk, and belong to its passed cells. So it
// holds along faces and edges, too, where several cells are passed over the same stretch.
TEST(RayPieces, CoverTheWayInsideBySolidsOfEveryCellType) {
    for (const auto& [name, fill] : kAllFills) {
        for (const double jiggle : {0.0, 0.2}) {
            SCOPED_TRACE(std::string(name) + ", jiggle " + std::to_string(jiggle));
            testing::BoxMesh box;
            box.fill = fill;
            box.blocks = {4, 3, 2};
            box.size = {4.0, 3.0, 1.0};
            box.jiggle = jiggle;
            box.shuffled = true;
            const RecordedMesh mesh(testing::BuildBox(box));
            const double h = BruteRay::MeanEdge(mesh.Data());
            const BruteRay brute(mesh.Data(), h);
            RecordedRays rays(mesh, h);
            for (const Start& start : Starts(mesh.Data(), brute)) {
                CheckRay(mesh, rays, brute, start);
            }
        }
    }
}

TEST(RayPieces, CoverTheWayThroughBentFaces) {
    testing::BoxMesh box;
    box.fill = Fill::Hexa;
    box.blocks = {4, 3, 2};
    box.size = {4.0, 3.0, 1.0};
    box.map = testing::Twist(0.2);
    const RecordedMesh mesh(testing::BuildBox(box));
    const double h = BruteRay::MeanEdge(mesh.Data());
    const BruteRay brute(mesh.Data(), h);
    RecordedRays rays(mesh, h);
    for (const Start& start : Starts(mesh.Data(), brute)) {
        CheckRay(mesh, rays, brute, start);
    }
}

TEST(RayPieces, OfOneTetraAreTheWayFromFaceToFace) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Tetra));
    RecordedRays rays(mesh, 1.0);
    const RayPieces pieces = rays.Pieces({0.25, 0.25, 0.0}, {0.0, 0.0, 1.0});
    ASSERT_EQ(pieces.count, 1);
    const RayPiece& piece = pieces.first[0];
    EXPECT_EQ(piece.cell, 1);
    EXPECT_EQ(piece.vertex, (std::array<int, 4>{1, 2, 3, 4}));
    EXPECT_EQ(piece.from, 0.0);
    EXPECT_NEAR(piece.to, 0.5, 3e-8);
    const std::array<double, 4> entry{0.5, 0.25, 0.25, 0.0};
    const std::array<double, 4> exit{0.0, 0.25, 0.25, 0.5};
    for (std::size_t v = 0; v < 4; ++v) {
        EXPECT_NEAR(piece.atFrom[v], entry[v], 1e-7);
        EXPECT_NEAR(piece.atTo[v], exit[v], 1e-7);
    }
}

// The middle of a hexa's face opposite to its corners of smallest number: straight down through the centre.
TEST(RayPieces, OfAHexaMeetAtItsCentre) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Hexa));
    RecordedRays rays(mesh, 1.0);
    const RayPieces pieces = rays.Pieces({0.6, 0.3, 0.0}, {0.0, 0.0, 1.0});
    ASSERT_GT(pieces.count, 1);
    EXPECT_EQ(pieces.first[0].from, 0.0);
    double end = 0.0;
    for (int i = 0; i < pieces.count; ++i) {
        EXPECT_EQ(std::count(pieces.first[i].vertex.begin(), pieces.first[i].vertex.end(), 0), 1);
        end = std::max(end, pieces.first[i].to);
    }
    EXPECT_NEAR(end, 1.0, 3e-8);
}

TEST(RayPieces, AreNoneWithoutPassedCells) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Tetra));
    RecordedRays rays(mesh, 1.0);
    EXPECT_EQ(rays.Pieces({5.0, 5.0, 5.0}, {0.0, 0.0, 1.0}).count, 0);
    const int faces[] = {1, 2, 3};
    EXPECT_EQ(rays.finder.Find({0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, faces, 3, 0).count, 0);
}

// The ray leaves a cell through a bent face and enters it again: the second stretch is not inside.
TEST(RayPieces, EndWhereTheSolidIsLeft) {
    kernel::MeshData hexa = testing::SingleCell(kernel::CellType::Hexa);
    // The face x = 1 is drawn in along the diagonal that splits it: a ray across that valley comes back.
    hexa.points[1] = {0.4, 0.0, 0.0};
    hexa.points[6] = {0.4, 1.0, 1.0};
    const RecordedMesh mesh(hexa);
    const BruteRay brute(hexa, 1.0);
    RecordedRays rays(mesh, 1.0);
    bool left = false;
    for (int i = 1; i < 20; ++i) {
        for (int j = 1; j < 20; ++j) {
            const Point origin{0.3 + 0.03 * i, 0.0, 0.9};
            const Point target{0.3 + 0.03 * j, 0.97, 0.1};
            const Point direction = Unit(Minus(target, origin));
            const BruteRay::Result walk = brute.Find(origin, direction);
            if (walk.ids.empty() || walk.narrowest < 1e-6L) {
                continue;
            }
            const RayPieces pieces = rays.Pieces(origin, direction);
            double end = 0.0;
            for (int p = 0; p < pieces.count; ++p) {
                end = std::max(end, pieces.first[p].to);
            }
            EXPECT_NEAR(end, walk.insideEnd, 1e-6);
            left = left || walk.insideEnd < 0.9 * Length(Minus(target, origin));
        }
    }
    EXPECT_TRUE(left);
}

// Cells too short to be passed leave gaps, however many follow each other.
TEST(RayPieces, GoOnBehindAGapAsLongAsFurtherCellsArePassed) {
    testing::BoxMesh box;
    box.fill = Fill::Hexa;
    box.blocks = {1, 1, 3};
    const RecordedMesh mesh(testing::BuildBox(box));
    RecordedRays rays(mesh, 1.0);
    const int boundary = rays.walker.BoundaryFaces();
    const int ids[] = {boundary + 1, boundary + 3};
    const RayPieces pieces = rays.finder.Find({0.4, 0.3, 0.0}, {0.0, 0.0, 1.0}, ids, 2, 0);
    ASSERT_GT(pieces.count, 0);
    EXPECT_EQ(pieces.first[pieces.count - 1].cell, 3);
    EXPECT_NEAR(pieces.first[pieces.count - 1].to, 1.0, 1e-7);
}

TEST(RayPieces, RefuseASlotThatWasNotPrepared) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Tetra));
    RecordedRays rays(mesh, 1.0);
    const int ids[] = {5};
    EXPECT_THROW(rays.finder.Find({0.1, 0.1, 0.0}, {0.0, 0.0, 1.0}, ids, 1, 1), std::out_of_range);
}

TEST(RayPieces, AllocateNothingOnceASlotIsWarm) {
    const RecordedMesh mesh(testing::JiggledPlate(Fill::Hexa, 4, 4));
    RecordedRays rays(mesh, 0.5);
    const RayPieces first = rays.Pieces({1.1, 0.9, 0.0}, {0.0, 0.0, 1.0});
    const RayPiece* place = first.first;
    EXPECT_EQ(rays.Pieces({1.1, 0.9, 0.0}, {0.0, 0.0, 1.0}).first, place);
}

}  // namespace
}  // namespace qnl
