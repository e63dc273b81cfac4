#include "project/OutputTime.h"

#include <gtest/gtest.h>

namespace {

using qnl::project::OutputTime;

TEST(OutputTime, IsTheRealTimeOrElseTheIndex) {
    EXPECT_EQ((OutputTime{3, 0.25}.Text()), "0.25 s");
    EXPECT_EQ((OutputTime{3, std::nullopt}.Text()), "index 3");
}

}  // namespace
