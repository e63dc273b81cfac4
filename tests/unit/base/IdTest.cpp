#include "base/Id.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>

#include "base/OneBased.h"

namespace {

using qnl::CellId;
using qnl::FaceId;
using qnl::ListPosition;
using qnl::NodeId;
using qnl::NodeLabel;
using qnl::OneBased;
using qnl::PassElement;

template <typename View, typename Index, typename = void>
constexpr bool kIndexes = false;
template <typename View, typename Index>
constexpr bool
    kIndexes<View, Index, std::void_t<decltype(std::declval<const View&>()[std::declval<Index>()])>> = true;

template <typename A, typename B, typename = void>
constexpr bool kCompares = false;
template <typename A, typename B>
constexpr bool kCompares<A, B, std::void_t<decltype(std::declval<A>() == std::declval<B>())>> = true;

/// True when the kind turns into no other of these and none of these into it, not even by a cast.
template <typename Kind, typename... Others>
constexpr bool kApart = (... &&
                         (!std::is_constructible_v<Kind, Others> && !std::is_constructible_v<Others, Kind> &&
                          !kCompares<Kind, Others> && !kIndexes<OneBased<double, Kind>, Others> &&
                          !kIndexes<OneBased<double, Others>, Kind>));

static_assert(kApart<NodeLabel, NodeId, FaceId, CellId, ListPosition, PassElement>);
static_assert(kApart<NodeId, FaceId, CellId, ListPosition, PassElement>);
static_assert(kApart<FaceId, CellId, ListPosition, PassElement>);
static_assert(kApart<CellId, ListPosition, PassElement>);
static_assert(kApart<ListPosition, PassElement>);

// Numbers become ids by a cast only, and ids numbers not at all.
static_assert(std::is_constructible_v<NodeId, int> && !std::is_convertible_v<int, NodeId>);
static_assert(!std::is_constructible_v<int, NodeId> && !kCompares<NodeId, int>);
static_assert(kIndexes<OneBased<double, NodeId>, NodeId> && !kIndexes<OneBased<double, NodeId>, int>);
static_assert(kIndexes<OneBased<double>, int> && !kIndexes<OneBased<double>, NodeId>);

// No cost beside the number.
static_assert(sizeof(NodeId) == sizeof(int) && std::is_trivially_copyable_v<NodeId>);

}  // namespace

TEST(Id, CountsAndCompares) {
    NodeId node;
    EXPECT_EQ(node.Value(), 0);
    EXPECT_EQ((++node).Value(), 1);
    EXPECT_TRUE(node == NodeId(1) && node != NodeId(2));
    EXPECT_TRUE(node < NodeId(2) && node <= NodeId(1) && node > NodeId(0) && node >= NodeId(1));
    EXPECT_FALSE(node < NodeId(1) || node > NodeId(1) || node <= NodeId(0) || node >= NodeId(2));
}

TEST(OneBased, IsIndexedByTheIdOfItsEntries) {
    std::array<double, 3> values{9.0, 1.0, 2.0};
    const OneBased<double, CellId> byCell(values.data(), 2);
    byCell[CellId(2)] = 5.0;
    EXPECT_EQ(byCell[CellId(1)], 1.0);
    EXPECT_EQ(values[2], 5.0);
}

TEST(OneBasedIds, ReadsNumbersAsIds) {
    constexpr std::array<int, 3> numbers{9, 7, 8};
    const qnl::OneBasedIds<PassElement> elements(numbers.data(), 2);
    EXPECT_EQ(elements.Count(), 2);
    EXPECT_TRUE(elements[1] == PassElement(7) && elements[2] == PassElement(8));
}
