#include "kernel/ray_walk.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <thread>

#include "kernel/point_math.h"
#include "ray_meshes.h"
#include "support/brute_ray.h"
#include "support/mesh_builder.h"

namespace qnl {
namespace {

using testing::BoxMesh;
using testing::BruteRay;
using testing::BuildBox;
using testing::Fill;
using testing::NamedMesh;

struct RayStart {
    Point origin;
    Point direction;
};

Point Unit(const Point& p) {
    const double length = Length(p);
    return {p[0] / length, p[1] / length, p[2] / length};
}

class RandomPoints {
public:
    explicit RandomPoints(std::uint32_t seed) : random_(seed) {}

    double Number() { return static_cast<double>(random_()) / 4294967296.0; }
    Point Direction() { return Unit({Number() - 0.5, Number() - 0.5, Number() - 0.5}); }
    std::size_t Index(std::size_t count) { return random_() % count; }

private:
    std::mt19937 random_;
};

const Point kAxes[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};

// Every boundary node inward and in random directions; some along the axes, towards other nodes, and from
// places that are no node.
std::vector<RayStart> RaysThrough(const MeshData& mesh, const BruteRay& brute) {
    RandomPoints random(7);
    std::vector<RayStart> rays;
    const std::vector<int> nodes = brute.BoundaryNodes();
    for (const int node : nodes) {
        const Point& place = mesh.points[static_cast<std::size_t>(node)];
        const Point inward = brute.InwardDirection(node);
        if (Length(inward) > 0.5) {
            rays.push_back({place, inward});
        }
        rays.push_back({place, random.Direction()});
        rays.push_back({place, kAxes[random.Index(6)]});
    }
    for (int i = 0; i < 60; ++i) {
        const Point& from = mesh.points[static_cast<std::size_t>(nodes[random.Index(nodes.size())])];
        const Point& to = mesh.points[random.Index(mesh.points.size())];
        if (from != to) {
            rays.push_back({from, Unit(Minus(to, from))});
        }
        const int* corners = mesh.Corners(static_cast<int>(random.Index(mesh.cellTypes.size())));
        Point inside{};
        for (int c = 0; c < 4; ++c) {
            for (std::size_t a = 0; a < 3; ++a) {
                inside[a] += 0.25 * mesh.points[static_cast<std::size_t>(corners[c])][a];
            }
        }
        rays.push_back({inside, random.Direction()});
        rays.push_back({mesh.points[random.Index(mesh.points.size())], random.Direction()});
        rays.push_back({{random.Number() * 4.0, random.Number() * 2.0, random.Number() * 1.5}, kAxes[i % 6]});
    }
    return rays;
}

std::unique_ptr<RayWalker> MakeWalker(const MeshData& mesh) {
    return std::make_unique<RayWalker>(BuildFaceTopology(mesh).topology, BruteRay::MeanEdge(mesh),
                                       mesh.singlePrecision);
}

std::vector<int> FindIds(RayWalker& walker, const RayStart& ray, int slot = 0) {
    int count = -1;
    const int* ids = walker.Find(count, ray.origin, ray.direction, slot);
    return {ids, ids + count};
}

void ExpectSameAsBruteForce(const NamedMesh& named) {
    const BruteRay brute(named.mesh, BruteRay::MeanEdge(named.mesh));
    const auto walker = MakeWalker(named.mesh);
    walker->PrepareSlots(1);
    int wrong = 0;
    int passed = 0;
    for (const RayStart& ray : RaysThrough(named.mesh, brute)) {
        const BruteRay::Result expected = brute.Find(ray.origin, ray.direction);
        const std::vector<int> found = FindIds(*walker, ray);
        passed += expected.ids.empty() ? 0 : 1;
        if (found != expected.ids && wrong++ < 3) {
            ADD_FAILURE() << named.name << ": ray from " << ::testing::PrintToString(ray.origin) << " along "
                          << ::testing::PrintToString(ray.direction) << "\nfound "
                          << ::testing::PrintToString(found) << "\nexpected "
                          << ::testing::PrintToString(expected.ids) << "\nnearest length "
                          << static_cast<double>(expected.narrowest);
        }
        EXPECT_NEAR(walker->InsideEnd(ray.origin, ray.direction, 0), expected.insideEnd, 1e-9) << named.name;
    }
    EXPECT_EQ(wrong, 0) << named.name;
    EXPECT_GT(passed, 0) << named.name;
}

TEST(RayWalk, EqualsBruteForceInSingleBodies) {
    for (const NamedMesh& named : testing::SingleBodies()) {
        ExpectSameAsBruteForce(named);
    }
}

TEST(RayWalk, EqualsBruteForceInAwkwardBodies) {
    for (const NamedMesh& named : testing::AwkwardBodies()) {
        ExpectSameAsBruteForce(named);
    }
}

}  // namespace
}  // namespace qnl
