// Speed, in processor time of one thread, and memory of recovering gradients, and of finding and sampling the
// pieces of a ray. Counters: time a node, time a node and neighbour of its patch (two rings), bytes a node of
// the neighbour rows; time a ray and a sample.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

#include "profile/resolved/ResolvedProfile.h"
#include "support/RecordedMesh.h"

namespace qnl {
namespace {

using testing::Fill;
using testing::RecordedMesh;

constexpr Fill kFills[] = {Fill::Tetra, Fill::Hexa, Fill::Wedge};

RecordedMesh Plate(std::int64_t fill, int wide, int through) {
    return RecordedMesh(testing::JiggledPlate(kFills[fill], through, wide));
}

double Field(const kernel::Point& p) {
    return 40.0 + 190.0 * std::sin(1.5 * p[2]) * (1.0 + 0.01 * p[0]);
}

void PerItem(benchmark::State& state, const char* name, double items) {
    state.counters[name] = benchmark::Counter(
        items * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Nodes of two rings, over all nodes.
double Neighbours(const kernel::NeighbourRows& rows) {
    double sum = 0.0;
    for (int node = 1; node <= rows.Nodes(); ++node) {
        std::set<int> patch;
        rows.ForNeighbours(
            node, [&](int near) { rows.ForNeighbours(near, [&](int other) { patch.insert(other); }); });
        sum += static_cast<double>(patch.size()) - 1.0;
    }
    return sum;
}

void Recover(benchmark::State& state) {
    const RecordedMesh mesh = Plate(state.range(0), 40, 8);
    const auto count = static_cast<int>(state.range(1));
    const kernel::GradientRecovery recovery(mesh.View());
    const std::vector<double> values = mesh.Values(Field);
    const std::vector<const double*> fields(static_cast<std::size_t>(count), values.data());
    std::vector<double> gradients(3 * static_cast<std::size_t>(count) * values.size());
    omp_set_num_threads(1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(recovery.Recover(fields.data(), count, gradients.data()));
    }
    const double nodes = recovery.Rows().Nodes();
    const double neighbours = Neighbours(recovery.Rows());
    PerItem(state, "ns_per_node", nodes);
    PerItem(state, "ns_per_node_and_neighbour", neighbours);
    state.counters["neighbours"] = neighbours / nodes;
    state.counters["bytes_per_node"] = static_cast<double>(recovery.Rows().Bytes()) / nodes;
}

void MakeRows(benchmark::State& state) {
    const RecordedMesh mesh = Plate(state.range(0), 40, 8);
    omp_set_num_threads(1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(kernel::NeighbourRows(mesh.View()).Nodes());
    }
    PerItem(state, "ns_per_node", mesh.Data().Nodes());
}

// Rays through the wall from each node of the lower side, whose passed cells are known.
void Sample(benchmark::State& state) {
    const RecordedMesh mesh = Plate(state.range(0), 40, 8);
    testing::RecordedRays rays(mesh, 0.25);
    const std::vector<double> values = mesh.Values(Field);
    const std::vector<double> gradients = mesh.Gradients(values);
    const kernel::RecordMesh view = mesh.View();
    profile::ProfileInput input;
    input.mesh = {view.nodes, view.cells};
    input.fields[0] = {values.data(), gradients.data(), 3, {40.0, std::numeric_limits<double>::infinity()}};
    profile::ResolvedProfile profile;
    profile.TakeInput(input);
    std::vector<std::pair<kernel::Point, std::vector<int>>> starts;
    for (int node = 1; node <= view.nodeCount; ++node) {
        int count = 0;
        const kernel::Point place = mesh.Place(node);
        const int* ids = place[2] == 0.0 ? rays.walker.Find(count, place, {0.0, 0.0, 1.0}, 0) : nullptr;
        if (count > 0) {
            starts.emplace_back(place, std::vector<int>(ids, ids + count));
        }
    }
    double samples = 0.0;
    for (auto _ : state) {
        samples = 0.0;
        for (const auto& [place, ids] : starts) {
            profile.Sample(
                rays.finder.Find(place, {0.0, 0.0, 1.0}, ids.data(), static_cast<int>(ids.size()), 0));
            samples += profile.Count();
        }
    }
    PerItem(state, "ns_per_ray", static_cast<double>(starts.size()));
    PerItem(state, "ns_per_sample", samples);
    state.counters["samples"] = samples / static_cast<double>(starts.size());
}

BENCHMARK(Recover)
    ->ArgNames({"fill", "fields"})
    ->ArgsProduct({{0, 1, 2}, {1, 3}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MakeRows)->ArgName("fill")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(Sample)->ArgName("fill")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qnl

BENCHMARK_MAIN();
