#include "whole_run/PeakMemory.h"

#include <fstream>
#include <string>

void ResetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

std::int64_t PeakMemory() {
    constexpr std::int64_t kKilobyte = 1024;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::int64_t kilobytes = 0;
            status >> kilobytes;
            return kKilobyte * kilobytes;
        }
    }
    return 0;
}
