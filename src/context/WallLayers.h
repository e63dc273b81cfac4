#pragma once

namespace qnl {

/// The frozen layers of a wall along the inward ray of a node, mm.
struct WallLayers {
    double frozenHere = 0.0;  ///< depth at which the temperature first reaches the freeze temperature
    double frozenFar = 0.0;   ///< the same from the far side
    double moltenCore = 0.0;  ///< what lies between the two; 0 in a wall that is frozen through
    double wall = 0.0;        ///< from one side to the other
};

}  // namespace qnl
