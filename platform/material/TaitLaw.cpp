#include "material/TaitLaw.h"

#include <cmath>

namespace qnl::material {
namespace {

constexpr double kUniversalC = 0.0894;

double WithoutTransition(const TaitSide& side, double pressure, double aboveB5) {
    const double v0 = side.b1 + side.b2 * aboveB5;
    const double b = side.b3 * std::exp(-side.b4 * aboveB5);
    return v0 * (1.0 - kUniversalC * std::log(1.0 + pressure / b));
}

}  // namespace

double SpecificVolume(const TaitLaw& law, double pressure, double temperature) {
    const double aboveB5 = temperature - law.b5;
    if (temperature > law.b5 + law.b6 * pressure) {
        return WithoutTransition(law.melt, pressure, aboveB5);
    }
    const double transition = law.b7 * std::exp(law.b8 * aboveB5 - law.b9 * pressure);
    return WithoutTransition(law.solid, pressure, aboveB5) + transition;
}

}  // namespace qnl::material
