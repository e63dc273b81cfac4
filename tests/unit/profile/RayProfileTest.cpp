#include "profile/rays/RayProfile.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "profile/rays/RayDepth.h"

namespace {

using qnl::PassElement;
using qnl::Vector3;

EntityRecord At(double x, double y, double z) {
    EntityRecord record{};
    record.boxMin[0] = x - 1.0;
    record.boxMax[0] = x + 1.0;
    record.boxMin[1] = y - 0.5;
    record.boxMax[1] = y + 0.5;
    record.boxMin[2] = -50.0;
    record.boxMax[2] = 50.0;
    record.zMiddle = z;
    return record;
}

/// Faces 1 and 2 and cells 1 to 3, passed as 1, 2 and 3, 4, 5. Nothing of a job.
struct RayProfileTest : testing::Test {
    std::array<EntityRecord, 3> faces{{{}, At(0.0, 0.0, 0.0), At(0.0, 0.0, 4.0)}};
    std::array<EntityRecord, 4> cells{{{}, At(0.0, 0.0, 1.0), At(0.0, 0.0, 3.0), At(0.0, 0.0, 1.0)}};
    std::array<double, 3> faceValues{{-1.0, 10.0, 50.0}};
    std::array<double, 4> cellValues{{-1.0, 20.0, 40.0, 30.0}};
    CQNLOptKer sorter;
    qnl::profile::RayMedium medium{{{faces.data(), 2}, {cells.data(), 3}},
                                   {{faceValues.data(), 2}, {cellValues.data(), 3}},
                                   {1e-6, 1.0},
                                   &sorter};

    std::array<double, 6> depths{};
    std::array<int, 6> elements{};
    std::array<double, 6> temperatures{};
    std::array<double, 6> sampleDepths{};
    std::array<double, 6> sampleTemperatures{};
    std::array<int, 6> sampleElements{};

    qnl::profile::RayProfile Build(const std::vector<int>& found, const Vector3& direction) {
        return qnl::profile::BuildRayProfile(
            medium, direction, {found.data(), static_cast<int>(found.size())},
            {{depths.data(), elements.data()},
             temperatures.data(),
             {sampleDepths.data(), sampleTemperatures.data(), sampleElements.data()}});
    }
};

template <typename View>
std::vector<double> Values(const View& view) {
    std::vector<double> values;
    for (int j = 1; j <= view.Count(); ++j) {
        values.push_back(view[j]);
    }
    return values;
}

std::vector<int> Numbers(const qnl::OneBasedIds<PassElement>& view) {
    std::vector<int> numbers;
    for (int j = 1; j <= view.Count(); ++j) {
        numbers.push_back(view[j].Value());
    }
    return numbers;
}

using Doubles = std::vector<double>;
using Ints = std::vector<int>;

}  // namespace

TEST_F(RayProfileTest, SortsByDepthWithTheValuesOfTheElements) {
    const qnl::profile::RayProfile profile = Build({2, 4, 1, 3}, {0.0, 0.0, 1.0});
    EXPECT_EQ(Values(profile.elements.depths), (Doubles{0.0, 1.0, 3.0, 4.0}));
    EXPECT_EQ(Numbers(profile.elements.elements), (Ints{1, 3, 4, 2}));
    EXPECT_EQ(Values(profile.temperatures), (Doubles{10.0, 20.0, 40.0, 50.0}));
    EXPECT_EQ(profile.direction.z, 1.0);
}

TEST_F(RayProfileTest, MergesWhatLiesAtOneDepth) {
    const qnl::profile::RayProfile profile = Build({1, 2, 3, 4, 5}, {0.0, 0.0, 1.0});
    EXPECT_EQ(profile.elements.Count(), 5);
    EXPECT_EQ(Values(profile.samples.depths), (Doubles{0.0, 1.0, 3.0, 4.0}));
    EXPECT_EQ(Values(profile.samples.temperatures), (Doubles{10.0, 25.0, 40.0, 50.0}));
    EXPECT_EQ(Numbers(profile.samples.elements), (Ints{1, 5, 4, 2}));
}

TEST_F(RayProfileTest, DepthRunsAlongTheRay) {
    const qnl::profile::RayProfile profile = Build({1, 2, 4}, {0.0, 0.0, -1.0});
    EXPECT_EQ(Values(profile.elements.depths), (Doubles{-4.0, -3.0, 0.0}));
    EXPECT_EQ(Numbers(profile.elements.elements), (Ints{2, 4, 1}));
}

TEST_F(RayProfileTest, EndsAtTheOppositeWall) {
    cells[2] = At(0.0, 0.0, 6.0);
    const qnl::profile::RayProfile profile = Build({1, 2, 3, 4}, {0.0, 0.0, 1.0});
    EXPECT_EQ(profile.elements.Count(), 4);
    EXPECT_EQ(Values(profile.samples.depths), (Doubles{0.0, 1.0, 4.0}));
}

TEST_F(RayProfileTest, OneElementHasNoSample) {
    const qnl::profile::RayProfile profile = Build({3}, {0.0, 0.0, 1.0});
    EXPECT_EQ(profile.elements.Count(), 1);
    EXPECT_EQ(profile.samples.Count(), 0);
}

TEST_F(RayProfileTest, DepthIsThatOfTheReferencePointAlongTheDepthAxis) {
    cells[1] = At(2.0, 3.0, 5.0);
    EXPECT_DOUBLE_EQ(qnl::profile::RayDepth(medium.mesh, {0.6, 0.8, 0.0})(PassElement(3)),
                     0.6 * 2.0 + 0.8 * 3.0);
    // Nearly along z the depth axis is z itself.
    const Vector3 steep{0.001, 0.0, std::sqrt(1.0 - 1e-6)};
    EXPECT_EQ(qnl::profile::RayDepth(medium.mesh, steep)(PassElement(3)), 5.0);
}
