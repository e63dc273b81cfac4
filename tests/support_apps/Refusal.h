#pragma once

#include <string>

#include "project/ProjectPaths.h"

/// The sentence that an action is refused with.
template <typename Action>
std::string Refusal(const Action& action) {
    try {
        action();
    } catch (const qnl::project::InputProblem& problem) {
        return problem.what();
    }
    return "not refused";
}
