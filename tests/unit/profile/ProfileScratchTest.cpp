#include "profile/ProfileScratch.h"

#include <gtest/gtest.h>

namespace {

using qnl::profile::ProfileScratch;

/// Entries of each row after one or two profiles of these counts.
std::ptrdiff_t Room(int count, int countAfter = 0) {
    ProfileScratch scratch;
    scratch.Prepare(count);
    scratch.Prepare(countAfter);
    return scratch.Doubles(ProfileScratch::kTemperatureRow) - scratch.Doubles(ProfileScratch::kDepthRow);
}

}  // namespace

TEST(ProfileScratch, HasRoomForAUsualProfileFromTheBeginning) {
    EXPECT_EQ(Room(0), 256);
    EXPECT_EQ(Room(255), 256) << "255 entries and the unused one";
    EXPECT_EQ(Room(255, 255), 256);
}

TEST(ProfileScratch, GrowsAtLeastToTheDouble) {
    EXPECT_EQ(Room(255, 256), 512);
    EXPECT_EQ(Room(255, 2000), 2001);
    EXPECT_EQ(Room(2000, 255), 2001) << "and never shrinks";
}

TEST(ProfileScratch, ArraysOfTheProfileDoNotOverlap) {
    ProfileScratch scratch;
    scratch.Prepare(255);
    const qnl::profile::RayArrays arrays = scratch.ProfileArrays();
    EXPECT_EQ(arrays.elements.depths, scratch.Doubles(ProfileScratch::kDepthRow));
    EXPECT_EQ(arrays.temperatures, scratch.Doubles(ProfileScratch::kTemperatureRow));
    EXPECT_EQ(arrays.samples.depths, scratch.Doubles(ProfileScratch::kSampleDepthRow));
    EXPECT_EQ(arrays.samples.temperatures, scratch.Doubles(ProfileScratch::kSampleTemperatureRow));
    EXPECT_EQ(arrays.samples.elements - arrays.elements.elements, 256);
}
