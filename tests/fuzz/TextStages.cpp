// The ASCII stage layouts: any bytes must end in 1 or -1, within the arrays of a job of ten nodes.

#include <array>
#include <numeric>

#include "InputFile.h"
#include "context/FrozenLayerJob.h"
#include "input/CoolResults.h"
#include "input/FlowResults.h"
#include "input/WarpResults.h"
#include "platform/Faults.h"

namespace {

constexpr int kNodes = 10;

struct SmallJob {
    SmallJob() {
        for (int i = 0; i <= kNodes; ++i) {
            nodes[static_cast<std::size_t>(i)] = {0.0, 0.0, 0.0, i, 0};
        }
        std::iota(toLocal.begin(), toLocal.end(), 0);
        job.m_nNodes = kNodes;
        job.m_nMaxLabel = kNodes;
        job.p_Node = nodes.data();
        job.m_pIsPartNodeTemp = ones.data();
        job.m_pNotRunnerNode = ones.data();
        job.m_pNodeGlobalIdToLocal = toLocal.data();
        job.m_bHasFlow = 1;
        for (auto& array : job.m_pNodeData) {
            array = std::make_unique<double[]>(kNodes + 1);
        }
        for (auto& array : job.m_pNodeVector) {
            array = std::make_unique<float[]>(kNodes + 1);
        }
    }

    std::array<NodeRecord, kNodes + 1> nodes{};
    std::array<int, kNodes + 1> ones{0, 1, 1, 1, 1, 1, 1, 1, 1, 1, -1};
    std::array<int, kNodes + 1> toLocal{};
    FrozenLayerJob job;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".txt");
    const std::string& path = file.Write(bytes, count);
    SmallJob small;
    for (const bool completeLog : {false, true}) {
        small.job.m_bHasIntermediateTimes = completeLog ? 1 : 0;
        ReadFlowResultsAscii(small.job, path.c_str());
        ReadCoolResultsAscii(small.job, path.c_str());
        ReadWarpResultsAscii(small.job, path.c_str());
    }
    qnl::TakeFaults();
    return 0;
}
