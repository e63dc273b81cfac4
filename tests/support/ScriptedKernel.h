#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <vector>

#include "context/FrozenLayerJob.h"

/// What the scripted kernel answers. A test executable that includes scripted_kernel_definitions.h in one
/// source file has this kernel in place of the platform's.
struct qnl::kernel::MeshKernelState {
    /// Pass elements by the rounded x of the origin.
    std::map<int, std::vector<int>> rays;
    /// Called before each ray is answered; may throw.
    std::function<void(int ray)> beforeRay;
    /// Candidates of a box by its middle.
    std::function<std::vector<int>(double x, double y, double z)> near;
    std::atomic<int> rayCalls{0};
    std::vector<std::vector<int>> slots;  ///< answers by slot
    std::vector<double> lastDirection = {0.0, 0.0, 0.0};
    std::vector<double> lastBox;
};

inline qnl::kernel::MeshKernelState& Script(FrozenLayerJob& job) {
    return *job.m_pOptKer->m_pState;
}
