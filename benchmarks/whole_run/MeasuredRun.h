#pragma once

#include <string>

#include "whole_run/Figures.h"

/// Evaluates a flow project with intermediate output times phase by phase, as the program does in
/// corrected mode, with the search apart from the first evaluation. `stageFile` is the base stage file,
/// whose project has no search file; times 0 to `intermediateTimes` are evaluated. Result and search file
/// are left beside their inputs. Raises std::runtime_error when a phase fails.
RunFigures MeasureRun(const std::string& stageFile, int intermediateTimes, int threads);
