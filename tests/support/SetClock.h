#pragma once

/// A clock that shows what it is told. A test program that includes SetClockDefinitions.h in one source file
/// has it in place of the platform's.
namespace fake {

struct Clock {
    double time = 0.0;  ///< every look moves it on by `step`
    double step = 0.0;
};

/// The one of this thread.
Clock& TheClock();

}  // namespace fake
