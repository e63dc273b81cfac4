#include "profile/rays/RayProfile.h"

namespace qnl::profile {

OneBased<const double> Gather(const PassElementField& field, OneBasedIds<PassElement> elements,
                              double* target) {
    for (int j = 1; j <= elements.Count(); ++j) {
        target[j] = field[elements[j]];
    }
    return {target, elements.Count()};
}

SortedElements SortAlongRay(const RayDepth& depth, const CQNLOptKer& sorter, const FoundElements& found,
                            const ElementArrays& target) {
    const RayDepth depthOf = depth;  // Of this function alone, so that no store can change it.
    for (int j = 1; j <= found.count; ++j) {
        const int number = found.numbers[j - 1];
        target.elements[j] = number;
        target.depths[j] = depthOf(PassElement(number));
    }
    sorter.shellSorting(found.count, target.depths, target.elements);
    return {{target.depths, found.count}, {target.elements, found.count}};
}

MergedSamples MergeAlongRay(const SortedElements& sorted, OneBased<const double> temperatures,
                            mesh::PassElementNumbering numbering, const MergeLimits& limits,
                            const SampleArrays& target) {
    const int count =
        MergeCoincidentPassElems({sorted.depths, temperatures, sorted.elements}, numbering, limits, target);
    return {{target.depths, count}, {target.temperatures, count}, {target.elements, count}};
}

RayProfile BuildRayProfile(const RayMedium& medium, const Vector3& direction, const FoundElements& found,
                           const RayArrays& target) {
    RayProfile profile;
    profile.direction = direction;
    profile.elements = SortAlongRay(RayDepth(medium.mesh, direction), *medium.sorter, found, target.elements);
    profile.temperatures = Gather(medium.temperatures, profile.elements.elements, target.temperatures);
    profile.samples = MergeAlongRay(profile.elements, profile.temperatures, medium.mesh.Numbering(),
                                    medium.limits, target.samples);
    return profile;
}

}  // namespace qnl::profile
