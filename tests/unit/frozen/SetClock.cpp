#include "support/SetClockDefinitions.h"
