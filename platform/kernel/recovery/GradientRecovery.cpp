#include "kernel/recovery/GradientRecovery.h"

#include <omp.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <utility>

#include "base/ThreadFailure.h"
#include "base/Vector3.h"
#include "kernel/recovery/PatchFit.h"

namespace qnl::kernel {
namespace {

constexpr int kLeastRings = 2;
constexpr int kMostRings = 3;

using Determined = PatchFit::Determined;

struct Fields {
    const double* const* values;
    std::size_t count;

    bool Has(std::size_t field, int node) const { return std::isfinite(values[field][node]); }
};

// The rings around one node, in the order in which they are met.
class Patch {
public:
    explicit Patch(const RecordMesh& mesh)
        : seenBy_(static_cast<std::size_t>(mesh.nodeCount) + 1, 0),
          openedBy_(static_cast<std::size_t>(mesh.cellCount) + 1, 0) {}

    void Begin(int centre) {
        ++round_;
        nodes_.assign(1, centre);
        seenBy_[static_cast<std::size_t>(centre)] = round_;
        ring_ = 0;
    }

    void AddRing(const NeighbourRows& rows) {
        const std::size_t end = nodes_.size();
        for (; ring_ < end; ++ring_) {
            rows.ForNeighbours(
                nodes_[ring_], [&](int cell) { return IsFirst(openedBy_, cell); },
                [&](int other) {
                    if (IsFirst(seenBy_, other)) {
                        nodes_.push_back(other);
                    }
                });
        }
    }

    int Centre() const { return nodes_.front(); }
    const std::vector<int>& Nodes() const { return nodes_; }  // the centre first

private:
    bool IsFirst(std::vector<unsigned>& metBy, int number) {
        return std::exchange(metBy[static_cast<std::size_t>(number)], round_) != round_;
    }

    std::vector<unsigned> seenBy_;    // round by node
    std::vector<unsigned> openedBy_;  // round by cell
    unsigned round_ = 0;
    std::vector<int> nodes_;
    std::size_t ring_ = 0;
};

// Scratch of one thread, and what it counts.
class NodeRecovery {
public:
    NodeRecovery(const RecordMesh& mesh, const NeighbourRows& rows)
        : mesh_(mesh), rows_(rows), patch_(mesh) {}

    // `gradients`: three by field.
    void Recover(int node, const Fields& fields, double* gradients) {
        std::fill_n(gradients, 3 * fields.count, 0.0);
        done_.assign(fields.count, 0);
        bool some = false;
        bool all = true;
        Determined worst = Determined::All;
        for (std::size_t f = 0; f < fields.count; ++f) {
            if (done_[f] == 0) {
                const bool recovered = RecoverAlike(node, fields, f, gradients, worst);
                some = some || recovered;
                all = all && recovered;
            }
        }
        report_.nodes += some ? 1 : 0;
        report_.withoutValue += all ? 0 : 1;
        report_.fewerCurvatures += worst == Determined::FewerCurvatures ? 1 : 0;
        report_.fewerSlopes += worst == Determined::FewerSlopes ? 1 : 0;
    }

    const GradientReport& Report() const { return report_; }

private:
    // All fields that have values at the same nodes as this one: they share the fit.
    bool RecoverAlike(int node, const Fields& fields, std::size_t first, double* gradients,
                      Determined& worst) {
        if (!fields.Has(first, node) || !FitPatch(node, fields, first, worst)) {
            return false;
        }
        for (std::size_t f = first; f < fields.count; ++f) {
            if (done_[f] == 0 && (f == first || Alike(fields, f, first))) {
                done_[f] = 1;
                const double* values = fields.values[f];
                differences_.resize(used_.size());
                std::transform(used_.begin(), used_.end(), differences_.begin(),
                               [&](int other) { return values[other] - values[node]; });
                const Point gradient = fit_.Gradient(differences_);
                std::copy(gradient.begin(), gradient.end(), gradients + 3 * f);
            }
        }
        return true;
    }

    bool Alike(const Fields& fields, std::size_t a, std::size_t b) const {
        const std::vector<int>& nodes = patch_.Nodes();
        return std::all_of(nodes.begin(), nodes.end(),
                           [&](int node) { return fields.Has(a, node) == fields.Has(b, node); });
    }

    // False without a neighbour that has a value.
    bool FitPatch(int node, const Fields& fields, std::size_t field, Determined& worst) {
        patch_.Begin(node);
        for (int ring = 1; ring <= kMostRings; ++ring) {
            patch_.AddRing(rows_);
            if (ring < kLeastRings) {
                continue;
            }
            TakeOffsets(fields, field);
            if (!used_.empty() && fit_.Factor(offsets_)) {
                return true;
            }
        }
        if (used_.empty()) {
            return false;
        }
        worst = std::max(worst, fit_.Reduce());
        return true;
    }

    // Nodes at the place of the centre tell nothing of a slope.
    void TakeOffsets(const Fields& fields, std::size_t field) {
        constexpr double kCoincident = 1e-12;
        const Point centre = mesh_.Place(patch_.Centre());
        double farthest = 0.0;
        for (const int node : patch_.Nodes()) {
            const Point offset = Minus(mesh_.Place(node), centre);
            farthest = std::max(farthest, Dot(offset, offset));
        }
        used_.clear();
        offsets_.clear();
        for (const int node : patch_.Nodes()) {
            const Point offset = Minus(mesh_.Place(node), centre);
            if (Dot(offset, offset) > kCoincident * farthest && fields.Has(field, node)) {
                used_.push_back(node);
                offsets_.push_back(offset);
            }
        }
    }

    const RecordMesh& mesh_;
    const NeighbourRows& rows_;
    Patch patch_;
    PatchFit fit_;
    std::vector<char> done_;
    std::vector<int> used_;
    std::vector<Point> offsets_;
    std::vector<double> differences_;
    GradientReport report_;
};

void Add(GradientReport& sum, const GradientReport& report) {
    sum.nodes += report.nodes;
    sum.withoutValue += report.withoutValue;
    sum.fewerCurvatures += report.fewerCurvatures;
    sum.fewerSlopes += report.fewerSlopes;
}

}  // namespace

GradientReport GradientRecovery::Recover(const double* const* fields, int count, double* gradients) const {
    const Fields all{fields, static_cast<std::size_t>(count)};
    const std::size_t stride = 3 * all.count;
    std::fill_n(gradients, stride, 0.0);
    std::deque<NodeRecovery> threads;
    for (int thread = 0; thread < omp_get_max_threads(); ++thread) {
        threads.emplace_back(mesh_, rows_);
    }
    ThreadFailure failure;
#pragma omp parallel for schedule(dynamic, 64)
    for (int node = 1; node <= mesh_.nodeCount; ++node) {
        failure.Guard([&] {
            threads[static_cast<std::size_t>(omp_get_thread_num())].Recover(
                node, all, gradients + stride * static_cast<std::size_t>(node));
        });
    }
    failure.RaiseAgain();
    GradientReport report;
    for (const NodeRecovery& thread : threads) {
        Add(report, thread.Report());
    }
    return report;
}

}  // namespace qnl::kernel
