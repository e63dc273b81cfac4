#pragma once

/// Reductions of a profile to one number each. All take 1-based arrays sorted by ascending depth; none
/// allocates, and all are re-entrant.

#include "profile/FlakeKernels.h"
#include "profile/FrozenKernels.h"
#include "profile/PackingKernels.h"
#include "profile/ShrinkageKernels.h"
#include "profile/SkinKernels.h"
#include "profile/WindowKernels.h"
