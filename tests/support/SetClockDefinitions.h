#pragma once

#include "platform/CQNLCom.h"
#include "support/SetClock.h"

fake::Clock& fake::TheClock() {
    thread_local Clock clock;
    return clock;
}

double CQNLCom::Time() const {
    const double now = fake::TheClock().time;
    fake::TheClock().time += fake::TheClock().step;
    return now;
}
