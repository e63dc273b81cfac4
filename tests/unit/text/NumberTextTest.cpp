#include "text/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using qnl::text::CountText;
using qnl::text::NumberText;

TEST(NumberText, HasFiveDigits) {
    EXPECT_EQ(NumberText(123456.789), "1.2346e+05");
    EXPECT_EQ(NumberText(0.25), "0.25");
    EXPECT_EQ(NumberText(6.400000095367432), "6.4");
    EXPECT_EQ(NumberText(std::nan("")), "-");
    EXPECT_EQ(CountText(1, "node"), "1 node");
    EXPECT_EQ(CountText(0, "node"), "0 nodes");
}

}  // namespace
