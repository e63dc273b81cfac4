#pragma once

#include "results/ResultFile.h"

namespace qnl::results {

/// The kinds of result files that the evaluation reads; a pack result is laid out as a flow result.
enum class StageKind { Flow, Cool, Warp, Fibre, Thickness };

/// One item of a stage: its number, name, unit (empty for none) and data type.
struct StageItem {
    StageKind stage;
    int id;
    const char* name;
    const char* unit;
    int dataType;
};

/// Every item that the evaluation knows, by stage, then ascending number.
inline constexpr StageItem kStageItems[] = {
    {StageKind::Flow, 6, "Temperature", "\u00b0C", kNodeData},
    {StageKind::Flow, 9, "Gas", "", kNodeData},
    {StageKind::Flow, 11, "Velocity_u", "cm/s", kNodeData},
    {StageKind::Flow, 12, "Velocity_v", "cm/s", kNodeData},
    {StageKind::Flow, 13, "Velocity_w", "cm/s", kNodeData},
    {StageKind::Flow, 14, "Volume_Shrinkage", "%", kNodeData},
    {StageKind::Flow, 16, "Cooling_Time", "s", kNodeData},
    {StageKind::Flow, 17, "Density", "g/cm\u00b3", kNodeData},
    {StageKind::Cool, 1, "Temperature", "\u00b0C", kNodeData},
    {StageKind::Cool, 2, "Cooling_Time", "s", kNodeData},
    {StageKind::Cool, 16, "Gas", "", kNodeData},
    {StageKind::Warp, 1, "Displacement_x", "mm", kNodeData},
    {StageKind::Warp, 2, "Displacement_y", "mm", kNodeData},
    {StageKind::Warp, 3, "Displacement_z", "mm", kNodeData},
    {StageKind::Warp, 7, "Volume_Shrinkage", "%", kNodeData},
    {StageKind::Fibre, 4, "Axx", "", kElementData},
    {StageKind::Fibre, 5, "Ayy", "", kElementData},
    {StageKind::Fibre, 6, "Azz", "", kElementData},
    {StageKind::Fibre, 9, "Axy", "", kElementData},
    {StageKind::Fibre, 10, "Ayz", "", kElementData},
    {StageKind::Fibre, 11, "Axz", "", kElementData},
    {StageKind::Thickness, 1, "Thickness", "mm", kNodeData},
    {StageKind::Thickness, 2, "Thickness_Around", "mm", kNodeData},
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

/// An item of a stage with its table's name, unit and type; the stage must know the number.
ResultItem MakeStageItem(StageKind stage, int id, std::vector<float> values);

}  // namespace qnl::results
