#pragma once

#include <array>
#include <cstddef>

namespace qnl::profile {

/// Places of the quantities in a NodeProfileResult.
enum ProfileSlot : int {
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

}  // namespace qnl::profile

/// What one evaluation of one surface node gives; all zero at first.
struct NodeProfileResult {
    std::array<double, qnl::profile::kProfileSlots> values{};

    double& operator[](qnl::profile::ProfileSlot slot) { return values[static_cast<std::size_t>(slot)]; }
    double operator[](qnl::profile::ProfileSlot slot) const { return values[static_cast<std::size_t>(slot)]; }
};

static_assert(sizeof(NodeProfileResult) == qnl::profile::kProfileSlots * sizeof(double));
