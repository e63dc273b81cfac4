#pragma once

#include <cstdint>

/// Has the system forget the most memory that this process has held so far.
void ResetPeakMemory();

/// The most memory held since then, bytes; 0 where the system does not tell.
std::int64_t PeakMemory();
