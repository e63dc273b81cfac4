#pragma once

namespace qnl::profile {

/// Fields of m_pNodeData, and of its averages m_pSurfData and m_pCellData.
enum FieldSlot : int { kTemperature, kVolumeShrinkage, kGasMarker, kSpeed, kCoolingTime, kDensity };

}  // namespace qnl::profile
