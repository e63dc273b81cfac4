#pragma once

#include <array>
#include <cstddef>

#include "context/ProfileSlots.h"
#include "context/RunConditions.h"

namespace qnl {

/// What the results of special nodes come to before the smoothing.
enum SpecialNodes : bool { kSpecialKept = false, kSpecialCleared = true };

/// One quantity by node: its item of the result file, and its array from the making to the release. Where
/// two rows name one array, no run meets the conditions of both.
struct OutputQuantity {
    int item;  ///< number in the result file, kNoItem for none
    const char* name;
    const char* unit;
    RunCondition written;
    OwnedArray<double> FrozenLayerJob::*array;
    ProfileSlot slot;       ///< of the node's profile that it is stored from
    RunCondition computed;  ///< then the array is made, stored, cleared at special nodes and smoothed
    int making;             ///< place among the arrays made, from 1; 0 where another stage makes it
    int sweeps;             ///< over the surface
    SpecialNodes special;
    int release;  ///< place among the arrays released after the last output time; 0: lives as long as the job
};

constexpr int kNoItem = 0;
constexpr int kNoSweeps = 0;
constexpr int kShownSweeps = 2;
constexpr int kReferenceSweeps = 200;  ///< of the level that the sink marks are measured from
constexpr std::size_t kQuantityCount = 21;
constexpr std::size_t kMadeCount = 18;
constexpr std::size_t kReleasedCount = 14;
constexpr std::size_t kItemCount = 20;

/// In the order of smoothing.
inline constexpr std::array<OutputQuantity, kQuantityCount> kOutputQuantities{{
    {1, "Frozen_Ratio", "--", Always, &FrozenLayerJob::m_pFrozenRatio, kSlotFrozenRatio, Always, 1,
     kShownSweeps, kSpecialKept, 1},
    {2, "Max_Temperature", "oC", Always, &FrozenLayerJob::m_pMaxTemperature, kSlotMaxTemperature, Always, 2,
     kShownSweeps, kSpecialKept, 2},
    {3, "Center_Temperature", "oC", Always, &FrozenLayerJob::m_pCenterTemperature, kSlotCenterTemperature,
     Always, 3, kShownSweeps, kSpecialKept, 3},
    {4, "Average_Temperature", "oC", Always, &FrozenLayerJob::m_pAverageTemperature, kSlotAverageTemperature,
     Always, 4, kShownSweeps, kSpecialKept, 4},
    {5, "Bulk_Temperature", "oC", IsNotCool, &FrozenLayerJob::m_pBulkTemperature, kSlotBulkTemperature,
     IsNotCool, 8, kShownSweeps, kSpecialKept, 5},
    {6, "Skin_Ratio", "--", HasGasAndIsNotCool, &FrozenLayerJob::m_pSkinRatio, kSlotSkinRatio,
     HasGasAndIsNotCool, 9, kShownSweeps, kSpecialKept, 6},
    {9, "Skin_Thickness", "mm", HasGasAndIsNotCool, &FrozenLayerJob::m_pSkinThickness,
     kSlotSkinOrMoldDifference, HasGasAndIsNotCool, 10, kShownSweeps, kSpecialKept, 14},
    {10, "Fill_MaxCoolingTime", "oC", HasFillCoolingTimeAndIsNotCool, &FrozenLayerJob::m_pMaxCoolingTime,
     kSlotMaxCoolingTime, HasFillCoolingTimeAndIsNotCool, 7, kShownSweeps, kSpecialKept, 12},
    {20, "Flake_ColorIntensity", "--", HasFlakesAndIsNotCool, &FrozenLayerJob::m_pFlakeColorIntensity,
     kSlotFlakeIntensity, HasFlakesAndIsNotCool, 11, kShownSweeps, kSpecialCleared, 13},
    {7, "Mold_Temperature_Diff", "oC", IsCool, &FrozenLayerJob::m_pMoldTemperatureDiff,
     kSlotSkinOrMoldDifference, IsCool, 5, kShownSweeps, kSpecialKept, 7},
    {8, "Max_CoolingTime", "oC", IsCool, &FrozenLayerJob::m_pMaxCoolingTime, kSlotMaxCoolingTime, IsCool, 6,
     kShownSweeps, kSpecialKept, 11},
    {kNoItem, "", "", Never, &FrozenLayerJob::m_pSinkMarkWork, kSlotSinkDepth, HasIntermediateTimes, 12,
     kReferenceSweeps, kSpecialCleared, 8},
    {12, "SinkMarkDisplacement_Totoal", "mm", HasIntermediateTimesAndIsNotCool,
     &FrozenLayerJob::m_pSinkMarkTotal, kSlotSinkDepth, HasIntermediateTimes, 13, kShownSweeps,
     kSpecialCleared, 9},
    {11, "PackingIndex", "--", HasIntermediateTimesAndIsNotCool, &FrozenLayerJob::m_pPackingIndex,
     kSlotPackingIndex, HasIntermediateTimes, 14, kShownSweeps, kSpecialCleared, 10},
    {16, "Max_VolumeShrinkage", "%", HasFlowAndIsNotCool, &FrozenLayerJob::m_pMaxVolumeShrinkage,
     kSlotMaxVolumeShrinkage, HasFlow, 15, kShownSweeps, kSpecialCleared, 0},
    {17, "Average_Velocity_u", "cm/s", HasFlowAndIsNotCool, &FrozenLayerJob::m_pAverageVelocityU,
     kSlotAverageVelocityU, HasFlow, 16, kNoSweeps, kSpecialKept, 0},
    {18, "Average_Velocity_v", "cm/s", HasFlowAndIsNotCool, &FrozenLayerJob::m_pAverageVelocityV,
     kSlotAverageVelocityV, HasFlow, 17, kNoSweeps, kSpecialKept, 0},
    {19, "Average_Velocity_w", "cm/s", HasFlowAndIsNotCool, &FrozenLayerJob::m_pAverageVelocityW,
     kSlotAverageVelocityW, HasFlow, 18, kNoSweeps, kSpecialKept, 0},

    // The normals, once they hold the sink vectors.
    {13, "SinkMarkDisplacement_u", "mm", HasIntermediateTimesAndIsNotCool, &FrozenLayerJob::m_pNormalX,
     kNoSlot, Never, 0, kNoSweeps, kSpecialKept, 0},
    {14, "SinkMarkDisplacement_v", "mm", HasIntermediateTimesAndIsNotCool, &FrozenLayerJob::m_pNormalY,
     kNoSlot, Never, 0, kNoSweeps, kSpecialKept, 0},
    {15, "SinkMarkDisplacement_w", "mm", HasIntermediateTimesAndIsNotCool, &FrozenLayerJob::m_pNormalZ,
     kNoSlot, Never, 0, kNoSweeps, kSpecialKept, 0},
}};

constexpr int MakingPlace(const OutputQuantity& quantity) {
    return quantity.making;
}
constexpr int ReleasePlace(const OutputQuantity& quantity) {
    return quantity.release;
}
constexpr int ItemPlace(const OutputQuantity& quantity) {
    return quantity.item;
}

/// Rows of the table by a place that they have from 1 to `Count`; rows of place 0 are left out.
template <std::size_t Count>
constexpr std::array<std::size_t, Count> RowsByPlace(int (*place)(const OutputQuantity&)) {
    std::array<std::size_t, Count> rows{};
    for (std::size_t row = 0; row < kQuantityCount; ++row) {
        if (const int at = place(kOutputQuantities[row]); at > 0) {
            rows[static_cast<std::size_t>(at) - 1] = row;
        }
    }
    return rows;
}

/// True when every place from 1 to `count` is that of one row, and no row has another.
constexpr bool PlacesAreWhole(int (*place)(const OutputQuantity&), std::size_t count) {
    std::size_t placed = 0;
    for (const OutputQuantity& quantity : kOutputQuantities) {
        placed += place(quantity) == 0 ? 0 : 1;
        for (const OutputQuantity& other : kOutputQuantities) {
            if (&other != &quantity && place(quantity) != 0 && place(other) == place(quantity)) {
                return false;
            }
        }
        if (place(quantity) < 0 || place(quantity) > static_cast<int>(count)) {
            return false;
        }
    }
    return placed == count;
}
static_assert(PlacesAreWhole(MakingPlace, kMadeCount));
static_assert(PlacesAreWhole(ReleasePlace, kReleasedCount));
static_assert(PlacesAreWhole(ItemPlace, kItemCount));

inline constexpr auto kMakingOrder = RowsByPlace<kMadeCount>(MakingPlace);
inline constexpr auto kReleaseOrder = RowsByPlace<kReleasedCount>(ReleasePlace);
inline constexpr auto kItemOrder = RowsByPlace<kItemCount>(ItemPlace);

/// The quantity of an item; `id` is 1 to kItemCount.
constexpr const OutputQuantity& QuantityOfItem(int id) {
    return kOutputQuantities[kItemOrder[static_cast<std::size_t>(id) - 1]];
}

}  // namespace qnl
