#pragma once

#include "base/OneBased.h"
#include "mesh/PassElementNumbering.h"

namespace qnl::profile {

/// The pass elements of one ray in ascending order of depth, each array with the same count.
struct ElementProfile {
    OneBased<const double> depths;        ///< mm, absolute along the ray axis
    OneBased<const double> temperatures;  ///< degC
    OneBasedIds<PassElement> elements;
};

/// Where the merged samples go: 1-based arrays with room for as many entries as there are elements.
struct SampleArrays {
    double* depths;
    double* temperatures;
    int* elements;
};

/// Lengths that decide the merging, mm.
struct MergeLimits {
    double coincident;    ///< elements closer than this are one sample
    double oppositeWall;  ///< a face deeper than this below the first element ends the ray
};

/// `coincident` of MergeLimits for a part of this extent in z. The other extents do not enter.
inline double CoincidenceLimit(double zMax, double zMin) {
    return (zMax - zMin) / 1e8;
}

}  // namespace qnl::profile

/// Merges pass elements that lie at one depth into samples and gives their number, 0 for fewer than two
/// elements.
///
/// A sample has the depth and the element of the last member of its group (of the last but one when the
/// group ends the profile) and the mean temperature of the group. The profile ends with the first face
/// that begins a group and lies more than the opposite-wall limit below the first element: that face alone
/// is the last sample, whatever lies at its depth behind it. A face behind an element of its own depth does
/// not end the profile.
int MergeCoincidentPassElems(const qnl::profile::ElementProfile& profile,
                             qnl::mesh::PassElementNumbering numbering,
                             const qnl::profile::MergeLimits& limits,
                             const qnl::profile::SampleArrays& samples);
