#include "job/RunSummary.h"

#include <sstream>

#include "context/Messages.h"

namespace qnl::job {

int MakeRunSummary(FrozenLayerJob& job) {
    job.m_dEndTime = job.m_pCom->Time();
    job.m_dTotalTime = job.m_dEndTime - job.m_dStartTime;
    std::ostringstream report;
    for (int t = 0; t < job.m_nThreads; ++t) {
        report << "CPUID: " << t << "    -   \n"
               << "Record PassElems: " << job.m_pThreadRecordCount[t] << "    -   \n"
               << "Find PassElem Count: " << job.m_pThreadFindCount[t] << "    -   \n"
               << "Find PassElem  Time: " << job.m_pThreadFindTime[t] << " seconds\n";
    }
    report << "Total Analysis Time: " << job.m_dTotalTime << " seconds\n";
    PrintGeneral(report.str());
    return 1;
}

}  // namespace qnl::job
