#include "input/InputFaults.h"

#include "platform/Faults.h"

namespace qnl::input {

void UnknownIds::Report(const std::string& path, const std::string& object, int largest) const {
    if (count_ == 0) {
        return;
    }
    RecordFault({path, object, "ids from 1 to " + std::to_string(largest),
                 std::to_string(count_) + " ids outside, the first " + std::to_string(first_),
                 "use the mesh that the result was computed on"});
}

namespace {

void ReportBeyond(const std::string& path, const char* object, int entries, int largest) {
    if (entries > largest) {
        UnknownIds beyond;
        beyond.Add(largest + 1LL, static_cast<long long>(entries) - largest);
        beyond.Report(path, object, largest);
    }
}

}  // namespace

void ReportEntriesBeyond(const std::string& path, int entries, NodeLabel maxLabel) {
    ReportBeyond(path, "node entries", entries, maxLabel.Value());
}

void ReportCellsBeyond(const std::string& path, int entries, int cells) {
    ReportBeyond(path, "cell entries", entries, cells);
}

}  // namespace qnl::input
