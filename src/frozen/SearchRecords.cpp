#include "frozen/SearchRecords.h"

#include "context/Messages.h"
#include "context/RunConditions.h"
#include "layout/ProjectFolders.h"
#include "platform/HostFiles.h"
#include "profile/search/SearchFile.h"

namespace qnl::frozen {

namespace {

/// Where no state is carried: rays along smoothed and along raw normals differ and keep files of their own.
void NameSearchFile(FrozenLayerJob& job) {
    if (!job.m_options.Rules().carriesState && SmoothsNormals(job)) {
        job.m_szSurFile.Set(layout::SmoothedSearchPath(job.m_szMeshFile.View()));
    }
}

/// Where no state is carried: a file older than its mesh is not believed, and the search is made again.
bool IsSearchFileBelieved(const FrozenLayerJob& job) {
    return job.m_options.Rules().carriesState || !IsOlder(job.m_szSurFile.View(), job.m_szMeshFile.View());
}

void CreateSearchRecords(FrozenLayerJob& job) {
    job.m_pNodeSearchResults = NewFromOne<CSurfNodeSearch>(job.m_nSurfaceNodes);
    LogLine(job, "new CSurfNodeSearch");
    NameSearchFile(job);
    if (IsSearchFileBelieved(job)) {
        ReadSearchResult(job);
    } else {
        job.m_bSearchDone = 0;
    }
}

}  // namespace

void PrepareSearchRecords(FrozenLayerJob& job) {
    if (job.m_bSearchDone < 1) {
        return;
    }
    const double start = job.m_pCom->Time();
    if (!job.m_pNodeSearchResults) {
        CreateSearchRecords(job);
    }
    LogSeconds(job, "ReadSearchResult Time: ", job.m_pCom->Time() - start);
}

}  // namespace qnl::frozen
