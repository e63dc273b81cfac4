#include "series/WallDepth.h"

#include <algorithm>

#include "mesh/MeshNodes.h"
#include "profile/JobViews.h"
#include "profile/search/PassElementSearch.h"
#include "series/InwardNormals.h"

namespace qnl::series {

double DepthSpan(const profile::PassElementMesh& mesh, const profile::FoundElements& found,
                 const Vector3& inward) {
    if (found.count < 1) {
        return 0.0;
    }
    const profile::RayDepth depthOf(mesh, inward);
    double first = depthOf(PassElement(found.numbers[0]));
    double last = first;
    for (int k = 1; k < found.count; ++k) {
        const double depth = depthOf(PassElement(found.numbers[k]));
        first = std::min(first, depth);
        last = std::max(last, depth);
    }
    return last - first;
}

DeepWalls CountDeepWalls(const FrozenLayerJob& job) {
    DeepWalls walls;
    walls.window = profile::DepthWindowOf(job);
    if (!job.m_pNodeSearchResults || !job.m_pSurfNodeList) {
        return walls;
    }
    const InwardNormals normals(job);
    const profile::PassElementMesh entities = profile::MeshOf(job);
    for (ListPosition i(1); i <= ListPosition(job.m_nSurfaceNodes); ++i) {
        const profile::FoundElements found = profile::FoundOf(profile::SearchRecords(job)[i]);
        const NodeId node = mesh::ListedNode(job, i);
        Vector3 inward = normals.Of(node);
        if (found.count < 2 || !mesh::IsPartNode(job, node) || !Normalise(inward)) {
            continue;
        }
        ++walls.nodes;
        walls.deep += DepthSpan(entities, found, inward) > walls.window ? 1 : 0;
    }
    return walls;
}

}  // namespace qnl::series
