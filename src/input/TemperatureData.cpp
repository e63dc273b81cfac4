#include "input/TemperatureData.h"

#include <string>

#include "input/CoolResults.h"
#include "input/FiberResults.h"
#include "input/FlowResults.h"
#include "input/StagePatterns.h"
#include "input/WarpResults.h"
#include "job/Messages.h"
#include "job/WindowsPath.h"

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

int LoadTemperatureData(FrozenLayerJob& job, const char* path) {
    LogLine(job, "Load Temperature Data");
    LogLine(job, path);
    if (job.m_bKernelFlag == 1) {
        return LoadForProbe(job, path);
    }
    if (job.m_bIsFlakeLightIntensity == 1) {
        ReadFiberResults(job, ReplaceExtension(path, kFibreExtension).c_str());
    }
    if (!ReadStageResults(job, path)) {
        return -1;
    }
    LogLine(job, "Read Temperature Data end");
    return 1;
}
