#pragma once

#include <memory>
#include <string>

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// The mesh of a series, which has one time, with the values of a table (ReadValueTable) in place of its own
/// point arrays; its cells keep theirs.
///
/// A column is named by its quantity and time, "temperature@0.5", "temperature@0.5s", "T@t=0.5 s" or
/// "T t=0.5s", in s; without a time it holds at all times. Three columns of names that end in _x, _y and _z,
/// or in :0, :1 and :2, are the components of one vector. Rows belong to nodes by a column "node", "label",
/// "id", "node id", "node label" or "node number" (the labels of the mesh, without these the index from 1),
/// else by columns "x", "y", "z" (or "Points:0" and so on) in the unit of the mesh: to each point belongs the
/// nearest row within kMatchTolerance of the mesh's size: the diagonal of its box, or its largest coordinate
/// where that is more. Points without a row have the
/// values "not a number"; they and rows without a point are counted in the warnings. Raises ForeignProblem.
std::unique_ptr<ForeignSeries> JoinTable(ForeignSeries& series, const std::string& file);

inline constexpr double kMatchTolerance = 1e-5;

}  // namespace qnl::interop
