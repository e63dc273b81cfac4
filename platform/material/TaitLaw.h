#pragma once

#include <array>

namespace qnl::material {

/// Coefficients of one side of the two-domain law: b1 m3/kg, b2 m3/(kg K), b3 Pa, b4 1/K.
struct TaitSide {
    double b1 = 0.0;
    double b2 = 0.0;
    double b3 = 0.0;
    double b4 = 0.0;
};

/// The two-domain Tait law of a polymer; b5 K, b6 K/Pa, b7 m3/kg, b8 1/K, b9 1/Pa.
struct TaitLaw {
    TaitSide melt;
    TaitSide solid;
    double b5 = 0.0;
    double b6 = 0.0;
    double b7 = 0.0;
    double b8 = 0.0;
    double b9 = 0.0;
};

/// Specific volume, m3/kg, at a pressure in Pa and a temperature in K:
/// V = V0 (1 - C ln(1 + p/B)) + Vt with C = 0.0894, V0 = b1 + b2 (T - b5), B = b3 exp(-b4 (T - b5)) of the
/// melt above T = b5 + b6 p and of the solid up to it, Vt = b7 exp(b8 (T - b5) - b9 p) in the solid and 0
/// in the melt. Tait equation with the universal C: P. A. Rodgers, J. Appl. Polym. Sci. 48 (1993) 1061.
double SpecificVolume(const TaitLaw& law, double pressure, double temperature);

}  // namespace qnl::material
