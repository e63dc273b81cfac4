#pragma once

#include <string>
#include <vector>

/// A mesh kernel that reads nothing, and a clock that is set; both record their calls. They take the place
/// of the platform library in this test program.
namespace fake {

struct Kernel {
    int readStatus = 1;
    double time = 0.0;  ///< what the clock shows; every look moves it on by `step`
    double step = 0.0;
    int kernelsAlive = 0;
    std::vector<std::string> calls;
};

/// The one of this process.
Kernel& TheKernel();

}  // namespace fake
