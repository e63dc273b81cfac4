#pragma once

/// A clock that shows what it is told, in place of the platform's in this test program.
namespace fake {

struct Clock {
    double time = 0.0;  ///< every look moves it on by `step`
    double step = 0.0;
};

/// The one of this process.
Clock& TheClock();

}  // namespace fake
