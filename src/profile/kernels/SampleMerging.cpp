#include "profile/kernels/SampleMerging.h"

namespace qnl::profile {

namespace {

/// Elements at one depth that become one sample.
struct Group {
    double sum;
    int count;

    void Add(double temperature) {
        sum += temperature;
        ++count;
    }
    double Mean() const { return sum / count; }
};

class SampleWriter {
public:
    explicit SampleWriter(const SampleArrays& samples) : samples_(samples) {}

    void Append(double depth, double temperature, PassElement element) {
        ++count_;
        samples_.depths[count_] = depth;
        samples_.temperatures[count_] = temperature;
        samples_.elements[count_] = element.Value();
    }
    int Count() const { return count_; }

private:
    SampleArrays samples_;
    int count_ = 0;
};

}  // namespace

}  // namespace qnl::profile

int MergeCoincidentPassElems(const qnl::profile::ElementProfile& profile,
                             qnl::mesh::PassElementNumbering numbering,
                             const qnl::profile::MergeLimits& limits,
                             const qnl::profile::SampleArrays& samples) {
    const auto& [depths, temperatures, elements] = profile;
    const int last = depths.Count();
    if (last < 2) {
        return 0;
    }
    qnl::profile::SampleWriter writer(samples);
    qnl::profile::Group group{temperatures[1], 1};
    bool together = false;
    int j = 1;
    bool atWall = false;
    while (j < last && !atWall) {
        ++j;
        together = depths[j] - depths[j - 1] < limits.coincident;
        if (together) {
            group.Add(temperatures[j]);
            continue;
        }
        writer.Append(depths[j - 1], group.Mean(), elements[j - 1]);
        group = {temperatures[j], 1};
        atWall = depths[j] - depths[1] > limits.oppositeWall && numbering.IsFace(elements[j]);
    }
    const int representative = together ? j - 1 : j;
    writer.Append(depths[representative], group.Mean(), elements[representative]);
    return writer.Count();
}
