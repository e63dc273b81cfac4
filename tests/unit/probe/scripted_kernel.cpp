#include "support/scripted_kernel_definitions.h"
