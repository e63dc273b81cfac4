#pragma once

#include "context/FrozenLayerJob.h"
#include "platform/QnlMaterial.h"

/// Takes freeze temperature and density, kind and flake property out of an open material and releases it.
/// Gives 1, or -1, the material not released, when it is neither a thermoplastic nor a thermoset.
int ReadMaterialData(FrozenLayerJob& job, QnlMaterial* material);
