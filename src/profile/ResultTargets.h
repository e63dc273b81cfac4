#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "context/FrozenLayerJob.h"
#include "context/OutputQuantities.h"
#include "profile/NodeProfileResult.h"

namespace qnl::profile {

/// Where the slots of a NodeProfileResult go in the present stage. Made once per output time from the
/// stage flags; arrays that do not exist are passed over.
class ResultTargets {
public:
    explicit ResultTargets(const FrozenLayerJob& job);

    /// Stores the result of node `n` at index n of every target.
    void Store(const NodeProfileResult& result, int n) const {
        for (std::size_t i = 0; i < count_; ++i) {
            targets_[i].array[n] = result[targets_[i].slot];
        }
        if (skinThickness_ != nullptr) {
            skinThickness_[n] = CappedSkin(result[kSlotSkinOrMoldDifference], n);
        }
    }

private:
    struct Target {
        ProfileSlot slot;
        double* array;
    };

    /// The skin is not thicker than the wall, where the wall thickness is known.
    double CappedSkin(double skin, int n) const {
        if (wallThickness_ == nullptr) {
            return skin;
        }
        return std::min(skin, static_cast<double>(wallThickness_[n]));
    }

    std::array<Target, kQuantityCount> targets_{};
    std::size_t count_ = 0;
    double* skinThickness_ = nullptr;
    const float* wallThickness_ = nullptr;
};

}  // namespace qnl::profile
