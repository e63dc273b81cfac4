#include "range/Range.h"

#define BELOW(value, limit) value < limit

namespace {

constexpr double kShare = 0.5;

constexpr int Last(int count) {
    return count - 1;
}
static_assert(Last(1) == 0);

}  // namespace

int Clamp(int value, int low, int high) {
    if (value < low) {
        return low;
    }
    return value > high ? high : value;
}

double Middle(double low, double high) {
    return low + kShare * (high - low);
}

int Lowest(const Bins& bins) {
    int lowest = bins[Last(kBins)];
    for (int value : bins) {
        if (BELOW(value, lowest)) {
            lowest = value;
        }
    }
    return lowest;
}

void Turn(double& value, bool reallyTurn) {
    if (reallyTurn) {
        value = -value;
    }
}

bool IsBoth(int value, int low, int high) {
    return value >= low && value == high;
}

int NeverCalled(int offset, int value) {
    return offset + value;
}
