#pragma once

namespace qnl {

/// What the profile of a wall along the inward ray of a node tells of it; lengths in mm.
struct WallLayers {
    double frozenHere = 0.0;  ///< depth at which the temperature first reaches the freeze temperature
    double frozenFar = 0.0;   ///< the same from the far side
    double moltenCore = 0.0;  ///< what lies between the two; 0 in a wall that is frozen through
    double wall = 0.0;        ///< from one side to the other
    double hottest = 0.0;     ///< highest temperature along the whole ray, degC
};

}  // namespace qnl
