#include "profile/NodeOrder.h"

#include <algorithm>
#include <array>

#include "base/MortonOrder.h"
#include "mesh/MeshNodes.h"

namespace qnl::profile {

namespace {

/// The coordinate as far as a float reaches, with room for differences.
float Narrow(double coordinate) {
    return static_cast<float>(std::clamp(coordinate, -1e37, 1e37));
}

}  // namespace

std::vector<ListPosition> NodeOrder(const FrozenLayerJob& job) {
    std::vector<std::array<float, 3>> places;
    places.reserve(static_cast<std::size_t>(job.m_nSurfaceNodes));
    for (ListPosition position(1); position <= ListPosition(job.m_nSurfaceNodes); ++position) {
        const Vector3 place = mesh::PlaceOf(job, mesh::ListedNode(job, position));
        places.push_back({Narrow(place.x), Narrow(place.y), Narrow(place.z)});
    }
    std::vector<ListPosition> order;
    order.reserve(places.size());
    for (const int index : MortonOrder(places)) {
        order.emplace_back(index + 1);
    }
    return order;
}

}  // namespace qnl::profile
