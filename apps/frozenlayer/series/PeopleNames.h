#pragma once

#include <array>
#include <string>
#include <string_view>

#include "context/OutputQuantities.h"

namespace qnl::series {

/// Name and unit of an item of our results as people say them; files keep their own.
struct PeopleName {
    int id;
    std::string_view name;
    std::string_view unit;
};

/// One entry per output item, by ascending id from 1.
inline constexpr std::array<PeopleName, kItemCount> kPeopleNames{{
    {1, "Frozen ratio", "%"},
    {2, "Maximum temperature", "°C"},
    {3, "Centre temperature", "°C"},
    {4, "Average temperature", "°C"},
    {5, "Bulk temperature", "°C"},
    {6, "Skin ratio", "%"},
    {7, "Mould temperature difference", "°C"},
    {8, "Maximum cooling time", "s"},
    {9, "Skin thickness", "mm"},
    {10, "Maximum cooling time, filling", "s"},
    {11, "Packing index", "-"},
    {12, "Sink-mark displacement, total", "mm"},
    {13, "Sink-mark displacement, x", "mm"},
    {14, "Sink-mark displacement, y", "mm"},
    {15, "Sink-mark displacement, z", "mm"},
    {16, "Maximum volume shrinkage", "%"},
    {17, "Average velocity, x", "cm/s"},
    {18, "Average velocity, y", "cm/s"},
    {19, "Average velocity, z", "cm/s"},
    {20, "Flake colour intensity", "-"},
}};

constexpr bool IdsAreConsecutive() {
    for (std::size_t i = 0; i < kPeopleNames.size(); ++i) {
        if (kPeopleNames[i].id != static_cast<int>(i) + 1) {
            return false;
        }
    }
    return true;
}
static_assert(IdsAreConsecutive());

/// What is read of the wall below a node in results of the resolved mode; no result file holds it.
inline constexpr std::array<PeopleName, 4> kWallNames{{
    {103, "Frozen layer, this side", "mm"},
    {104, "Frozen layer, far side", "mm"},
    {105, "Molten core", "mm"},
    {102, "Wall thickness", "mm"},
}};
inline constexpr std::size_t kLayerNames = 3;  ///< the first of them, which change in time

/// Null for an id that is not ours. In results of the warp stage item 1 holds the sink-mark displacement.
const PeopleName* FindPeopleName(int id, bool isWarp);

/// True when the path is that of a frozen-layer result of the warp stage.
bool IsWarpResult(std::string_view path);

/// A unit as people write it: "oC" is °C, "--" is -, g/cm3 is g/cm³.
std::string PeopleUnit(std::string_view unit);

}  // namespace qnl::series
