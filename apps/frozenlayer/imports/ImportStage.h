#pragma once

#include <array>
#include <string_view>

#include "imports/ImportArrays.h"
#include "results/StageItems.h"

namespace qnl::imports {

/// Which component of which quantity an item of a stage holds; id 0 is no item.
struct ItemSource {
    int id = 0;
    Quantity quantity = Quantity::Temperature;
    std::size_t component = 0;
};

/// A stage that can be imported; items by ascending id.
struct ImportStage {
    std::string_view word;
    const char* extension;
    results::StageKind kind;
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

inline constexpr std::array<ItemSource, 7> kFlowSources{{{6, Quantity::Temperature, 0},
                                                         {11, Quantity::Velocity, 0},
                                                         {12, Quantity::Velocity, 1},
                                                         {13, Quantity::Velocity, 2},
                                                         {14, Quantity::Shrinkage, 0},
                                                         {16, Quantity::CoolingTime, 0},
                                                         {17, Quantity::Density, 0}}};

inline constexpr std::array<ImportStage, 4> kImportStages{{
    {"flow", ".k4f", results::StageKind::Flow, Quantity::Temperature, kFlowSources},
    {"pack", ".k4p", results::StageKind::Flow, Quantity::Temperature, kFlowSources},
    {"cool",
     ".k4c",
     results::StageKind::Cool,
     Quantity::Temperature,
     {{{1, Quantity::Temperature, 0}, {2, Quantity::CoolingTime, 0}}}},
    {"warp",
     ".k4w",
     results::StageKind::Warp,
     Quantity::Displacement,
     {{{1, Quantity::Displacement, 0},
       {2, Quantity::Displacement, 1},
       {3, Quantity::Displacement, 2},
       {7, Quantity::Shrinkage, 0}}}},
}};

/// The word is one of the table.
inline const ImportStage& FindImportStage(std::string_view word) {
    for (const ImportStage& stage : kImportStages) {
        if (stage.word == word) {
            return stage;
        }
    }
    return kImportStages.front();
}

}  // namespace qnl::imports
