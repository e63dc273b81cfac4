#pragma once

namespace qnl {

/// Places of the quantities in a NodeProfileResult.
enum ProfileSlot : int {
    kNoSlot = -1,
    kSlotFrozenRatio = 0,           ///< percent; in warp runs the shrinkage-location indicator
    kSlotMaxTemperature = 1,        ///< degC
    kSlotCenterTemperature = 2,     ///< degC
    kSlotAverageTemperature = 3,    ///< degC
    kSlotBulkTemperature = 4,       ///< degC
    kSlotSkinRatio = 5,             ///< percent
    kSlotSkinOrMoldDifference = 6,  ///< skin thickness, mm; in cool runs the difference between the walls, K
    kSlotMaxCoolingTime = 7,        ///< s
    kSlotShrinkLocation = 8,        ///< 0.3 or 0
    kSlotPackingIndex = 9,          ///< 1
    kSlotSinkDepth = 10,            ///< mm
    kSlotMaxVolumeShrinkage = 11,   ///< percent
    kSlotAverageVelocityU = 12,     ///< cm/s
    kSlotAverageVelocityV = 13,     ///< cm/s
    kSlotAverageVelocityW = 14,     ///< cm/s
    kSlotFlakeIntensity = 15,       ///< 1
};

constexpr int kProfileSlots = 16;

}  // namespace qnl
