#pragma once

#include <cstddef>

/// False where the build keeps operator new for itself, as the thread sanitizer does; nothing is counted
/// then.
bool CountsAllocations();

/// Calls of operator new in this executable so far.
std::size_t AllocationCount();

/// Bytes of the largest single allocation since the last call of ForgetLargestAllocation.
std::size_t LargestAllocation();
void ForgetLargestAllocation();
