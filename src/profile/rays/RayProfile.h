#pragma once

#include "base/OneBased.h"
#include "base/Vector3.h"
#include "platform/CQNLOptKer.h"
#include "profile/kernels/SampleMerging.h"
#include "profile/rays/PassElementMesh.h"
#include "profile/rays/RayDepth.h"

namespace qnl::profile {

/// Pass elements of one ray as the search gave them: 0-based numbers.
struct FoundElements {
    const int* numbers;
    int count;
};

/// The pass elements of one ray in ascending order of depth; those at one depth by their numbers.
struct SortedElements {
    OneBased<const double> depths;  ///< mm, absolute along the depth axis of the ray
    OneBasedIds<PassElement> elements;

    int Count() const { return depths.Count(); }
};

/// The points of a profile: pass elements that lie at one depth are one sample.
struct MergedSamples {
    OneBased<const double> depths;        ///< mm, absolute along the depth axis of the ray
    OneBased<const double> temperatures;  ///< degC, mean of the merged elements
    OneBasedIds<PassElement> elements;    ///< the one whose other values stand for the sample

    int Count() const { return depths.Count(); }
};

/// What a ray leads through.
struct RayMedium {
    PassElementMesh mesh;
    PassElementField temperatures;
    MergeLimits limits;
    const CQNLOptKer* sorter;  ///< borrowed; the kernel whose order decides among equal depths
};

/// Where a profile goes: 1-based arrays with room for as many entries as there are elements.
struct ElementArrays {
    double* depths;
    int* elements;
};

/// Values of a field by element, into a 1-based array with room for them.
OneBased<const double> Gather(const PassElementField& field, OneBasedIds<PassElement> elements,
                              double* target);

/// Sorts pass elements by the depth of their reference points.
SortedElements SortAlongRay(const RayDepth& depth, const CQNLOptKer& sorter, const FoundElements& found,
                            const ElementArrays& target);

/// Merges elements at one depth and ends the profile at the opposite wall. `temperatures` by element. No
/// samples for fewer than two elements.
MergedSamples MergeAlongRay(const SortedElements& sorted, OneBased<const double> temperatures,
                            mesh::PassElementNumbering numbering, const MergeLimits& limits,
                            const SampleArrays& target);

/// The profile of one ray.
struct RayProfile {
    Vector3 direction;  ///< unit
    SortedElements elements;
    OneBased<const double> temperatures;  ///< degC, by element
    MergedSamples samples;
};

/// Arrays of BuildRayProfile, as those of ElementArrays.
struct RayArrays {
    ElementArrays elements;
    double* temperatures;
    SampleArrays samples;
};

/// Follows the ray with the unit direction `direction` through the elements that it passes.
RayProfile BuildRayProfile(const RayMedium& medium, const Vector3& direction, const FoundElements& found,
                           const RayArrays& target);

}  // namespace qnl::profile
