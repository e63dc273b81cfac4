#include "profile/NodeOrder.h"

#include <algorithm>
#include <array>

#include "base/MortonOrder.h"

namespace qnl::profile {

namespace {

/// The coordinate as far as a float reaches, with room for differences.
float Narrow(double coordinate) {
    return static_cast<float>(std::clamp(coordinate, -1e37, 1e37));
}

}  // namespace

std::vector<int> NodeOrder(const FrozenLayerJob& job) {
    std::vector<std::array<float, 3>> places;
    places.reserve(static_cast<std::size_t>(job.m_nSurfaceNodes));
    for (int position = 1; position <= job.m_nSurfaceNodes; ++position) {
        const NodeRecord& node = job.p_Node[job.m_pSurfNodeList.get()[position]];
        places.push_back({Narrow(node.x), Narrow(node.y), Narrow(node.z)});
    }
    std::vector<int> order = MortonOrder(places);
    for (int& position : order) {
        ++position;
    }
    return order;
}

}  // namespace qnl::profile
