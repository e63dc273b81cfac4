#include "profile/search/PassElementSearch.h"

#include <omp.h>

#include <algorithm>
#include <limits>

namespace qnl::profile {

namespace {

void StoreCopy(CSurfNodeSearch& record, const int* ids, int count) {
    std::unique_ptr<int[]> copy;
    if (count > 0) {
        copy = std::make_unique<int[]>(static_cast<std::size_t>(count));
        std::copy(ids, ids + count, copy.get());
    }
    record.m_pPassElems = std::move(copy);
    record.m_nPassElems = count;
}

/// The running total stays at the largest number rather than overflow.
int SumOrLargest(int total, int count) {
    return total > std::numeric_limits<int>::max() - count ? std::numeric_limits<int>::max() : total + count;
}

void CountSearch(FrozenLayerJob& job, int thread, int count, double seconds) {
    int& searches = job.m_pThreadFindCount.get()[thread];
    int& elements = job.m_pThreadRecordCount.get()[thread];
    searches = SumOrLargest(searches, 1);
    elements = SumOrLargest(elements, count);
    job.m_pThreadFindTime.get()[thread] += seconds;
}

}  // namespace

}  // namespace qnl::profile

const int* FindNodePassElems(FrozenLayerJob& job, int i, int& count, double x, double y, double z, double dx,
                             double dy, double dz, int thread) {
    const double start = job.m_pCom->Time();
    const int* ids = nullptr;
    if (job.m_bSearchDone == 1) {
        const CSurfNodeSearch& record = job.m_pNodeSearchResults.get()[i];
        count = record.m_nPassElems;
        ids = record.m_pPassElems.get();
    } else {
        ids = job.m_pOptKer->FindPassElemByAnyRay(count, x, y, z, dx, dy, dz, thread);
        if (job.m_pNodeSearchResults != nullptr) {
            qnl::profile::StoreCopy(job.m_pNodeSearchResults.get()[i], ids, count);
        }
    }
    qnl::profile::CountSearch(job, thread, count, job.m_pCom->Time() - start);
    return ids;
}

namespace qnl::profile {

int SearchSlot(const FrozenLayerJob& job) {
    return job.m_nThreads > 1 ? omp_get_thread_num() : 0;
}

}  // namespace qnl::profile
