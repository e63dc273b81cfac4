#include "frozen/ResultSmoothing.h"

#include "context/OutputQuantities.h"

namespace qnl::frozen {

void SmoothResults(FrozenLayerJob& job) {
    const RunTraits run = TraitsOf(job);
    const bool shown = job.m_options.Rules().smoothsResults;
    for (const OutputQuantity& quantity : kOutputQuantities) {
        if (quantity.sweeps != kNoSweeps && (shown || quantity.sweeps == kReferenceSweeps) &&
            quantity.computed(run)) {
            job.m_pOptKer->SmoothSurfaceNodeValue((job.*quantity.array).get(), quantity.sweeps);
        }
    }
}

}  // namespace qnl::frozen
