#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <type_traits>

#include "base/OneBased.h"
#include "context/FieldSlots.h"
#include "context/FrozenLayerJob.h"
#include "mesh/MeshNodes.h"

namespace qnl::input {

/// Which nodes named by a result file are stored, and where.
///
/// Classic runs store the nodes of the moulded part; corrected runs every node that the mesh knows, and
/// leave the values of runner nodes as they stand in the file.
class StoredNodes {
public:
    explicit StoredNodes(const FrozenLayerJob& job)
        : job_(job), storesRunner_(!job.m_options.Rules().carriesState) {}

    /// Labels beyond this one, or below 1, name no node of the mesh.
    NodeLabel MaxLabel() const { return NodeLabel(job_.m_nMaxLabel); }
    bool InRange(NodeLabel label) const { return label >= NodeLabel(1) && label <= MaxLabel(); }

    /// The node with this label, if the mesh has one.
    std::optional<NodeId> Known(NodeLabel label) const {
        const NodeId node = mesh::NodeOfLabel(job_, label);
        const bool known = node >= NodeId(1) && node <= NodeId(job_.m_nNodes);
        return known ? std::optional(node) : std::nullopt;
    }

    /// The node with this label, which is in range, if its values are stored.
    std::optional<NodeId> Stored(NodeLabel label) const {
        const bool stored = storesRunner_ || job_.m_pIsPartNodeTemp[label.Value()] == 1;
        return stored ? Known(label) : std::nullopt;
    }

    /// Whether the text layouts replace the values of this node: runner nodes in stage 1, and special nodes.
    bool IsCleared(NodeId node) const {
        const mesh::NodeClass nodeClass = mesh::ClassOf(job_, node);
        return !storesRunner_ && ((job_.m_nStage == 1 && nodeClass == mesh::NodeClass::Runner) ||
                                  nodeClass == mesh::NodeClass::Special);
    }

private:
    const FrozenLayerJob& job_;
    bool storesRunner_;
};

/// The node arrays that the readers fill.
struct NodeInputs {
    explicit NodeInputs(FrozenLayerJob& job) {
        const auto byNode = [nodes = job.m_nNodes](const auto& array) {
            return OneBased<typename std::decay_t<decltype(array)>::element_type, NodeId>(array.get(), nodes);
        };
        std::transform(std::begin(job.m_pNodeData), std::end(job.m_pNodeData), data.begin(), byNode);
        std::transform(std::begin(job.m_pNodeVector), std::end(job.m_pNodeVector), vector.begin(), byNode);
    }

    std::array<OneBased<double, NodeId>, kFieldSlots> data;  ///< by FieldSlot
    std::array<OneBased<float, NodeId>, 3> vector;           ///< empty when the job has no flow results
};

/// Temperature that marks a node whose own is not to be used, degC.
constexpr double kClearedTemperature = 1000.0;

/// Gas value of a node without gas, as the stage files write it and as it is stored.
constexpr double kFileNoGas = -1.0;
constexpr double kNoGas = -100.0;

inline double StoredGas(double gas) {
    return gas == kFileNoGas ? kNoGas : gas;
}

}  // namespace qnl::input
