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

// Keys that are not a number stand last.
bool Before(const Sample& a, const Sample& b) {
    if (std::isnan(a.key) || std::isnan(b.key)) {
        return std::isnan(b.key) && !std::isnan(a.key);
    }
    return a.key < b.key;
}

}  // namespace

void SortByDepth(int n, double* keys, int* ids, double epsilon) {
    thread_local std::vector<Sample> samples;
    samples.clear();
    for (int i = 1; i <= n; ++i) {
        samples.push_back({keys[i], ids[i]});
    }
    std::sort(samples.begin(), samples.end(), Before);
    for (int i = 1; i <= n; ++i) {
        keys[i] = samples[static_cast<std::size_t>(i - 1)].key;
        ids[i] = samples[static_cast<std::size_t>(i - 1)].id;
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
