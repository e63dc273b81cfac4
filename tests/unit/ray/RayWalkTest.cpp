#include "kernel/rays/RayWalk.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <thread>

#include "RayMeshes.h"
#include "base/Vector3.h"
#include "support/BruteRay.h"
#include "support/MeshBuilder.h"
#include "support/Sanitizers.h"

namespace qnl {
namespace {

using testing::BoxMesh;
using testing::BruteRay;
using testing::BuildBox;
using testing::Fill;
using testing::NamedMesh;

struct RayStart {
    kernel::Point origin;
    kernel::Point direction;
};

kernel::Point Unit(const kernel::Point& p) {
    const double length = qnl::Length(p);
    return {p[0] / length, p[1] / length, p[2] / length};
}

class RandomPoints {
public:
    explicit RandomPoints(std::uint32_t seed) : random_(seed) {}

    double Number() { return static_cast<double>(random_()) / 4294967296.0; }
    kernel::Point Direction() { return Unit({Number() - 0.5, Number() - 0.5, Number() - 0.5}); }
    std::size_t Index(std::size_t count) { return random_() % count; }

private:
    std::mt19937 random_;
};

const kernel::Point kAxes[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};

// Every boundary node inward and in random directions; some along the axes, towards other nodes, and from
// places that are no node.
std::vector<RayStart> RaysThrough(const kernel::MeshData& mesh, const BruteRay& brute) {
    RandomPoints random(7);
    std::vector<RayStart> rays;
    const std::vector<int> nodes = brute.BoundaryNodes();
    for (const int node : nodes) {
        const kernel::Point& place = mesh.points[static_cast<std::size_t>(node)];
        const kernel::Point inward = brute.InwardDirection(node);
        if (qnl::Length(inward) > 0.5) {
            rays.push_back({place, inward});
        }
        rays.push_back({place, random.Direction()});
        rays.push_back({place, kAxes[random.Index(6)]});
    }
    for (int i = 0; i < 60; ++i) {
        const kernel::Point& from = mesh.points[static_cast<std::size_t>(nodes[random.Index(nodes.size())])];
        const kernel::Point& to = mesh.points[random.Index(mesh.points.size())];
        if (from != to) {
            rays.push_back({from, Unit(Minus(to, from))});
        }
        const int* corners = mesh.Corners(static_cast<int>(random.Index(mesh.cellTypes.size())));
        kernel::Point inside{};
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

// The rays that are tried: under a sanitizer, where brute force takes minutes, every fifth.
std::vector<RayStart> Chosen(std::vector<RayStart> rays) {
    constexpr std::size_t kEvery = QNL_SANITIZERS ? 5 : 1;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < rays.size(); i += kEvery) {
        rays[kept++] = rays[i];
    }
    rays.resize(kept);
    return rays;
}

std::unique_ptr<kernel::RayWalker> MakeWalker(const kernel::MeshData& mesh) {
    return std::make_unique<kernel::RayWalker>(kernel::BuildFaceTopology(mesh).topology,
                                               BruteRay::MeanEdge(mesh), mesh.singlePrecision);
}

std::vector<int> FindIds(kernel::RayWalker& walker, const RayStart& ray, int slot = 0) {
    int count = -1;
    const int* ids = walker.Find(count, ray.origin, ray.direction, slot);
    return {ids, ids + count};
}

// The number of rays that pass something.
int ExpectSameAsBruteForce(const NamedMesh& named, const BruteRay& brute, const std::vector<RayStart>& rays) {
    const auto walker = MakeWalker(named.mesh);
    walker->PrepareSlots(1);
    int wrong = 0;
    int passed = 0;
    for (const RayStart& ray : rays) {
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
    return passed;
}

void ExpectSameAsBruteForce(const NamedMesh& named) {
    const BruteRay brute(named.mesh, BruteRay::MeanEdge(named.mesh));
    EXPECT_GT(ExpectSameAsBruteForce(named, brute, Chosen(RaysThrough(named.mesh, brute))), 0) << named.name;
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

// Enough cells for long walks, with rays towards the rim and from corners.
TEST(RayWalk, EqualsBruteForceInALargerPlate) {
    for (const bool single : {false, true}) {
        kernel::MeshData mesh = testing::LargerPlate(single ? 0.35 : 0.12);
        mesh.singlePrecision = single;
        ExpectSameAsBruteForce({single ? "larger plate, single precision" : "larger plate", std::move(mesh)});
    }
}

// Rays from within 3 epsilon of a wall of two blocks, on either side of it, and from the gap between them.
std::vector<RayStart> RaysNearWalls(double epsilon, double gap) {
    RandomPoints random(13);
    std::vector<RayStart> rays;
    for (int i = 0; i < 150; ++i) {
        kernel::Point origin{2.0 * random.Number(), random.Number(), 2.0 * random.Number()};
        const double walls[] = {0.0, 1.0, 1.0 + gap, 2.0 + gap};
        const std::size_t axis = random.Index(4);
        const double off = 6.0 * epsilon * (random.Number() - 0.5);
        if (axis < 3) {
            origin[axis] = (axis == 2 ? walls[random.Index(4)] : (axis == 0 ? 2.0 : 1.0)) + off;
        } else {
            origin[2] = 1.0 + gap * random.Number();
        }
        rays.push_back({origin, i % 3 == 0 ? kAxes[random.Index(6)] : random.Direction()});
    }
    return rays;
}

void ExpectSameFromNearWalls(int fill, bool single, double gap) {
    const double h = BruteRay::MeanEdge(testing::TwoBlocks(fill, 0.0));
    const double epsilon = (single ? 1e-6 : 1e-8) * h;
    NamedMesh named{"fill " + std::to_string(fill) + ", gap of " + std::to_string(gap),
                    testing::TwoBlocks(fill, gap * epsilon)};
    named.mesh.singlePrecision = single;
    const BruteRay brute(named.mesh, BruteRay::MeanEdge(named.mesh));
    const std::vector<RayStart> rays = RaysNearWalls(epsilon, gap * epsilon);
    const int passed = ExpectSameAsBruteForce(named, brute, rays);
    EXPECT_GT(passed, static_cast<int>(rays.size()) / 4) << named.name;
    EXPECT_LT(passed, static_cast<int>(rays.size())) << named.name;
}

TEST(RayWalk, EqualsBruteForceFromNearWallsAndFromGaps) {
    for (int fill = 0; fill < testing::kFillCount; ++fill) {
        for (const double gap : {0.5, 2.1, 2.9, 3.1, 40.0}) {
            ExpectSameFromNearWalls(fill, false, gap);
        }
        ExpectSameFromNearWalls(fill, true, 2.5);
    }
}

// Walls moved outward by epsilon leave a gap epsilon smaller on each side; up to epsilon is closed: so a gap
// of up to 3 epsilon between bodies is none for a ray across it.
class Gap : public ::testing::TestWithParam<double> {
protected:
    void SetUp() override {
        epsilon_ = 1e-8 * BruteRay::MeanEdge(testing::TwoBlocks(0, 0.0));
        walker_ = MakeWalker(testing::TwoBlocks(0, GetParam() * epsilon_));
    }
    // Length inside of a ray along z from so many epsilon above the lower block.
    double InsideFrom(double height, double along) {
        return walker_->InsideEnd({0.61, 0.37, 1.0 + height * epsilon_}, {0.0, 0.0, along}, 0);
    }
    bool Closed() const { return GetParam() < 3.0; }

    double epsilon_ = 0.0;
    std::unique_ptr<kernel::RayWalker> walker_;
};

TEST_P(Gap, IsClosedForARayFromFarAway) {
    EXPECT_NEAR(walker_->InsideEnd({0.61, 0.37, 0.0}, {0.0, 0.0, 1.0}, 0), Closed() ? 2.0 : 1.0, 1e-6);
    EXPECT_NEAR(walker_->InsideEnd({0.61, 0.37, 2.0}, {0.0, 0.0, -1.0}, 0), Closed() ? 2.0 : 1.0, 1e-6);
}

// From here both blocks are found at once, in one order or the other.
TEST_P(Gap, IsClosedForARayFromBesideIt) {
    EXPECT_NEAR(InsideFrom(-5.0, 1.0), Closed() ? 1.0 : 0.0, 1e-6);
    EXPECT_NEAR(InsideFrom(GetParam() + 5.0, -1.0), Closed() ? 1.0 : 0.0, 1e-6);
}

TEST_P(Gap, IsClosedAroundTheOrigin) {
    EXPECT_NEAR(InsideFrom(0.5 * GetParam(), 1.0), Closed() ? 1.0 : 0.0, 1e-6);
    EXPECT_NEAR(InsideFrom(0.5 * GetParam(), -1.0), Closed() ? 1.0 : 0.0, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(InEpsilon, Gap, ::testing::Values(2.2, 2.8, 3.2, 4.0));

TEST(RayWalk, CrossesASlabAsCalculated) {
    BoxMesh box;
    box.blocks = {6, 6, 4};
    box.size = {6.0, 6.0, 2.0};
    box.fill = Fill::Hexa;
    const kernel::MeshData mesh = BuildBox(box);
    const double h = BruteRay::MeanEdge(mesh);
    const auto walker = MakeWalker(mesh);
    const RayStart inside{{2.5, 3.5, 0.0}, {0.0, 0.0, 1.0}};
    EXPECT_EQ(FindIds(*walker, inside).size(), 4U + 2U);
    EXPECT_NEAR(walker->InsideEnd(inside.origin, inside.direction, 0), 2.0 + 1e-8 * h, 1e-13);
    const RayStart alongAnEdge{{3.0, 3.0, 0.0}, {0.0, 0.0, 1.0}};
    EXPECT_EQ(FindIds(*walker, alongAnEdge).size(), 4U * 4U + 8U);
    const RayStart slanted{{2.5, 3.5, 0.0}, Unit({0.6, 0.0, 0.8})};
    EXPECT_NEAR(walker->InsideEnd(slanted.origin, slanted.direction, 0), 2.5, 1e-7);
}

TEST(RayWalk, GivesNothingForRaysThatStartOutsideOrAreNone) {
    const kernel::MeshData mesh = BuildBox(BoxMesh{});
    const auto walker = MakeWalker(mesh);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const RayStart starts[] = {
        {{5.0, 5.0, 5.0}, {1.0, 0.0, 0.0}},      {{-1.0, 0.5, 0.5}, {1.0, 0.0, 0.0}},
        {{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}},      {{0.0, 0.0, 0.0}, {nan, 0.0, 1.0}},
        {{nan, 0.0, 0.0}, {0.0, 0.0, 1.0}},      {{infinite, 0.0, 0.0}, {0.0, 0.0, 1.0}},
        {{0.0, 0.0, 0.0}, {infinite, 0.0, 0.0}}, {{0.0, 0.0, 0.0}, {0.0, 0.0, -1.0}},
        {{1e300, 0.0, 0.0}, {0.0, 0.0, 1.0}}};
    for (const RayStart& start : starts) {
        int count = -1;
        EXPECT_NE(walker->Find(count, start.origin, start.direction, 0), nullptr);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(walker->InsideEnd(start.origin, start.direction, 0), 0.0);
    }
}

TEST(RayWalk, MakesDirectionsUnitVectors) {
    BoxMesh box;
    box.blocks = {3, 3, 3};
    const kernel::MeshData mesh = BuildBox(box);
    const auto walker = MakeWalker(mesh);
    const double unit = walker->InsideEnd({0.0, 0.0, 0.0}, Unit({1.0, 2.0, 3.0}), 0);
    for (const double length : {1e-200, 0.5, 3.0, 1e200}) {
        EXPECT_NEAR(walker->InsideEnd({0.0, 0.0, 0.0}, {length, 2.0 * length, 3.0 * length}, 0), unit, 1e-12);
    }
}

TEST(RayWalk, TakesAMeshWithoutCells) {
    kernel::MeshData mesh;
    mesh.offsets = {0};
    kernel::RayWalker walker(kernel::BuildFaceTopology(mesh).topology, 1.0, false);
    EXPECT_TRUE(FindIds(walker, {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}}).empty());
}

// Slots 0 and 1 are prepared, 2 and 3 are not.
TEST(RayWalk, GivesTheSameFromSeveralThreads) {
    BoxMesh box;
    box.fill = Fill::Mixed;
    box.blocks = {12, 6, 4};
    box.jiggle = 0.2;
    box.shuffled = true;
    const kernel::MeshData mesh = BuildBox(box);
    const BruteRay brute(mesh, BruteRay::MeanEdge(mesh));
    const std::vector<RayStart> rays = RaysThrough(mesh, brute);
    const auto single = MakeWalker(mesh);
    std::vector<std::vector<int>> expected;
    for (const RayStart& ray : rays) {
        expected.push_back(FindIds(*single, ray));
    }
    const auto walker = MakeWalker(mesh);
    walker->PrepareSlots(2);
    std::vector<std::vector<int>> found(rays.size());
    std::vector<std::thread> threads;
    for (int slot = 0; slot < 4; ++slot) {
        threads.emplace_back([&, slot] {
            for (std::size_t i = static_cast<std::size_t>(slot); i < rays.size(); i += 4) {
                found[i] = FindIds(*walker, rays[i], slot);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace qnl
