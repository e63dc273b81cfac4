#include "platform/Faults.h"

#include <mutex>
#include <utility>

namespace qnl {

namespace {

struct FaultList {
    std::mutex mutex;
    std::vector<Fault> faults;
};

FaultList& TheFaults() {
    static FaultList list;
    return list;
}

}  // namespace

void RecordFault(Fault fault) {
    FaultList& list = TheFaults();
    const std::lock_guard<std::mutex> lock(list.mutex);
    list.faults.push_back(std::move(fault));
}

std::vector<Fault> TakeFaults() {
    FaultList& list = TheFaults();
    const std::lock_guard<std::mutex> lock(list.mutex);
    return std::exchange(list.faults, {});
}

}  // namespace qnl
