#include "input/StoredNodes.h"

#include <gtest/gtest.h>

#include "unit/input/InputFixture.h"

namespace {

using qnl::NodeId;
using qnl::NodeLabel;
using qnl::input::NodeInputs;
using qnl::input::StoredNodes;

// Labels and nodes do not stand for each other.
static_assert(std::is_invocable_v<decltype(&StoredNodes::Stored), StoredNodes, NodeLabel>);
static_assert(!std::is_invocable_v<decltype(&StoredNodes::Stored), StoredNodes, NodeId>);
static_assert(!std::is_invocable_v<decltype(&StoredNodes::Known), StoredNodes, int>);
static_assert(!std::is_invocable_v<decltype(&StoredNodes::IsCleared), StoredNodes, NodeLabel>);

class StoredNodesTest : public InputTest {};

TEST_F(StoredNodesTest, LabelsOfTheMeshAreInRange) {
    const StoredNodes nodes(job_);
    EXPECT_FALSE(nodes.InRange(NodeLabel(0)));
    EXPECT_TRUE(nodes.InRange(NodeLabel(1)));
    EXPECT_TRUE(nodes.InRange(NodeLabel(17)));
    EXPECT_FALSE(nodes.InRange(NodeLabel(18)));
}

TEST_F(StoredNodesTest, OnlyNodesOfTheMeshAreKnown) {
    const StoredNodes nodes(job_);
    EXPECT_EQ(nodes.Known(NodeLabel(17)), NodeId(5));
    EXPECT_EQ(nodes.Known(NodeLabel(4)), std::nullopt);
    EXPECT_EQ(nodes.Known(NodeLabel(18)), std::nullopt);
    toLocal_[4] = 6;
    EXPECT_EQ(nodes.Known(NodeLabel(4)), std::nullopt) << "there are five nodes";
    toLocal_[4] = -1;
    EXPECT_EQ(nodes.Known(NodeLabel(4)), std::nullopt);
}

TEST_F(StoredNodesTest, InputsAreTheArraysOfTheJob) {
    job_.m_bHasFlow = 1;
    MakeStorage();
    const NodeInputs inputs(job_);
    for (std::size_t slot = 0; slot < qnl::kFieldSlots; ++slot) {
        EXPECT_EQ(&inputs.data[slot][NodeId(5)], job_.m_pNodeData[slot].get() + 5);
    }
    EXPECT_EQ(&inputs.vector[2][NodeId(5)], job_.m_pNodeVector[2].get() + 5);
    EXPECT_EQ(inputs.data[0].Count(), 5);
}

}  // namespace
