#pragma once

#include "demo/DemoPart.h"

namespace qnl::demo {

/// Temperatures of the demo melt and its mould, degC.
inline constexpr double kDemoMelt = 230.0;
inline constexpr double kDemoMould = 50.0;

/// Share of the initial excess temperature that is left `seconds` after both faces of a slab of `thickness`
/// mm were brought to the mould's temperature, at `depth` mm below one of them; 0 outside the slab. Of the
/// two classic solutions of the conduction equation the images serve early times and the Fourier series
/// late ones; diffusivity 0.0824 mm2/s (0.18 W/(m K), 0.95 g/cm3, 2.3 J/(g K)).
double SlabExcess(double depth, double thickness, double seconds);

/// The cooling of a demo part whose surface takes the mould's temperature at time 0.
///
/// The excess of one brick is the product of its three slabs, which solves the conduction equation in it.
/// Bricks that overlap are joined by 1 - (1 - a)(1 - b): 0 on the whole surface of the part, smooth, and
/// hotter where walls and ribs meet, but a stand-in for the solution there. A ring cools as if its wall
/// were flat.
class DemoCooling {
public:
    explicit DemoCooling(DemoPart part) : part_(std::move(part)) {}

    /// Share of the initial excess temperature left at a point of the part (mm), 0 to 1.
    double Excess(const kernel::Point& point, double seconds) const;
    /// degC.
    double Temperature(const kernel::Point& point, double seconds) const;
    /// Time, s, at which the temperature falls to `temperature` degC; 0 on the surface.
    double TimeTo(const kernel::Point& point, double temperature) const;

    const DemoPart& Part() const { return part_; }

private:
    double BrickExcess(const BlockBox& brick, const kernel::Point& grid, double seconds) const;

    DemoPart part_;
};

}  // namespace qnl::demo
