#pragma once

#include <memory>

#include "platform/QNLResultType.h"

/// Reads one binary result file. All value arrays are 1-based: entry 0 is not touched.
class CQNL3DResultReader_Manipulator {
public:
    CQNL3DResultReader_Manipulator();
    ~CQNL3DResultReader_Manipulator();
    CQNL3DResultReader_Manipulator(const CQNL3DResultReader_Manipulator&) = delete;
    CQNL3DResultReader_Manipulator& operator=(const CQNL3DResultReader_Manipulator&) = delete;

    /// Opens the file; `option` is not used. 0 or more: open. -4: the file exists and is not a binary
    /// result (the caller may try its ASCII layout). -1: it cannot be opened. -2: a binary file of another
    /// kind, or a damaged one. -3: written in a newer format version. Failures other than -4 are recorded
    /// as faults.
    int BeginReading(const char* path, const char* option);

    /// Version of the results in the file.
    int GetResultVersion();

    /// Head information; the three texts go to buffers of at least 1024 bytes.
    void GetHeadInfo(int& code, int& stamp, char* mesh, char* material, char* project, int& flag,
                     int& itemCount);

    /// Item ids ascending with name, unit (buffers of at least 260 bytes) and data type (1 node,
    /// 2 element); all 0-based, with as many entries as the item count of GetHeadInfo.
    void GetResultItemInfo(int* itemIds, char** names, char** units, int* dataTypes);

    /// Number of node entries: the largest label of a dense file, the number of rows with an id map.
    int GetMaxCavityNode();

    /// Number of element entries.
    int GetMaxCavityElem();

    /// Fills values[1..n], n the count of the item's own type. Gives false, and leaves the values alone,
    /// when the item is absent, has another length, or is of a type (node, element) whose count the caller
    /// has not asked for while it has asked for the other one.
    bool GetResultItem(int item, float* values);

    /// True when the entries carry an id map.
    bool GetResultDataIDMap(QNLRESULTTYPE type);

    /// Fills ids[1..n] with the labels of the map. Gives false, with ids unchanged, when there is none.
    bool GetResultDataIDArray(QNLRESULTTYPE type, int* ids);

    void EndReading();

private:
    struct State;
    std::unique_ptr<State> state_;
};
