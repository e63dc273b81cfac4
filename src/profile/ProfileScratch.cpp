#include "profile/ProfileScratch.h"

#include <algorithm>

namespace qnl::profile {

void ProfileScratch::Prepare(int count) {
    constexpr std::size_t kUsualProfile = 256;
    const std::size_t needed = static_cast<std::size_t>(count) + 1;
    if (needed <= stride_) {
        return;
    }
    const std::size_t stride = std::max({needed, 2 * stride_, kUsualProfile});
    doubles_.resize(stride * kRows);
    elements_.resize(stride * 2);
    stride_ = stride;
}

RayArrays ProfileScratch::ProfileArrays() {
    return {{Doubles(kDepthRow), elements_.data()},
            Doubles(kTemperatureRow),
            {Doubles(kSampleDepthRow), Doubles(kSampleTemperatureRow), elements_.data() + stride_}};
}

}  // namespace qnl::profile
