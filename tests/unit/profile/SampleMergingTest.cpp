#include "profile/kernels/SampleMerging.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/ArrayFromOne.h"

namespace {

constexpr qnl::mesh::PassElementNumbering kTenFaces{10};
constexpr qnl::profile::MergeLimits kLimits{0.001, 1.0};

struct Samples {
    std::vector<double> depths;
    std::vector<double> temperatures;
    std::vector<int> elements;
};

Samples Merge(const Doubles& depths, const Doubles& temperatures, const Ints& ids,
              const qnl::profile::MergeLimits& limits = kLimits) {
    const auto room = static_cast<std::size_t>(depths.Count()) + 1;
    Samples samples{std::vector<double>(room), std::vector<double>(room), std::vector<int>(room)};
    const int count = MergeCoincidentPassElems(
        {depths, temperatures, ids}, kTenFaces, limits,
        {samples.depths.data(), samples.temperatures.data(), samples.elements.data()});
    const auto cut = [count](auto& array) {
        array.resize(static_cast<std::size_t>(count) + 1);
        array.erase(array.begin());
    };
    cut(samples.depths);
    cut(samples.temperatures);
    cut(samples.elements);
    return samples;
}

using DoubleList = std::vector<double>;
using IntList = std::vector<int>;

}  // namespace

TEST(SampleMerging, FewerThanTwoElementsGiveNone) {
    EXPECT_TRUE(Merge({}, {}, {}).elements.empty());
    EXPECT_TRUE(Merge({0.0}, {20.0}, {1}).elements.empty());
}

TEST(SampleMerging, DistinctElementsStayAsTheyAre) {
    const Samples samples = Merge({0.0, 0.5, 2.0}, {20.0, 30.0, 40.0}, {1, 11, 12});
    EXPECT_EQ(samples.depths, (DoubleList{0.0, 0.5, 2.0}));
    EXPECT_EQ(samples.temperatures, (DoubleList{20.0, 30.0, 40.0}));
    EXPECT_EQ(samples.elements, (IntList{1, 11, 12}));
}

TEST(SampleMerging, AGroupHasTheMeanTemperatureAndItsLastElement) {
    const Samples samples =
        Merge({0.0, 0.0005, 0.001, 0.5}, {20.0, 30.0, 70.0, 90.0}, {1, 2, 11, 12}, {0.00075, 1.0});
    EXPECT_EQ(samples.depths, (DoubleList{0.001, 0.5}));
    EXPECT_EQ(samples.temperatures, (DoubleList{40.0, 90.0}));
    EXPECT_EQ(samples.elements, (IntList{11, 12}));
}

TEST(SampleMerging, AGroupAtTheEndHasTheLastElementButOne) {
    const Samples samples = Merge({0.0, 0.5, 0.5005}, {20.0, 30.0, 40.0}, {1, 11, 12});
    EXPECT_EQ(samples.depths, (DoubleList{0.0, 0.5}));
    EXPECT_EQ(samples.temperatures, (DoubleList{20.0, 35.0}));
    EXPECT_EQ(samples.elements, (IntList{1, 11}));
}

TEST(SampleMerging, AllAtOneDepthGiveOneSample) {
    const Samples samples = Merge({3.0, 3.0, 3.0}, {20.0, 30.0, 70.0}, {1, 11, 12});
    EXPECT_EQ(samples.depths, (DoubleList{3.0}));
    EXPECT_EQ(samples.temperatures, (DoubleList{40.0}));
    EXPECT_EQ(samples.elements, (IntList{11}));
}

TEST(SampleMerging, TheToleranceItselfSeparates) {
    EXPECT_EQ(Merge({0.0, 0.5}, {1.0, 2.0}, {1, 11}, {0.5, 1.0}).elements, (IntList{1, 11}));
    EXPECT_EQ(Merge({0.0, 0.5}, {1.0, 2.0}, {1, 11}, {0.5000001, 1.0}).elements, (IntList{1}));
}

TEST(SampleMerging, EndsAtTheOppositeWall) {
    const Samples samples =
        Merge({-4.0, -3.5, -2.5, -2.4, -2.3}, {10.0, 20.0, 30.0, 40.0, 50.0}, {1, 11, 2, 12, 13});
    EXPECT_EQ(samples.depths, (DoubleList{-4.0, -3.5, -2.5}));
    EXPECT_EQ(samples.temperatures, (DoubleList{10.0, 20.0, 30.0}));
    EXPECT_EQ(samples.elements, (IntList{1, 11, 2}));
}

TEST(SampleMerging, EndsAtTheOppositeWallWithTheLastElement) {
    EXPECT_EQ(Merge({0.0, 0.5, 1.5}, {10.0, 20.0, 30.0}, {1, 11, 2}).elements, (IntList{1, 11, 2}));
}

TEST(SampleMerging, AWallFaceBehindACoincidentCellDoesNotEndIt) {
    const Samples samples = Merge({0.0, 1.5, 1.5005, 2.0}, {10.0, 20.0, 30.0, 40.0}, {1, 11, 2, 12});
    EXPECT_EQ(samples.depths, (DoubleList{0.0, 1.5005, 2.0}));
    EXPECT_EQ(samples.temperatures, (DoubleList{10.0, 25.0, 40.0}));
    EXPECT_EQ(samples.elements, (IntList{1, 2, 12}));
}

TEST(SampleMerging, NeverStopsAtAFaceCloserThanTheLimit) {
    EXPECT_EQ(Merge({4.0, 4.5, 5.0, 5.2}, {1.0, 2.0, 3.0, 4.0}, {1, 2, 3, 11}).elements,
              (IntList{1, 2, 3, 11}))
        << "a face at the limit itself does not stop it either";
}

TEST(SampleMerging, ADeepCellDoesNotEndIt) {
    EXPECT_EQ(Merge({0.0, 5.0, 6.0}, {1.0, 2.0, 3.0}, {1, 11, 12}).elements, (IntList{1, 11, 12}));
}

TEST(SampleMerging, TheCoincidenceLimitIsAShareOfTheHeight) {
    EXPECT_EQ(qnl::profile::CoincidenceLimit(150.0, -50.0), 200.0 / 1e8);
}
