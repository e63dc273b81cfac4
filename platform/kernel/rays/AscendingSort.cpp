#include "kernel/rays/AscendingSort.h"

#include <algorithm>
#include <cstddef>

namespace qnl::kernel {
namespace {

// Ranks a short run by counting and writes it in order to `target`.
void SortRun(const int* run, std::size_t count, int* target) {
    for (std::size_t i = 0; i < count; ++i) {
        const int value = run[i];
        int before = 0;
        for (std::size_t j = 0; j < count; ++j) {
            before += run[j] < value ? 1 : 0;
        }
        target[before] = value;
    }
}

void MergeRuns(const int* a, const int* aEnd, const int* b, const int* bEnd, int* target) {
    while (a != aEnd && b != bEnd) {
        const bool first = *a < *b;
        *target++ = first ? *a : *b;
        a += first ? 1 : 0;
        b += first ? 0 : 1;
    }
    std::copy(b, bEnd, std::copy(a, aEnd, target));
}

}  // namespace

void SortAscending(std::vector<int>& values, std::vector<int>& scratch) {
    constexpr std::size_t kRun = 32;
    const std::size_t count = values.size();
    scratch.resize(count);
    for (std::size_t begin = 0; begin < count; begin += kRun) {
        SortRun(values.data() + begin, std::min(kRun, count - begin), scratch.data() + begin);
    }
    values.swap(scratch);
    for (std::size_t run = kRun; run < count; run *= 2) {
        const auto at = [&](std::size_t i) { return values.data() + std::min(i, count); };
        for (std::size_t begin = 0; begin < count; begin += 2 * run) {
            MergeRuns(at(begin), at(begin + run), at(begin + run), at(begin + 2 * run),
                      scratch.data() + begin);
        }
        values.swap(scratch);
    }
}

}  // namespace qnl::kernel
