#include "output/OriginOfResult.h"

#include <array>
#include <string_view>

#include "base/Text.h"
#include "base/WindowsPath.h"
#include "layout/MarkerLog.h"
#include "platform/Stages.h"

namespace qnl::output {

namespace {

constexpr int kDiagnosticLevel = 2;

std::string MarkerLogPath(const FrozenLayerJob& job) {
    return CutFileName(job.m_szLogFile.View()) + "\\" + std::string(layout::kMarkerLogName);
}

/// Only flow and pack are evaluated otherwise with a complete log.
bool DependsOnMarkerLog(const FrozenLayerJob& job) {
    return job.m_bHasFlow == 1;
}

std::string_view BaseStageFile(const FrozenLayerJob& job) {
    return job.m_szInputResult != nullptr ? job.m_szInputResult : "";
}

/// That there is a fibre result beside the base time turns the flakes on.
bool DependsOnFibreAtBase(const FrozenLayerJob& job) {
    return job.m_bHasCool != 1 && job.m_bHasIntermediateTimes == 1 &&
           Holds(BaseStageFile(job), kFlowStage.pattern);
}

bool ReadsFibre(const FrozenLayerJob& job) {
    return job.m_bIsFlakeLightIntensity == 1;
}

bool ReadsThickness(const FrozenLayerJob& job) {
    return job.m_bIsGasIn == 1;
}

bool Always(const FrozenLayerJob& /*job*/) {
    return true;
}

/// A role, the file that has it, and in which runs it counts.
struct InputRule {
    InputRole role;
    std::string (*path)(const FrozenLayerJob& job);
    bool (*counts)(const FrozenLayerJob& job);
};

constexpr std::array<InputRule, kInputRoles.size()> kInputRules{{
    {InputRole::Mesh, [](const FrozenLayerJob& job) { return std::string(job.m_szMeshFile.View()); }, Always},
    {InputRole::Material, [](const FrozenLayerJob& job) { return std::string(job.m_szMaterialFile.View()); },
     Always},
    {InputRole::RunFile, [](const FrozenLayerJob& job) { return std::string(job.m_szRunFile.View()); },
     Always},
    {InputRole::Stage, [](const FrozenLayerJob& job) { return job.m_stageFile; }, Always},
    {InputRole::MarkerLog, MarkerLogPath, DependsOnMarkerLog},
    {InputRole::FibreAtBase,
     [](const FrozenLayerJob& job) { return ReplaceExtension(BaseStageFile(job), kFibreExtension); },
     DependsOnFibreAtBase},
    {InputRole::Fibre,
     [](const FrozenLayerJob& job) { return ReplaceExtension(job.m_stageFile, kFibreExtension); },
     ReadsFibre},
    {InputRole::Thickness,
     [](const FrozenLayerJob& job) { return ReplaceExtension(job.m_szMeshFile.View(), kThicknessExtension); },
     ReadsThickness},
}};

std::string NameWithoutFolders(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

}  // namespace

ResultOrigin OriginOfResult(FrozenLayerJob& job) {
    ResultOrigin origin;
    origin.version = QNL_VERSION;
    origin.mode = static_cast<int>(job.m_options.mode);
    origin.analysisCode = job.m_nAnalysisType;
    origin.diagnostics = job.m_nLogLevel >= kDiagnosticLevel;
    for (const InputRule& rule : kInputRules) {
        if (rule.counts(job)) {
            const std::string path = rule.path(job);
            origin.inputs.push_back({rule.role, NameWithoutFolders(path), job.m_inputDigests.Of(path)});
        }
    }
    return origin;
}

}  // namespace qnl::output
