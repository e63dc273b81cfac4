#pragma once

#include <array>
#include <string_view>

#include "platform/QNLResultType.h"

namespace qnl {

/// Layouts of the result files that the evaluation reads; a pack result is laid out as a flow result.
enum class StageKind { Flow, Cool, Warp, Fibre, Thickness };

/// A stage of analysis, told by a pattern anywhere in the path of its result file.
struct Stage {
    std::string_view pattern;          ///< the extension of its result files
    std::string_view resultExtension;  ///< that of the frozen-layer result made from them
    const char* title;
    StageKind kind;
};

inline constexpr Stage kFlowStage{".k4f", ".fzr", "flow", StageKind::Flow};
inline constexpr Stage kPackStage{".k4p", ".pzr", "pack", StageKind::Flow};
inline constexpr Stage kCoolStage{".k4c", ".czr", "cool", StageKind::Cool};
inline constexpr Stage kHeatingCoolingStage{".k4hc", ".hczr", "heating-cooling", StageKind::Cool};
inline constexpr Stage kWarpStage{".k4w", ".wzr", "warp", StageKind::Warp};

/// In the order in which the patterns are tested.
inline constexpr std::array<Stage, 5> kStages{
    {kFlowStage, kPackStage, kCoolStage, kHeatingCoolingStage, kWarpStage}};

/// Files beside those of a stage; no frozen-layer result is made from them.
inline constexpr std::string_view kFibreExtension = ".k4o";
inline constexpr std::string_view kThicknessExtension = ".thk";

/// The stage whose files have this extension; null for another one.
constexpr const Stage* FindStage(std::string_view extension) {
    for (const Stage& stage : kStages) {
        if (stage.pattern == extension) {
            return &stage;
        }
    }
    return nullptr;
}

/// True when a stage pattern, or the extension of fibre results, is found anywhere in the path.
constexpr bool NamesStageResult(std::string_view path) {
    for (const Stage& stage : kStages) {
        if (path.rfind(stage.pattern) != std::string_view::npos) {
            return true;
        }
    }
    return path.rfind(kFibreExtension) != std::string_view::npos;
}

enum FlowItem : int {
    kFlowTemperature = 6,
    kFlowGas = 9,
    kFlowVelocityU = 11,
    kFlowVelocityV = 12,
    kFlowVelocityW = 13,
    kFlowShrinkage = 14,
    kFlowCoolingTime = 16,
    kFlowDensity = 17,
};

enum CoolItem : int { kCoolTemperature = 1, kCoolCoolingTime = 2, kCoolGas = 16 };

enum WarpItem : int {
    kWarpDisplacementX = 1,
    kWarpDisplacementY = 2,
    kWarpDisplacementZ = 3,
    kWarpShrinkage = 7,
};

enum FibreItem : int {
    kFibreXX = 4,
    kFibreYY = 5,
    kFibreZZ = 6,
    kFibreXY = 9,
    kFibreYZ = 10,
    kFibreXZ = 11,
};

enum ThicknessItem : int { kThicknessAlongRay = 1, kThicknessAround = 2 };

/// One item of a stage: its number, name, unit (empty for none) and what it has an entry for.
struct StageItem {
    StageKind stage;
    int id;
    const char* name;
    const char* unit;
    QNLRESULTTYPE type;
};

/// Whether a result says nothing without this item.
constexpr bool IsNeeded(StageKind stage, int id) {
    switch (stage) {
        case StageKind::Flow:
            return id == kFlowTemperature;
        case StageKind::Cool:
            return id == kCoolTemperature;
        case StageKind::Thickness:
            return id == kThicknessAlongRay;
        case StageKind::Warp:
        case StageKind::Fibre:
            return true;
    }
    return false;
}

/// Every item that the evaluation knows, by stage, then ascending number.
inline constexpr StageItem kStageItems[] = {
    {StageKind::Flow, kFlowTemperature, "Temperature", "\u00b0C", QNLRESULT_NODE},
    {StageKind::Flow, kFlowGas, "Gas", "", QNLRESULT_NODE},
    {StageKind::Flow, kFlowVelocityU, "Velocity_u", "cm/s", QNLRESULT_NODE},
    {StageKind::Flow, kFlowVelocityV, "Velocity_v", "cm/s", QNLRESULT_NODE},
    {StageKind::Flow, kFlowVelocityW, "Velocity_w", "cm/s", QNLRESULT_NODE},
    {StageKind::Flow, kFlowShrinkage, "Volume_Shrinkage", "%", QNLRESULT_NODE},
    {StageKind::Flow, kFlowCoolingTime, "Cooling_Time", "s", QNLRESULT_NODE},
    {StageKind::Flow, kFlowDensity, "Density", "g/cm\u00b3", QNLRESULT_NODE},
    {StageKind::Cool, kCoolTemperature, "Temperature", "\u00b0C", QNLRESULT_NODE},
    {StageKind::Cool, kCoolCoolingTime, "Cooling_Time", "s", QNLRESULT_NODE},
    {StageKind::Cool, kCoolGas, "Gas", "", QNLRESULT_NODE},
    {StageKind::Warp, kWarpDisplacementX, "Displacement_x", "mm", QNLRESULT_NODE},
    {StageKind::Warp, kWarpDisplacementY, "Displacement_y", "mm", QNLRESULT_NODE},
    {StageKind::Warp, kWarpDisplacementZ, "Displacement_z", "mm", QNLRESULT_NODE},
    {StageKind::Warp, kWarpShrinkage, "Volume_Shrinkage", "%", QNLRESULT_NODE},
    {StageKind::Fibre, kFibreXX, "Axx", "", QNLRESULT_ELEMENT},
    {StageKind::Fibre, kFibreYY, "Ayy", "", QNLRESULT_ELEMENT},
    {StageKind::Fibre, kFibreZZ, "Azz", "", QNLRESULT_ELEMENT},
    {StageKind::Fibre, kFibreXY, "Axy", "", QNLRESULT_ELEMENT},
    {StageKind::Fibre, kFibreYZ, "Ayz", "", QNLRESULT_ELEMENT},
    {StageKind::Fibre, kFibreXZ, "Axz", "", QNLRESULT_ELEMENT},
    {StageKind::Thickness, kThicknessAlongRay, "Thickness", "mm", QNLRESULT_NODE},
    {StageKind::Thickness, kThicknessAround, "Thickness_Around", "mm", QNLRESULT_NODE},
};

/// The entry of a stage's item; null for one that the evaluation does not know.
constexpr const StageItem* FindStageItem(StageKind stage, int id) {
    for (const StageItem& item : kStageItems) {
        if (item.stage == stage && item.id == id) {
            return &item;
        }
    }
    return nullptr;
}

/// What the launcher's analysis code says of a run.
struct AnalysisCode {
    int code;
    bool hasIntermediateTimes;  ///< of the flow stage
    bool mayHaveGas;
    bool polymerAlone;  ///< with gas: frozen ratio of the polymer, packing index up to the gas
};

inline constexpr AnalysisCode kAnalysisCodes[] = {
    {1, true, true, true}, {4, true, false, true}, {6, true, true, true},
    {7, true, true, true}, {8, true, true, false}, {9, true, false, true},
};

/// Codes that the table does not hold have neither intermediate times nor gas of their own.
constexpr AnalysisCode FindAnalysisCode(int code) {
    for (const AnalysisCode& known : kAnalysisCodes) {
        if (known.code == code) {
            return known;
        }
    }
    return {code, false, false, true};
}

}  // namespace qnl
