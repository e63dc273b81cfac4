#pragma once

#include "base/OneBased.h"
#include "context/FrozenLayerJob.h"

/// Pass elements of the ray from (x, y, z), mm, along the unit direction (dx, dy, dz): ids in the order of
/// the kernel, 0-based, `count` of them. The array stays with its owner and holds until the next search
/// on this slot.
///
/// Where m_bSearchDone is 1 they come from search record `i`; otherwise the kernel searches on slot
/// `thread` and a copy is stored into that record, when the job has records. The call is added to the
/// counters of the thread. Raises std::bad_alloc, with the record unchanged.
const int* FindNodePassElems(FrozenLayerJob& job, int i, int& count, double x, double y, double z, double dx,
                             double dy, double dz, int thread);

namespace qnl::profile {

/// The search records by position in the surface-node list.
inline OneBased<CSurfNodeSearch, ListPosition> SearchRecords(const FrozenLayerJob& job) {
    return {job.m_pNodeSearchResults.get(), job.m_nSurfaceNodes};
}

/// Search slot of the calling thread: its number where the job runs on several threads, else 0.
int SearchSlot(const FrozenLayerJob& job);

}  // namespace qnl::profile
