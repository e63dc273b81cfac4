#pragma once

#include "context/FrozenLayerJob.h"
#include "platform/HostFiles.h"

namespace qnl::probe {

/// Makes m_szResultFile an empty file. False, with a recorded fault, when it cannot be created.
bool CreateEmptyCsv(const FrozenLayerJob& job);

/// The CSV file m_szResultFile, open for appending while this object lives; m_pFibreCsv is its stream.
/// False, and m_pFibreCsv null, when it cannot be opened. That, and a failure to write, is recorded as a
/// fault.
class CsvOutput {
public:
    explicit CsvOutput(FrozenLayerJob& job);
    ~CsvOutput();
    CsvOutput(const CsvOutput&) = delete;
    CsvOutput& operator=(const CsvOutput&) = delete;

    explicit operator bool() const { return static_cast<bool>(file_); }

private:
    FrozenLayerJob& job_;
    HostFile file_;
};

}  // namespace qnl::probe
