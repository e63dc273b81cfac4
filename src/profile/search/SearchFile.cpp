#include "profile/search/SearchFile.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "context/Messages.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "profile/search/IntegerStream.h"
#include "profile/search/PassElementSearch.h"

namespace qnl::profile {

namespace {

constexpr int kVersion = 1001;

void PutRecord(const CSurfNodeSearch& record, IntegerWriter& writer) {
    writer.Put(record.m_nPassElems);
    for (int k = 0; k < record.m_nPassElems; ++k) {
        writer.Put(record.m_pPassElems.get()[k]);
    }
}

void PutAll(const FrozenLayerJob& job, std::FILE* stream) {
    IntegerWriter writer(stream);
    writer.Put(kVersion);
    writer.Put(job.m_nSurfaceNodes);
    for (ListPosition i(1); i <= ListPosition(job.m_nSurfaceNodes); ++i) {
        PutRecord(SearchRecords(job)[i], writer);
    }
    writer.Flush();
}

/// Why a file is damaged; null when it is not.
using Damage = const char*;

/// Reads one record. Ids are collected in `ids` first, whose size follows what the file really holds, so
/// that a count that the file does not keep allocates nothing.
Damage ReadRecord(IntegerReader& reader, int largestId, std::vector<int>& ids, CSurfNodeSearch& record) {
    const std::optional<int> count = reader.Next();
    if (!count) {
        return "the end of the file";
    }
    if (*count < 0) {
        return "a negative count";
    }
    ids.clear();
    for (int k = 0; k < *count; ++k) {
        const std::optional<int> id = reader.Next();
        if (!id) {
            return "the end of the file";
        }
        if (*id < 1 || *id > largestId) {
            return "an id outside the mesh";
        }
        ids.push_back(*id);
    }
    if (!ids.empty()) {
        record.m_pPassElems = std::make_unique<int[]>(ids.size());
        std::copy(ids.begin(), ids.end(), record.m_pPassElems.get());
    }
    record.m_nPassElems = *count;
    return nullptr;
}

void RecordDamage(const FrozenLayerJob& job, const std::string& object, Damage found) {
    RecordFault({job.m_szSurFile.Text(), object, "the pass elements of a surface node", found,
                 "nothing is lost: the search is made again and the file written anew"});
}

bool ReadRecords(FrozenLayerJob& job, IntegerReader& reader) {
    const std::int64_t entities = static_cast<std::int64_t>(job.m_nSurfaces) + job.m_nCells;
    const int largestId = static_cast<int>(std::min<std::int64_t>(entities, std::numeric_limits<int>::max()));
    std::vector<int> ids;
    for (ListPosition i(1); i <= ListPosition(job.m_nSurfaceNodes); ++i) {
        const Damage damage = ReadRecord(reader, largestId, ids, SearchRecords(job)[i]);
        if (damage != nullptr) {
            RecordDamage(job,
                         "record " + std::to_string(i.Value()) + " of " + std::to_string(job.m_nSurfaceNodes),
                         damage);
            return false;
        }
    }
    return true;
}

/// True when the head is that of a file for this job.
bool ReadHead(const FrozenLayerJob& job, IntegerReader& reader) {
    const std::optional<int> version = reader.Next();
    if (!version) {
        RecordDamage(job, "version", "the end of the file");
        return false;
    }
    if (*version != kVersion) {
        LogLine(job, "Search File version mismatch!\n");
        return false;
    }
    const std::optional<int> records = reader.Next();
    if (!records) {
        RecordDamage(job, "number of records", "the end of the file");
        return false;
    }
    if (*records != job.m_nSurfaceNodes) {
        LogPlain(job, "file record %d != current mesh %d\n", *records, job.m_nSurfaceNodes);
        return false;
    }
    return true;
}

bool ReadFile(FrozenLayerJob& job) {
    HostFile file(job.m_szSurFile.View(), "r+b");
    if (!file) {
        LogLine(job, "Can't open SearchFileName to read ");
        return false;
    }
    IntegerReader reader(file.Get());
    if (!ReadHead(job, reader) || !ReadRecords(job, reader)) {
        return false;
    }
    if (!file.Close()) {
        LogLine(job, "Cannot close *.sur file ");
    }
    return true;
}

}  // namespace

}  // namespace qnl::profile

int WriteSearchResult(FrozenLayerJob& job) {
    const double start = job.m_pCom->Time();
    qnl::ReplacedFile file(job.m_szSurFile.View(), "w+b");
    if (!file) {
        qnl::LogLine(job, "Can't open SearchFileName ");
        return 1;
    }
    qnl::profile::PutAll(job, file.Get());
    if (!file.Commit()) {
        qnl::LogLine(job, "Cannot close *.sur file ");
    }
    qnl::LogLine(job, "Write Search Result end ");
    qnl::LogSeconds(job, "WriteSearchResult: ", job.m_pCom->Time() - start);
    return 1;
}

int ReadSearchResult(FrozenLayerJob& job) {
    if (!qnl::profile::ReadFile(job)) {
        job.m_pNodeSearchResults = qnl::NewFromOne<CSurfNodeSearch>(job.m_nSurfaceNodes);
        job.m_bSearchDone = 0;
        return -1;
    }
    qnl::LogLine(job, "Read Search Result end ");
    return 1;
}
