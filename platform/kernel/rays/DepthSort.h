#pragma once

namespace qnl::kernel {

/// Sorts keys[1..n] ascending and carries ids[1..n] along; then, within each maximal run of keys that
/// follow each other by no more than `epsilon`, puts the ids in ascending order while the keys stay: depths
/// that coincide differ by rounding only, and must not decide the order. Keys that are not a number come
/// last. n below 2 does nothing. Safe from any thread; reuses scratch of the calling thread.
void SortByDepth(int n, double* keys, int* ids, double epsilon);

}  // namespace qnl::kernel
