#include "unit/mesh/SetClock.h"

#include "platform/CQNLCom.h"

fake::Clock& fake::TheClock() {
    static Clock clock;
    return clock;
}

double CQNLCom::Time() const {
    const double now = fake::TheClock().time;
    fake::TheClock().time += fake::TheClock().step;
    return now;
}
