#include "profile/ResultTargets.h"

namespace qnl::profile {

ResultTargets::ResultTargets(const FrozenLayerJob& job) {
    const RunTraits run = TraitsOf(job);
    for (const OutputQuantity& quantity : kOutputQuantities) {
        double* array = (job.*quantity.array).get();
        if (array == nullptr || quantity.slot == kNoSlot || !quantity.computed(run)) {
            continue;
        }
        if (quantity.array == &FrozenLayerJob::m_pSkinThickness) {
            skinThickness_ = array;
            wallThickness_ = job.m_pNodeThickness.get();
        } else {
            targets_[count_++] = {quantity.slot, array};
        }
    }
}

}  // namespace qnl::profile
