#include "profile/kernels/SkinKernels.h"

#include <algorithm>

#include "profile/kernels/SegmentLengths.h"

double CalcuSkinRatio(qnl::OneBased<const double> depths, qnl::OneBased<const double> gasMarkers,
                      double window) {
    constexpr double kShortest = 1e-10;
    const int count = depths.Count();
    if (count < 2) {
        return 100.0;
    }
    double skin = 0.0;
    for (int j = 1; j < count; ++j) {
        skin += qnl::profile::PolymerLength(depths[j + 1] - depths[j], gasMarkers[j], gasMarkers[j + 1]);
    }
    skin = std::min(skin, window);
    const double length = std::min(depths[count] - depths[1], window);
    return length <= kShortest ? 100.0 : 100.0 * skin / length;
}

double CalcuSkinThickness(qnl::OneBased<const double> depths, qnl::OneBased<const double> gasMarkers) {
    double skin = 0.0;
    for (int j = 2; j <= depths.Count(); ++j) {
        skin += qnl::profile::PolymerLength(depths[j] - depths[j - 1], gasMarkers[j - 1], gasMarkers[j]);
        if (qnl::profile::IsGas(gasMarkers[j])) {
            break;
        }
    }
    return skin;
}
