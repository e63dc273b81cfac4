#pragma once

#include <utility>
#include <vector>

/// Smoothing calls made on any kernel of this test program: the array and the number of sweeps. The
/// kernel's smoothing leaves the values alone, its box tree is the platform's.
std::vector<std::pair<const double*, int>>& SmoothingCalls();
