// Reading a mesh of tetrahedra in random order and the kernel's work on all of its boundary.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "kernel/mesh/MeshFile.h"
#include "platform/CQNLOptKer.h"
#include "support/MeshBuilder.h"

namespace {

// A plate of about `thousands` thousand cells, six deep, written once per size.
std::string PlateFile(std::int64_t thousands) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("qnl_plate_" + std::to_string(thousands) + ".hdf"))
            .string();
    if (!std::filesystem::exists(path)) {
        qnl::testing::BoxMesh box;
        const int side = static_cast<int>(std::sqrt(static_cast<double>(thousands) * 1000.0 / 36.0));
        box.blocks = {side, side, 6};
        box.size = {0.4 * side, 0.4 * side, 2.4};
        box.jiggle = 0.2;
        box.shuffled = true;
        qnl::kernel::WriteMeshFile(BuildBox(box), path);
    }
    return path;
}

void ReadPlate(CQNLOptKer& kernel, std::int64_t thousands) {
    std::string path = PlateFile(thousands);
    if (kernel.ReadMeshData(path.data(), 0) != 1) {
        throw std::runtime_error(path + " cannot be read");
    }
}

void CountCells(benchmark::State& state, const CQNLOptKer& kernel) {
    state.counters["cells"] = kernel.m_nCells;
    state.counters["faces"] = kernel.m_nSurfaces;
}

void ReadFile(benchmark::State& state) {
    const std::string path = PlateFile(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(qnl::kernel::ReadMeshFile(path));
    }
}

void ReadMesh(benchmark::State& state) {
    PlateFile(state.range(0));
    for (auto _ : state) {
        CQNLOptKer kernel;
        ReadPlate(kernel, state.range(0));
        CountCells(state, kernel);
    }
}

void Normals(benchmark::State& state) {
    CQNLOptKer kernel;
    ReadPlate(kernel, state.range(0));
    const std::size_t entries = static_cast<std::size_t>(kernel.m_nNodes) + 1;
    std::vector<double> x(entries);
    std::vector<double> y(entries);
    std::vector<double> z(entries);
    for (auto _ : state) {
        kernel.ComputeNodeSurfaceNormal(x.data(), y.data(), z.data());
    }
    CountCells(state, kernel);
}

// As often as one stage smooths for its sink marks.
void Smooth400(benchmark::State& state) {
    CQNLOptKer kernel;
    ReadPlate(kernel, state.range(0));
    std::vector<double> values(static_cast<std::size_t>(kernel.m_nNodes) + 1, 1.0);
    for (auto _ : state) {
        for (int call = 0; call < 200; ++call) {
            kernel.SmoothSurfaceNodeValue(values.data(), 2);
        }
    }
    CountCells(state, kernel);
}

void FillTree(benchmark::State& state) {
    CQNLOptKer kernel;
    for (auto _ : state) {
        state.PauseTiming();
        ReadPlate(kernel, state.range(0));
        state.ResumeTiming();
        int count = 0;
        benchmark::DoNotOptimize(kernel.SearchNearBlockID(1, 1, 1, 1, 1, 1, count, 0));
    }
    CountCells(state, kernel);
}

// Boxes of single points, each asked for before it is stored, as the thinning of velocities does.
void GrowTree(benchmark::State& state) {
    const int side = static_cast<int>(std::sqrt(static_cast<double>(state.range(0)) * 1000.0));
    for (auto _ : state) {
        CQNLOptKer kernel;
        for (int i = 0; i < side * side; ++i) {
            const double x = i % side;
            const double y = static_cast<double>(i / side);
            int count = 0;
            kernel.SearchNearBlockID(x - 1.5, y - 1.5, -1.5, x + 1.5, y + 1.5, 1.5, count, 0);
            kernel.AddSurfaceToADTree(i, x - 1e-4, y - 1e-4, -1e-4, x + 1e-4, y + 1e-4, 1e-4);
        }
    }
    state.counters["boxes"] = side * side;
}

#define QNL_SIZES Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime()
BENCHMARK(ReadFile)->QNL_SIZES;
BENCHMARK(ReadMesh)->QNL_SIZES;
BENCHMARK(Normals)->QNL_SIZES;
BENCHMARK(Smooth400)->QNL_SIZES;
BENCHMARK(FillTree)->QNL_SIZES->Iterations(1);
BENCHMARK(GrowTree)->QNL_SIZES->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
