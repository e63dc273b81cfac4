#pragma once

#include <functional>
#include <utility>
#include <vector>

/// Smoothing calls made on any kernel of this test program: the array and the number of sweeps. The
/// kernel's smoothing does what SmoothingEffect says, its box tree is the platform's.
std::vector<std::pair<const double*, int>>& SmoothingCalls();

/// What a smoothing call does to its array; empty: nothing.
std::function<void(double*)>& SmoothingEffect();
