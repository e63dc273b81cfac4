#include "probe/CsvOutput.h"

#include "platform/Faults.h"

namespace qnl::probe {

namespace {

void RecordUnwritten(const FrozenLayerJob& job, const char* found) {
    RecordFault({job.m_szResultFile.Text(), "fibre orientation along a normal", "a file that can be written",
                 found, "free space on the disk, or allow writing in its folder, and run again"});
}

}  // namespace

bool CreateEmptyCsv(const FrozenLayerJob& job) {
    HostFile file(job.m_szResultFile.View(), "w");
    const bool created = file && file.Close();
    if (!created) {
        RecordUnwritten(job, "it cannot be created");
    }
    return created;
}

CsvOutput::CsvOutput(FrozenLayerJob& job) : job_(job), file_(job.m_szResultFile.View(), "a") {
    job_.m_pFibreCsv = file_.Get();
    if (!file_) {
        RecordUnwritten(job_, "it cannot be opened");
    }
}

CsvOutput::~CsvOutput() {
    job_.m_pFibreCsv = nullptr;
    if (!file_.Close()) {
        RecordUnwritten(job_, "not all data could be written");
    }
}

}  // namespace qnl::probe
