#include "profile/NodeOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "platform/CQNLOptKer.h"

namespace {

constexpr int kSide = 8;
constexpr int kNodes = kSide * kSide * kSide;

/// The nodes of a grid with spacing 1, in the mesh by x, y, z, in the surface-node list at random.
struct ShuffledGrid {
    ShuffledGrid() : nodes(kNodes + 1) {
        for (int i = 0; i < kNodes; ++i) {
            NodeRecord& node = nodes[static_cast<std::size_t>(i) + 1];
            node.x = i % kSide;
            node.y = i / kSide % kSide;
            node.z = i / kSide / kSide;
        }
        job.m_nNodes = kNodes;
        job.p_Node = nodes.data();
        job.m_nSurfaceNodes = kNodes;
        job.m_pSurfNodeList = std::make_unique<int[]>(kNodes + 1);
        int* first = job.m_pSurfNodeList.get() + 1;
        std::iota(first, first + kNodes, 1);
        std::shuffle(first, first + kNodes, std::mt19937(7));
    }

    const NodeRecord& At(qnl::ListPosition position) const {
        return job.p_Node[job.m_pSurfNodeList[position.Value()]];
    }

    /// Mean distance of nodes that follow each other.
    double MeanStep(const std::vector<qnl::ListPosition>& order) const {
        double sum = 0.0;
        for (std::size_t i = 1; i < order.size(); ++i) {
            const NodeRecord& a = At(order[i - 1]);
            const NodeRecord& b = At(order[i]);
            sum += std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
        }
        return sum / static_cast<double>(order.size() - 1);
    }

    std::vector<NodeRecord> nodes;
    FrozenLayerJob job;
};

std::vector<qnl::ListPosition> PositionsInTurn(int count) {
    std::vector<qnl::ListPosition> positions(static_cast<std::size_t>(count));
    std::iota(positions.begin(), positions.end(), qnl::ListPosition(1));
    return positions;
}

TEST(NodeOrder, EveryPositionStandsInItOnce) {
    const ShuffledGrid grid;
    std::vector<qnl::ListPosition> order = qnl::profile::NodeOrder(grid.job);
    std::sort(order.begin(), order.end());
    EXPECT_EQ(order, PositionsInTurn(kNodes));
}

TEST(NodeOrder, NodesThatFollowEachOtherAreNear) {
    const ShuffledGrid grid;
    const std::vector<qnl::ListPosition> order = qnl::profile::NodeOrder(grid.job);
    EXPECT_GT(grid.MeanStep(PositionsInTurn(kNodes)), 4.0);
    EXPECT_LT(grid.MeanStep(order), 1.7);
    // The first eight are the corners of one cube of the grid.
    for (std::size_t i = 0; i < 8; ++i) {
        const NodeRecord& node = grid.At(order[i]);
        EXPECT_LE(std::max({node.x, node.y, node.z}), 1.0) << i;
    }
}

TEST(NodeOrder, NodesOutsideTheListHaveNoPlace) {
    ShuffledGrid grid;
    grid.job.m_nSurfaceNodes = 3;
    std::vector<qnl::ListPosition> order = qnl::profile::NodeOrder(grid.job);
    std::sort(order.begin(), order.end());
    EXPECT_EQ(order, PositionsInTurn(3));
    grid.job.m_nSurfaceNodes = 0;
    EXPECT_TRUE(qnl::profile::NodeOrder(grid.job).empty());
}

TEST(NodeOrder, PlacesBeyondTheReachOfAFloatAreOne) {
    ShuffledGrid grid;
    grid.job.m_nSurfaceNodes = 3;
    const auto placed = [&grid](double first, double second) {
        const double places[] = {first, second, 0.0};
        for (int i = 0; i < 3; ++i) {
            grid.nodes[static_cast<std::size_t>(i) + 1] = {places[i], 0.0, 0.0, 0, 0};
            grid.job.m_pSurfNodeList[i + 1] = i + 1;
        }
        std::vector<int> order;
        for (const qnl::ListPosition position : qnl::profile::NodeOrder(grid.job)) {
            order.push_back(position.Value());
        }
        return order;
    };
    EXPECT_EQ(placed(1.09e37, 1.02e37), (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(placed(-1.02e37, -1.09e37), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(placed(0.9e37, 0.5e37), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(placed(1e300, -1e300), (std::vector<int>{2, 3, 1}));
}

}  // namespace
