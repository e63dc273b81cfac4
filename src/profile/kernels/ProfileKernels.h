#pragma once

/// Reductions of a profile to one number each. All take 1-based arrays sorted by ascending depth; none
/// allocates, and all are re-entrant.

#include "profile/kernels/FlakeKernels.h"
#include "profile/kernels/FrozenKernels.h"
#include "profile/kernels/PackingKernels.h"
#include "profile/kernels/ShrinkageKernels.h"
#include "profile/kernels/SkinKernels.h"
#include "profile/kernels/WindowKernels.h"
