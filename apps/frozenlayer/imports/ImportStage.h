#pragma once

#include <array>
#include <string_view>

#include "imports/ImportArrays.h"
#include "platform/Stages.h"

namespace qnl::imports {

/// Which component of which quantity an item of a stage holds; id 0 is no item.
struct ItemSource {
    int id = 0;
    Quantity quantity = Quantity::Temperature;
    std::size_t component = 0;
};

/// A stage that can be imported; items by ascending id.
struct ImportStage {
    Stage files;
    Quantity required;
    std::array<ItemSource, 7> items;

    /// Temperatures are wanted by every stage; density and shrinkage follow from them and from the pressure.
    constexpr bool Wants(Quantity quantity) const {
        for (const ItemSource& item : items) {
            if (item.id != 0 && item.quantity == quantity) {
                return true;
            }
        }
        return quantity == Quantity::Temperature ||
               (quantity == Quantity::Pressure && Wants(Quantity::Shrinkage));
    }
};

inline constexpr std::array<ItemSource, 7> kFlowSources{{{kFlowTemperature, Quantity::Temperature, 0},
                                                         {kFlowVelocityU, Quantity::Velocity, 0},
                                                         {kFlowVelocityV, Quantity::Velocity, 1},
                                                         {kFlowVelocityW, Quantity::Velocity, 2},
                                                         {kFlowShrinkage, Quantity::Shrinkage, 0},
                                                         {kFlowCoolingTime, Quantity::CoolingTime, 0},
                                                         {kFlowDensity, Quantity::Density, 0}}};

inline constexpr std::array<ImportStage, 4> kImportStages{{
    {kFlowStage, Quantity::Temperature, kFlowSources},
    {kPackStage, Quantity::Temperature, kFlowSources},
    {kCoolStage,
     Quantity::Temperature,
     {{{kCoolTemperature, Quantity::Temperature, 0}, {kCoolCoolingTime, Quantity::CoolingTime, 0}}}},
    {kWarpStage,
     Quantity::Displacement,
     {{{kWarpDisplacementX, Quantity::Displacement, 0},
       {kWarpDisplacementY, Quantity::Displacement, 1},
       {kWarpDisplacementZ, Quantity::Displacement, 2},
       {kWarpShrinkage, Quantity::Shrinkage, 0}}}},
}};

/// The word is one of the table.
inline const ImportStage& FindImportStage(std::string_view word) {
    for (const ImportStage& stage : kImportStages) {
        if (stage.files.title == word) {
            return stage;
        }
    }
    return kImportStages.front();
}

}  // namespace qnl::imports
