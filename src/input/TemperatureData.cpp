#include "input/TemperatureData.h"

#include <string>

#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "input/CoolResults.h"
#include "input/FiberResults.h"
#include "input/FlowResults.h"
#include "input/WarpResults.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

int LoadForProbe(FrozenLayerJob& job, const char* path) {
    job.m_szResultFile.Set(std::string(job.m_szResultFile.View()) + ".csv");
    return ReadFiberResults(job, path) == 1 ? 1 : -1;
}

bool ReadStageResults(FrozenLayerJob& job, const char* path) {
    if (job.m_bHasCool == 1) {
        if (ReadCoolResults(job, path) != 1) {
            return false;
        }
    } else if (job.m_bHasWarp != 1 && ReadFlowResults(job, path) != 1) {
        return false;
    }
    return job.m_bHasWarp != 1 || ReadWarpResults(job, path) == 1;
}

}  // namespace

}  // namespace qnl::input

int LoadTemperatureData(FrozenLayerJob& job, const char* path) {
    qnl::LogLine(job, "Load Temperature Data");
    qnl::LogLine(job, path);
    if (job.m_bKernelFlag == 1) {
        return qnl::input::LoadForProbe(job, path);
    }
    if (job.m_bIsFlakeLightIntensity == 1) {
        ReadFiberResults(job, qnl::ReplaceExtension(path, qnl::kFibreExtension).c_str());
    }
    if (!qnl::input::ReadStageResults(job, path)) {
        return -1;
    }
    qnl::LogLine(job, "Read Temperature Data end");
    return 1;
}
