#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "context/FrozenLayerJob.h"
#include "kernel/boxes/BoxTree.h"

/// What one scripted kernel answers. A test executable that includes ScriptedKernelDefinitions.h in one
/// source file has this kernel in place of the platform's.
struct qnl::kernel::MeshKernelState {
    /// Pass elements by the rounded x of the origin.
    std::map<int, std::vector<int>> rays;
    /// Called before each ray is answered; may throw.
    std::function<void(int ray)> beforeRay;
    /// Candidates of a box by its middle; without it the boxes that were added are asked.
    std::function<std::vector<int>(double x, double y, double z)> near;
    qnl::kernel::BoxTree boxes;
    std::atomic<int> rayCalls{0};
    std::vector<std::vector<int>> slots{1};  ///< answers by slot
    std::vector<double> lastDirection = {0.0, 0.0, 0.0};
    std::vector<double> lastBox;
};

inline qnl::kernel::MeshKernelState& Script(FrozenLayerJob& job) {
    return *job.m_pOptKer->m_pState;
}

/// What all scripted kernels of a test program share.
namespace fake {

struct Kernel {
    int readStatus = 1;
    int kernelsAlive = 0;
    std::vector<std::string> calls;  ///< that read, prepare the search or set the range of the boxes
    std::vector<std::pair<const double*, int>> smoothings;  ///< the array and the number of sweeps
    std::function<void(double*)> smoothingEffect;           ///< on the array; empty: none
};

inline Kernel& TheKernel() {
    static Kernel kernel;
    return kernel;
}

}  // namespace fake
