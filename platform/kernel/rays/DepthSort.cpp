#include "kernel/rays/DepthSort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace qnl::kernel {
namespace {

struct Sample {
    double key;
    int id;
};

bool Before(const Sample& a, const Sample& b) {
    if (std::isnan(a.key) || std::isnan(b.key)) {
        return std::isnan(b.key) && !std::isnan(a.key);
    }
    return a.key < b.key;
}

// Most lists of a ray are short.
void InsertionSort(int n, double* keys, int* ids) {
    for (int i = 2; i <= n; ++i) {
        const Sample sample{keys[i], ids[i]};
        int j = i;
        for (; j > 1 && Before(sample, {keys[j - 1], ids[j - 1]}); --j) {
            keys[j] = keys[j - 1];
            ids[j] = ids[j - 1];
        }
        keys[j] = sample.key;
        ids[j] = sample.id;
    }
}

void ScratchSort(int n, double* keys, int* ids) {
    thread_local std::vector<Sample> scratch;
    scratch.clear();
    for (int i = 1; i <= n; ++i) {
        scratch.push_back({keys[i], ids[i]});
    }
    std::sort(scratch.begin(), scratch.end(), Before);
    for (int i = 1; i <= n; ++i) {
        const Sample& sample = scratch[static_cast<std::size_t>(i - 1)];
        keys[i] = sample.key;
        ids[i] = sample.id;
    }
}

}  // namespace

void SortByDepth(int n, double* keys, int* ids, double epsilon) {
    constexpr int kShort = 24;
    if (n <= kShort) {
        InsertionSort(n, keys, ids);
    } else {
        ScratchSort(n, keys, ids);
    }
    int first = 1;
    for (int i = 2; i <= n + 1; ++i) {
        const bool follows = i <= n && (keys[i] == keys[i - 1] || keys[i] - keys[i - 1] <= epsilon);
        if (!follows) {
            std::sort(ids + first, ids + i);
            first = i;
        }
    }
}

}  // namespace qnl::kernel
