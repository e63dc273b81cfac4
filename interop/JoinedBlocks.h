#pragma once

#include "interop/ForeignSeries.h"

namespace qnl::interop {

/// Joins the named blocks of which a snapshot has cells left: points of equal coordinates become one, with
/// the values of the first, points of no cell go, and so do the boundaries of blocks without cells. Before it
/// the blocks share no points, so that what is left of one has its own values where it touches another.
/// A snapshot without named blocks stays as it is, as does one with a coordinate that is not finite.
void JoinBlocks(ForeignSnapshot& snapshot);

}  // namespace qnl::interop
