#include "support/ScriptedKernelDefinitions.h"
