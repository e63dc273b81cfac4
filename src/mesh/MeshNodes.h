#pragma once

#include "base/Id.h"
#include "base/Vector3.h"
#include "context/FrozenLayerJob.h"

namespace qnl::mesh {

/// The nodes of the job's mesh. Node 0 stands for a node that the mesh does not have: its record is all zero.

inline const NodeRecord& RecordOf(const FrozenLayerJob& job, NodeId node) {
    return job.p_Node[node.Value()];
}

inline Vector3 PlaceOf(const FrozenLayerJob& job, NodeId node) {
    const NodeRecord& record = RecordOf(job, node);
    return {record.x, record.y, record.z};
}

inline NodeLabel LabelOf(const FrozenLayerJob& job, NodeId node) {
    return NodeLabel(RecordOf(job, node).label);
}

/// Node 0 when the mesh has no node with this label.
inline NodeId NodeOfLabel(const FrozenLayerJob& job, NodeLabel label) {
    const bool known = label >= NodeLabel(1) && label <= NodeLabel(job.m_nMaxLabel);
    return NodeId(known ? job.m_pNodeGlobalIdToLocal[label.Value()] : 0);
}

/// What a node belongs to, by the numbers of the mesh kernel: the moulded part, the runner, or what is
/// neither and has its results cleared.
enum class NodeClass : int { Special = -1, Runner = 0, Part = 1 };

inline NodeClass ClassOf(const FrozenLayerJob& job, NodeId node) {
    return static_cast<NodeClass>(job.m_pNotRunnerNode[LabelOf(job, node).Value()]);
}

inline bool IsPartNode(const FrozenLayerJob& job, NodeId node) {
    return ClassOf(job, node) == NodeClass::Part;
}

/// The job's surface normal, turned inwards; of length 1 or, where a node has none, 0.
inline Vector3 InwardNormal(const FrozenLayerJob& job, NodeId node) {
    const int n = node.Value();
    return {-job.m_pNormalX[n], -job.m_pNormalY[n], -job.m_pNormalZ[n]};
}

/// The node at a position of the surface-node list.
inline NodeId ListedNode(const FrozenLayerJob& job, ListPosition position) {
    return NodeId(job.m_pSurfNodeList[position.Value()]);
}

}  // namespace qnl::mesh
