#include "profile/NodeOrder.h"

#include <array>

#include "mesh/MortonOrder.h"

std::vector<int> NodeOrder(const FrozenLayerJob& job) {
    std::vector<std::array<float, 3>> places;
    places.reserve(static_cast<std::size_t>(job.m_nSurfaceNodes));
    for (int position = 1; position <= job.m_nSurfaceNodes; ++position) {
        const NodeRecord& node = job.p_Node[job.m_pSurfNodeList.get()[position]];
        places.push_back(
            {static_cast<float>(node.x), static_cast<float>(node.y), static_cast<float>(node.z)});
    }
    std::vector<int> order = qnl::MortonOrder(places);
    for (int& position : order) {
        ++position;
    }
    return order;
}
