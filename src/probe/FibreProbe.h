#pragma once

#include "base/Id.h"
#include "base/Vector3.h"
#include "context/FrozenLayerJob.h"

namespace qnl::probe {

/// Prints the orientation tensor along the inward normal of chosen nodes to standard output and to the CSV
/// file m_szResultFile. The labels of the nodes come from the file of the same name with
/// "_IdForFiber.txt" in place of the extension, or from standard input when there is no such file.
///
/// Sets m_bSearchDone to -1. Gives 1, or -1 when the CSV file cannot be created. Raises std::out_of_range
/// when m_szResultFile has no extension.
int RunFibreProbe(FrozenLayerJob& job);

/// Follows the ray from `start`, mm, along `direction`, of any length, and writes the tensor of the cells met
/// at 101 equally spaced heights. Gives 1, also when fewer than two elements are passed and nothing is
/// written; -1 for a direction shorter than 1e-20 or a CSV file that cannot be opened.
int ProbeAlongRay(FrozenLayerJob& job, const Vector3& start, const Vector3& direction);

/// What LocateElement gives where there is nothing.
constexpr PassElement kNoElement{-1};

/// Pass element whose reference point is nearest to the point, of the elements whose boxes come within
/// 0.0001 mm of it; kNoElement when there is none. Faces are not measured: one listed before any cell wins,
/// one listed after a cell never does.
PassElement LocateElement(const FrozenLayerJob& job, const Vector3& point);

}  // namespace qnl::probe
