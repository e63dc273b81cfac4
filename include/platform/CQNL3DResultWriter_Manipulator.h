#pragma once

#include <memory>

#include "platform/QNLResultType.h"
#include "platform/ResultOrigin.h"

/// Writes one binary result file. The calls are made in the order in which they are declared; all value
/// arrays are 1-based. The file appears under its name at EndWriting and not before; a failure leaves an
/// earlier file of that name whole and is recorded as a fault.
class CQNL3DResultWriter_Manipulator {
public:
    CQNL3DResultWriter_Manipulator();
    ~CQNL3DResultWriter_Manipulator();
    CQNL3DResultWriter_Manipulator(const CQNL3DResultWriter_Manipulator&) = delete;
    CQNL3DResultWriter_Manipulator& operator=(const CQNL3DResultWriter_Manipulator&) = delete;

    /// The file at `path`, whatever its extension. `option` and `create` are not used. Gives 1 or -1.
    int BeginWriting(const char* path, const char* option, bool create);
    bool SetHeadInfo(int code, int stamp, const char* mesh, const char* material, const char* project,
                     int flag, int itemCount);
    bool SetFileInfo(const char* program, int major, int minor, int patch);
    bool SetMultipleTimeStepOutputInfo(int index, float* values, char** units);

    /// Counts of entries by result type; the first is that of node results, the second that of element
    /// results, the other six are not used.
    bool SetResultTypeInfo(int nodes, int elements, int count3, int count4, int count5, int count6,
                           int count7, int count8);
    bool SetResultDataIDMap(QNLRESULTTYPE type, bool used);

    /// Ids, names, units and data types of the items, 0-based, as many as SetHeadInfo announced.
    bool SetResultItemInfo(int* ids, char** names, char** units, int* dataTypes);
    bool SetMaxMinInfo(float* maxima, float* minima);
    bool WriteResultDataIDArray(QNLRESULTTYPE type, int* ids);
    bool WriteResultItem(int id, float* values);
    bool EndWriting();

private:
    friend void qnl::SetResultOrigin(CQNL3DResultWriter_Manipulator&, qnl::ResultOrigin);
    struct State;
    std::unique_ptr<State> state_;
};
