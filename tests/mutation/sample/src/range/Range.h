#pragma once

#include <array>
#include <string>

constexpr int kBins = 3;
constexpr int kEnds = 2;  // the test makes an array of this size

using Bins = std::array<int, kBins>;

int Clamp(int value, int low, int high);
double Middle(double low, double high);
int Lowest(const Bins& bins);
void Turn(double& value, bool reallyTurn);
bool IsBoth(int value, int low, int high);
int NeverCalled(int offset, int value);

inline bool IsNamed(const std::string& name) {
    return name != "";
}
