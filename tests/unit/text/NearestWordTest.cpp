#include "text/NearestWord.h"

#include <gtest/gtest.h>

namespace {

using qnl::text::EditDistance;
using qnl::text::NearestWord;

TEST(EditDistance, CountsChanges) {
    EXPECT_EQ(EditDistance("", ""), 0U);
    EXPECT_EQ(EditDistance("", "abc"), 3U);
    EXPECT_EQ(EditDistance("abc", "abc"), 0U);
    EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
    EXPECT_EQ(EditDistance("run", "urn"), 2U);
}

TEST(NearestWord, IsTheFirstOfTheNearest) {
    EXPECT_EQ(NearestWord("runn", {"view", "run", "runs"}), "run");
    EXPECT_EQ(NearestWord("--thread", {"--threads", "--tread"}), "--threads");
}

TEST(NearestWord, IsNoneTooFarAway) {
    EXPECT_EQ(NearestWord("x", {"run", "view"}), "");
    EXPECT_EQ(NearestWord("exprot", {"export"}), "export") << "two of six letters";
    EXPECT_EQ(NearestWord("epxrot", {"export"}), "");
    EXPECT_EQ(NearestWord("ab", {"a", "b"}), "a") << "one letter always";
    EXPECT_EQ(NearestWord("run", {}), "");
}

}  // namespace
