#pragma once

#include <array>

#include "base/OneBased.h"
#include "base/Vector3.h"
#include "mesh/PassElementNumbering.h"

namespace qnl::profile {

/// Orientation tensor by cell, components xx, yy, zz, xy, xz, yz.
using TensorField = std::array<OneBased<const double, CellId>, 6>;

}  // namespace qnl::profile

/// Colour intensity of flakes seen along the unit direction d: d·A·d with A the orientation tensor
/// averaged over the outer layer. The layer is made of the cells from the first one on, down to the first
/// at half the depth of the last cell that lies less than t below the first element; each counts with its
/// distance from the one before. 0 when the profile has no cell.
///
/// `depths` (mm, ascending) and `elements` have the same count, at least 1; faces are passed over.
double CalcuFlakeIntensity(qnl::OneBased<const double> depths, qnl::OneBasedIds<qnl::PassElement> elements,
                           qnl::mesh::PassElementNumbering numbering, const qnl::profile::TensorField& tensor,
                           const qnl::Vector3& d, double t);
