#pragma once

#include <array>
#include <vector>

#include "kernel/mesh/MeshData.h"

namespace qnl::demo {

enum class DemoShape {
    Plate,  ///< flat, 3 long and 2 wide
    Cover,  ///< open box with two ribs across and one along it
    Ring,   ///< plate bent to a closed ring around the z axis
};

/// Blocks from `low` to before `high` along each axis.
struct BlockBox {
    std::array<int, 3> low;
    std::array<int, 3> high;
};

/// A part as a union of bricks on one grid of cubic blocks. The wall is 2 mm at any size: more cells make
/// a larger part, not a finer one. Ribs are half as thick.
struct DemoPart {
    DemoShape shape = DemoShape::Plate;
    int layers = 0;                ///< blocks through the wall
    std::array<int, 3> blocks{};   ///< extent of the grid; of a ring around, along the axis, through the wall
    std::vector<BlockBox> bricks;  ///< their union is the part
    double edge = 0.0;             ///< of a block, mm

    /// The first axis closes on itself.
    bool Closed() const { return shape == DemoShape::Ring; }
    /// Radius of the inner wall of a ring, mm; its middle surface is as long as the plate it is bent from.
    double InnerRadius() const;
    /// Place of a point given in blocks from the origin of the grid, mm.
    kernel::Point Place(const kernel::Point& grid) const;
    /// The reverse of Place; of a ring the first coordinate is not needed by anyone and 0.
    kernel::Point GridPoint(const kernel::Point& place) const;
};

inline constexpr int kFewestDemoCells = 2500;
inline constexpr int kMostDemoCells = 100000000;
inline constexpr double kDemoWall = 2.0;  ///< mm
inline constexpr int kTetrasPerBlock = 6;

/// The part with the number of tetras nearest to `cells`, six to a block: six blocks through the wall, four
/// or two where six would give too many. Raises std::invalid_argument for a count out of range.
DemoPart PlanDemoPart(DemoShape shape, int cells);

}  // namespace qnl::demo
