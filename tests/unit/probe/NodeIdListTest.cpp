#include "probe/NodeIdList.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<int> Ids(std::string_view text) {
    std::vector<int> ids;
    qnl::probe::NodeIdList list(text);
    for (qnl::NodeLabel label; list.Next(label);) {
        ids.push_back(label.Value());
    }
    return ids;
}

using Expected = std::vector<int>;

}  // namespace

TEST(NodeIdList, TakesTheLinesBetweenTheMarks) {
    EXPECT_EQ(Ids("title\n7\n<List>\n12\n 13 comment\n</List>\n14\n"), (Expected{12, 13}));
}

TEST(NodeIdList, SeveralListsFollowOneAnother) {
    EXPECT_EQ(Ids("<List>\n1\n</List>\n2\n  <List> of more\n3\n4\n</List>\n"), (Expected{1, 3, 4}));
}

TEST(NodeIdList, AnEmptyListGivesNothing) {
    EXPECT_EQ(Ids("<List>\n</List>\n"), Expected{});
    EXPECT_EQ(Ids(""), Expected{});
}

TEST(NodeIdList, AListWithoutAnEndGoesToTheEndOfTheFile) {
    EXPECT_EQ(Ids("<List>\n1\n2"), (Expected{1, 2}));
}

TEST(NodeIdList, LinesWithoutANumberArePassedOver) {
    EXPECT_EQ(Ids("<List>\n\nabc\n-\n99999999999\n0x5\n8\n</List>\n"), Expected{8});
}

TEST(NodeIdList, SignedNumbersAreTaken) {
    EXPECT_EQ(Ids("<List>\n-3\n+4\n\t5\r\n</List>\n"), (Expected{-3, 4, 5}));
}

TEST(NodeIdList, ALineThatHoldsTheEndGivesNoNumber) {
    EXPECT_EQ(Ids("<List>\n5 </List>\n6\n"), Expected{});
}

TEST(NodeIdList, TheLineThatBeginsAListGivesNoNumber) {
    EXPECT_EQ(Ids("5 <List>\n6\n</List>\n"), Expected{6});
}

TEST(NodeIdList, ALongLineGoesOnAsTheNext) {
    EXPECT_EQ(Ids("<List>\n7" + std::string(1022, ' ') + "8\n9\n</List>\n"), (Expected{7, 8, 9}));
    EXPECT_EQ(Ids("<List>\n7" + std::string(1021, ' ') + "8\n9\n</List>\n"), (Expected{7, 9}))
        << "1,023 characters are one line";
}

TEST(NodeIdList, TextBehindANulIsNotLookedAt) {
    EXPECT_EQ(Ids(std::string("<List>\n1\0</List>\n2\n</List>\n3", 28)), (Expected{1, 2}));
}

TEST(NodeIdList, NumbersKeepToThirtyTwoBits) {
    EXPECT_EQ(Ids("<List>\n2147483647\n-2147483648\n2147483648\n-2147483649\n</List>\n"),
              (Expected{2147483647, -2147483647 - 1}));
    EXPECT_EQ(Ids("<List>\n" + std::string(33, '0') + "12\n" + std::string(5000, '9') + "\n</List>\n"),
              Expected{12});
    EXPECT_EQ(Ids("<List>\n+-5\n12.5\n-0X5\n00x5\n</List>\n"), (Expected{12, 0}));
}
