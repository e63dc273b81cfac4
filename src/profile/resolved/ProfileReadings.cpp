#include "profile/resolved/ProfileReadings.h"

#include <algorithm>
#include <cmath>

#include "profile/kernels/DepthWindow.h"

namespace qnl::profile {

namespace {

// Depth of the limit between a sample below it and its neighbour that is not.
double Crossing(OneBased<const double> depths, OneBased<const double> values, int below, int other,
                double limit) {
    const double part = (limit - values[below]) / (values[other] - values[below]);
    return depths[below] + part * (depths[other] - depths[below]);
}

}  // namespace

WallLayers ReadWallLayers(OneBased<const double> depths, OneBased<const double> temperatures,
                          double freezeTemperature) {
    const int count = depths.Count();
    WallLayers layers;
    layers.wall = depths[count] - depths[1];
    const auto molten = [&](int i) { return temperatures[i] >= freezeTemperature; };
    int first = 1;
    while (first < count && !molten(first)) {
        ++first;
    }
    if (!molten(first)) {
        layers.frozenHere = layers.wall;
        layers.frozenFar = layers.wall;
        return layers;
    }
    int last = count;
    while (!molten(last)) {
        --last;
    }
    const double begin =
        first == 1 ? depths[1] : Crossing(depths, temperatures, first - 1, first, freezeTemperature);
    const double end =
        last == count ? depths[count] : Crossing(depths, temperatures, last + 1, last, freezeTemperature);
    layers.frozenHere = begin - depths[1];
    layers.frozenFar = depths[count] - end;
    layers.moltenCore = end - begin;
    return layers;
}

double HighestValue(OneBased<const double> values) {
    double highest = values[1];
    for (int i = 2; i <= values.Count(); ++i) {
        highest = std::max(highest, values[i]);
    }
    return highest;
}

double MeanNonZeroByLength(OneBased<const double> depths, OneBased<const double> values, double window) {
    constexpr double kZero = 1e-8;
    const int count = CountWithin(depths, window);
    double sum = 0.0;
    double length = 0.0;
    for (int i = 1; i <= count; ++i) {
        if (std::abs(values[i]) > kZero) {
            const double weight = depths[std::min(i + 1, depths.Count())] - depths[std::max(i - 1, 1)];
            sum += weight * values[i];
            length += weight;
        }
    }
    return length > 0.0 ? sum / length : 0.0;
}

}  // namespace qnl::profile
