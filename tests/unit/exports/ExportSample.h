#pragma once

#include <limits>

#include "exports/ExportFrames.h"

/// A triangle and a quad of five points, one array of each kind and one number.
inline qnl::exports::ExportSurface SampleSurface() {
    return {{11, 12, 13, 14, 15},
            {{{0.0F, 0.0F, 0.0F},
              {1.0F, 0.0F, 0.0F},
              {1.0F, 1.0F, 0.0F},
              {0.0F, 1.0F, 0.0F},
              {2.0F, 0.5F, 0.1F}}},
            {0, 1, 2, 3, 1, 4, 2},
            {4, 7}};
}

inline qnl::exports::ExportFrame SampleFrame() {
    return {{{"TimeValue", 0.1}},
            {{"Speed [cm per s]", 1,
              std::vector<float>{1.5F, 0.1F, std::numeric_limits<float>::quiet_NaN(), 4.0F, 5.0F}},
             {"Status", 1, std::vector<int>{0, 0, 1, 0, 0}},
             {"Way [mm]", 3,
              std::vector<float>{1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F, 9.0F, 10.0F, 11.0F, 12.0F,
                                 13.0F, 14.0F, 15.0F}}}};
}
