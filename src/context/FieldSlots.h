#pragma once

namespace qnl {

/// Slots of m_pNodeData, and of its averages m_pSurfData and m_pCellData.
enum FieldSlot : int {
    kTemperature,      ///< degC
    kVolumeShrinkage,  ///< percent
    kGasMarker,        ///< above 0.1 gas, below -0.1 polymer
    kSpeed,            ///< cm/s, at least 1e-8; weight of the bulk temperature
    kCoolingTime,      ///< s
    kDensity,          ///< g/cm3
};

constexpr int kFieldSlots = 6;
static_assert(kDensity + 1 == kFieldSlots);

}  // namespace qnl
