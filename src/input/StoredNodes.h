#pragma once

#include <cstddef>

#include "base/OneBased.h"
#include "context/FieldSlots.h"
#include "context/FrozenLayerJob.h"

namespace qnl::input {

/// Which nodes named by a result file are stored, and where.
///
/// Classic runs store the nodes of the moulded part; corrected runs every node that the mesh knows, and
/// leave the values of runner nodes as they stand in the file.
class StoredNodes {
public:
    explicit StoredNodes(const FrozenLayerJob& job)
        : isPart_(job.m_pIsPartNodeTemp),
          toLocal_(job.m_pNodeGlobalIdToLocal),
          runnerClass_(job.m_pNotRunnerNode),
          nodes_(job.p_Node),
          maxLabel_(job.m_nMaxLabel),
          nodeCount_(job.m_nNodes),
          stageIsOne_(job.m_nStage == 1),
          storesRunner_(!job.m_options.Rules().carriesState) {}

    /// Labels beyond this one, or below 1, name no node of the mesh.
    int MaxLabel() const { return maxLabel_; }
    bool InRange(int label) const { return label >= 1 && label <= maxLabel_; }

    /// Index of the node with this label; 0 where there is none.
    int Known(int label) const {
        const int local = InRange(label) ? toLocal_[label] : 0;
        return local >= 1 && local <= nodeCount_ ? local : 0;
    }

    /// Index of the node with this label; 0 when its values are not stored.
    int Stored(int label) const {
        const int local = Known(label);
        return local != 0 && (storesRunner_ || isPart_[label] == 1) ? local : 0;
    }

    /// Whether the text layouts replace the values of this node (an index): runner nodes in stage 1, and
    /// special nodes.
    bool IsCleared(int local) const {
        const int nodeClass = runnerClass_[nodes_[local].label];
        return !storesRunner_ && ((stageIsOne_ && nodeClass == 0) || nodeClass == -1);
    }

private:
    const int* isPart_;
    const int* toLocal_;
    const int* runnerClass_;
    const NodeRecord* nodes_;
    int maxLabel_;
    int nodeCount_;
    bool stageIsOne_;
    bool storesRunner_;
};

/// The node arrays that the readers fill.
struct NodeInputs {
    explicit NodeInputs(FrozenLayerJob& job) {
        for (std::size_t slot = 0; slot < kFieldSlots; ++slot) {
            data[slot] = {job.m_pNodeData[slot].get(), job.m_nNodes};
        }
        for (std::size_t k = 0; k < 3; ++k) {
            vector[k] = {job.m_pNodeVector[k].get(), job.m_nNodes};
        }
    }

    OneBased<double> data[kFieldSlots];  ///< by FieldSlot
    OneBased<float> vector[3];           ///< empty when the job has no flow results
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
