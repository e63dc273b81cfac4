// Speed of the face topology, of making the ray search and of the rays, on tetra plates with cells and
// nodes in random order. Time per tetra and per passed cell stands in the counters (ns).
#include <benchmark/benchmark.h>
#include <omp.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include "base/MortonOrder.h"
#include "base/Vector3.h"
#include "kernel/rays/RayWalk.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl {
namespace {

struct PlateSize {
    int wide;
    int deep;
    int cells() const { return 6 * wide * wide * deep; }
};

constexpr PlateSize kPlates[] = {{65, 8}, {204, 8}, {323, 8}, {69, 69}};

std::vector<int> RandomOrder(int count, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = order.size(); i > 1; --i) {
        std::swap(order[i - 1], order[random() % i]);
    }
    return order;
}

// Blocks of edge 1, six tetras each; nodes inside moved by up to 0.15.
kernel::MeshData Plate(const PlateSize& size) {
    kernel::MeshData mesh;
    std::mt19937 random(1);
    const int n = size.wide + 1;
    const int nodes = n * n * (size.deep + 1);
    const std::vector<int> place = RandomOrder(nodes, 2);
    mesh.points.resize(static_cast<std::size_t>(nodes));
    const auto node = [&](int i, int j, int k) {
        return place[static_cast<std::size_t>(i + n * (j + n * k))];
    };
    for (int k = 0; k <= size.deep; ++k) {
        for (int j = 0; j < n; ++j) {
            for (int i = 0; i < n; ++i) {
                const bool inner = i > 0 && i < size.wide && j > 0 && j < size.wide && k > 0 && k < size.deep;
                const auto move = [&] {
                    return inner ? static_cast<double>(random()) / 14316557653.0 - 0.15 : 0.0;
                };
                mesh.points[static_cast<std::size_t>(node(i, j, k))] = {i + move(), j + move(), k + move()};
            }
        }
    }
    constexpr int kTetras[6][4] = {{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                   {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};
    std::vector<int> corners;
    for (int block = 0; block < size.cells() / 6; ++block) {
        const int i = block % size.wide;
        const int j = block / size.wide % size.wide;
        const int k = block / size.wide / size.wide;
        for (const auto& tetra : kTetras) {
            for (const int c : tetra) {
                corners.push_back(node(i + (c & 1), j + (c >> 1 & 1), k + (c >> 2)));
            }
        }
    }
    mesh.connectivity.resize(corners.size());
    const std::vector<int> cellPlace = RandomOrder(size.cells(), 3);
    for (std::size_t cell = 0; cell < cellPlace.size(); ++cell) {
        for (std::size_t c = 0; c < 4; ++c) {
            mesh.connectivity[4 * static_cast<std::size_t>(cellPlace[cell]) + c] = corners[4 * cell + c];
        }
    }
    mesh.cellTypes.assign(cellPlace.size(), static_cast<std::uint8_t>(kernel::CellType::Tetra));
    mesh.regions.assign(cellPlace.size(), 0);
    for (std::int64_t offset = 0; offset <= static_cast<std::int64_t>(mesh.connectivity.size());
         offset += 4) {
        mesh.offsets.push_back(offset);
    }
    return mesh;
}

const kernel::MeshData& PlateNumber(std::int64_t number) {
    static std::map<std::int64_t, kernel::MeshData> plates;
    const auto found = plates.find(number);
    return found != plates.end() ? found->second : plates[number] = Plate(kPlates[number]);
}

void PerItem(benchmark::State& state, const char* name, double items) {
    state.counters[name] = benchmark::Counter(
        items * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Topology(benchmark::State& state) {
    const kernel::MeshData& mesh = PlateNumber(state.range(0));
    omp_set_num_threads(static_cast<int>(state.range(1)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(kernel::BuildFaceTopology(mesh));
    }
    PerItem(state, "ns_per_tetra", mesh.Cells());
}

void MakeSearch(benchmark::State& state) {
    const kernel::MeshData& mesh = PlateNumber(state.range(0));
    omp_set_num_threads(static_cast<int>(state.range(1)));
    for (auto _ : state) {
        state.PauseTiming();
        kernel::FaceTopology topology = kernel::BuildFaceTopology(mesh).topology;
        state.ResumeTiming();
        const kernel::RayWalker walker(std::move(topology), 1.14, false);
        benchmark::DoNotOptimize(&walker);
    }
    PerItem(state, "ns_per_tetra", mesh.Cells());
}

struct Start {
    kernel::Point origin;
    kernel::Point direction;
};

// The starts in an order in which neighbours follow each other, as the loop over surface nodes has them.
std::vector<Start> InPlaceOrder(const std::vector<Start>& starts) {
    std::vector<std::array<float, 3>> places;
    for (const Start& start : starts) {
        places.push_back({static_cast<float>(start.origin[0]), static_cast<float>(start.origin[1]),
                          static_cast<float>(start.origin[2])});
    }
    std::vector<Start> ordered;
    for (const int i : MortonOrder(places)) {
        ordered.push_back(starts[static_cast<std::size_t>(i)]);
    }
    return ordered;
}

// The boundary nodes of the file's order, inward; tilted when asked, so that rays leave the edges.
std::vector<Start> Starts(const kernel::MeshData& mesh, const std::vector<kernel::BoundaryFace>& boundary,
                          bool tilted) {
    std::vector<kernel::Point> inward(mesh.points.size(), kernel::Point{});
    for (const kernel::BoundaryFace& face : boundary) {
        const auto at = [&](std::size_t c) { return mesh.points[static_cast<std::size_t>(face.nodes[c])]; };
        const kernel::Point normal = Cross(Minus(at(1), at(0)), Minus(at(2), at(0)));
        for (std::size_t c = 0; c < 3; ++c) {
            kernel::Point& sum = inward[static_cast<std::size_t>(face.nodes[c])];
            sum = Minus(sum, normal);
        }
    }
    std::vector<Start> starts;
    for (std::size_t i = 0; i < inward.size(); ++i) {
        kernel::Point direction = inward[i];
        if (Length(direction) > 0.0) {
            const double length = Length(direction);
            direction = {direction[0] / length, direction[1] / length, direction[2] / length};
            if (tilted) {
                direction = {direction[0] * 0.91 + direction[1] * 0.13,
                             direction[1] * 0.89 + direction[2] * 0.17,
                             direction[2] * 0.93 + direction[0] * 0.11};
            }
            const double unit = Length(direction);
            starts.push_back(
                {mesh.points[i], {direction[0] / unit, direction[1] / unit, direction[2] / unit}});
        }
    }
    return starts;
}

void Rays(benchmark::State& state) {
    const kernel::MeshData& mesh = PlateNumber(state.range(0));
    const auto threads = static_cast<int>(state.range(1));
    omp_set_num_threads(threads);
    kernel::TopologyResult built = kernel::BuildFaceTopology(mesh);
    std::vector<Start> starts = Starts(mesh, built.boundary, state.range(2) != 0);
    if (state.range(3) != 0) {
        starts = InPlaceOrder(starts);
    }
    kernel::RayWalker walker(std::move(built.topology), 1.14, false);
    walker.PrepareSlots(threads);
    std::int64_t cells = 0;
    for (auto _ : state) {
        cells = 0;
#pragma omp parallel for schedule(dynamic, 1) reduction(+ : cells)
        for (std::size_t i = 0; i < starts.size(); ++i) {
            int count = 0;
            const int* ids = walker.Find(count, starts[i].origin, starts[i].direction, omp_get_thread_num());
            for (int j = 0; j < count; ++j) {
                cells += ids[j] > walker.BoundaryFaces() ? 1 : 0;
            }
        }
    }
    PerItem(state, "ns_per_cell", static_cast<double>(cells));
    PerItem(state, "ns_per_ray", static_cast<double>(starts.size()));
    state.counters["cells_per_ray"] = static_cast<double>(cells) / static_cast<double>(starts.size());
}

BENCHMARK(Topology)
    ->ArgNames({"plate", "threads"})
    ->ArgsProduct({{0, 1, 2}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MakeSearch)
    ->ArgNames({"plate", "threads"})
    ->ArgsProduct({{0, 1, 2}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Rays)
    ->ArgNames({"plate", "threads", "tilted", "ordered"})
    ->ArgsProduct({{0, 1, 2, 3}, {1, 2}, {0, 1}, {0, 1}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qnl

BENCHMARK_MAIN();
