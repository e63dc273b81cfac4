#pragma once

#include <functional>

#include "whole_run/Figures.h"

/// Does `work` in a process of its own, so that neither memory nor threads of one run are there in the
/// next. Raises std::runtime_error when the process did not end well; it has told why on standard error.
RunFigures InChildProcess(const std::function<RunFigures()>& work);
