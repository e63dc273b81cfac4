#include "series/DepthProfiles.h"

#include <memory>
#include <utility>

namespace qnl::series {

namespace {

constexpr int kFieldSamples = 49;

/// Share of the wall above sample `k` of kFieldSamples, counted from 0: 0 to 1, flat at both ends.
double ShareAbove(int k) {
    const double s = static_cast<double>(k) / (kFieldSamples - 1);
    return s * s * (3.0 - 2.0 * s);
}

}  // namespace

void DepthProfiles::Append(const DepthProfiles& others) {
    nodes.insert(nodes.end(), others.nodes.begin(), others.nodes.end());
    counts.insert(counts.end(), others.counts.begin(), others.counts.end());
    depths.insert(depths.end(), others.depths.begin(), others.depths.end());
    for (std::size_t t = 0; t < temperatures.size(); ++t) {
        temperatures[t].insert(temperatures[t].end(), others.temperatures[t].begin(),
                               others.temperatures[t].end());
    }
}

DepthProfile SamplesOfField(const OpenedProject& project, const profile::ResolvedProfile& profile,
                            std::vector<double>& temperatures) {
    DepthProfile samples{0.0, {0.0}, {0}};
    temperatures.assign(1, 0.0);
    if (profile.Count() < 2) {
        return samples;
    }
    const OneBased<const double> depths = profile.Depths();
    const OneBased<const double> field = profile.Values(profile::ProfileField::Temperature);
    const double first = depths[1];
    const double wall = depths[profile.Count()] - first;
    int j = 2;
    for (int k = 0; k < kFieldSamples; ++k) {
        const double depth = first + wall * ShareAbove(k);
        while (j < profile.Count() && depths[j] < depth) {
            ++j;
        }
        const double part = (depth - depths[j - 1]) / (depths[j] - depths[j - 1]);
        samples.depths.push_back(depth);
        samples.elements.push_back(profile.Cells()[j] + project.Job().m_nSurfaces);
        temperatures.push_back(field[j - 1] + part * (field[j] - field[j - 1]));
    }
    return samples;
}

ProfileSeries::ProfileSeries(OpenedProject& project, const Surface& surface, const SurfaceRays& rays,
                             std::vector<int> nodes)
    : project_(project), surface_(surface), rays_(rays) {
    profiles_.nodes = std::move(nodes);
    if (project.SeesInsideCells()) {
        return;
    }
    for (const int node : profiles_.nodes) {
        const auto i = static_cast<std::size_t>(node);
        sorted_.push_back(ElementsByDepth(project, rays.elements[i], rays.inward[i]));
    }
}

DepthProfile ProfileSeries::SamplesOf(std::size_t position, RayFollower* follower,
                                      std::vector<double>& values) const {
    if (follower == nullptr) {
        return SamplesByDepth(project_, sorted_[position], values);
    }
    const auto node = static_cast<std::size_t>(profiles_.nodes[position]);
    return SamplesOfField(project_, follower->Follow(node), values);
}

void ProfileSeries::AddTime() {
    const bool first = profiles_.temperatures.empty();
    std::vector<float>& temperatures = profiles_.temperatures.emplace_back();
    std::unique_ptr<RayFollower> follower;
    if (project_.SeesInsideCells() && !profiles_.nodes.empty()) {
        project_.RecoverTemperature();
        follower = std::make_unique<RayFollower>(project_, surface_, rays_);
    }
    std::vector<double> values;
    for (std::size_t k = 0; k < profiles_.nodes.size(); ++k) {
        const DepthProfile samples = SamplesOf(k, follower.get(), values);
        temperatures.insert(temperatures.end(), values.begin() + 1, values.end());
        if (!first) {
            continue;
        }
        profiles_.counts.push_back(samples.Count());
        for (std::size_t j = 1; j < samples.depths.size(); ++j) {
            profiles_.depths.push_back(static_cast<float>(samples.Below(j)));
        }
    }
}

}  // namespace qnl::series
