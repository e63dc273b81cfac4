#pragma once

#include <cstddef>
#include <vector>

#include "profile/rays/RayProfile.h"
#include "profile/resolved/ResolvedProfile.h"

namespace qnl::profile {

/// Work arrays of one thread, kept from node to node so that only a longer profile than any before
/// allocates.
class ProfileScratch {
public:
    /// One array of doubles each, 1-based.
    enum Row {
        kDepthRow,
        kTemperatureRow,
        kShrinkageRow,
        kGasMarkerRow,
        kDensityRow,
        kCoolingTimeRow,
        kVelocityRow,
        kSecondVelocityRow,
        kThirdVelocityRow,
        kSampleDepthRow,
        kSampleTemperatureRow,
        kSampleValueRow,  ///< gas marker or speed
        kRows
    };

    /// Makes room for `count` entries in every array; their contents are lost when they grow.
    void Prepare(int count);

    double* Doubles(Row row) { return doubles_.data() + row * stride_; }
    /// Where the profile of the ray goes.
    RayArrays ProfileArrays();

    ResolvedProfile resolved;  ///< of the present node, where the run sees inside the cells

private:
    std::vector<double> doubles_;
    std::vector<int> elements_;  ///< sorted elements, then those of the samples
    std::size_t stride_ = 0;
};

}  // namespace qnl::profile
