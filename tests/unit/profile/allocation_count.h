#pragma once

#include <cstddef>

/// Calls of operator new in this executable so far.
std::size_t AllocationCount();

/// Bytes of the largest single allocation since the last call of ForgetLargestAllocation.
std::size_t LargestAllocation();
void ForgetLargestAllocation();
