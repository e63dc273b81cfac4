// The sorts, orders and the box hierarchy of our own beside what the libraries offer, on the sizes that runs
// have. The box tree is the R-tree of Boost.Geometry.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <algorithm>
#include <array>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include "base/MortonOrder.h"
#include "kernel/boxes/BoxHierarchy.h"
#include "kernel/boxes/BoxTree.h"
#include "kernel/mesh/CurveOrder.h"
#include "kernel/rays/AscendingSort.h"
#include "support/MeshBuilder.h"

namespace qnl {
namespace {

using kernel::BoxTree;
using kernel::Point;
using kernel::TreeBox;

constexpr std::size_t kQueries = 1024;

kernel::MeshData ShuffledPlate(std::int64_t cells) {
    testing::BoxMesh box;
    const int side = static_cast<int>(std::sqrt(static_cast<double>(cells) / 36.0));
    box.blocks = {side, side, 6};
    box.size = {static_cast<double>(side), static_cast<double>(side), 6.0};
    box.jiggle = 0.2;
    box.shuffled = true;
    return BuildBox(box);
}

/// Boxes of about so many cells of a plate six deep, in the order of the curve.
std::vector<TreeBox> CellBoxes(std::int64_t count) {
    const kernel::MeshData mesh = ShuffledPlate(count);
    std::vector<TreeBox> boxes;
    for (const int cell : kernel::CurveOrder(mesh)) {
        kernel::Box box = kernel::Box::Nothing();
        for (int c = 0; c < 4; ++c) {
            box.Extend(mesh.points[static_cast<std::size_t>(mesh.Corners(cell)[c])]);
        }
        boxes.push_back({box.low, box.high});
    }
    return boxes;
}

std::vector<BoxTree::Entry> Entries(const std::vector<TreeBox>& boxes) {
    std::vector<BoxTree::Entry> entries;
    for (const TreeBox& box : boxes) {
        entries.push_back({box, static_cast<int>(entries.size()) + 1});
    }
    return entries;
}

// The middles of stored boxes.
std::vector<TreeBox> Queries(const std::vector<TreeBox>& boxes) {
    std::mt19937 random(6);
    std::vector<TreeBox> queries;
    for (std::size_t i = 0; i < kQueries; ++i) {
        TreeBox query = boxes[random() % boxes.size()];
        for (std::size_t a = 0; a < 3; ++a) {
            query.low[a] = query.high[a] = 0.5 * (query.low[a] + query.high[a]);
        }
        queries.push_back(query);
    }
    return queries;
}

template <class Ask>
void AskInTurn(benchmark::State& state, const std::vector<TreeBox>& queries, Ask ask) {
    std::size_t i = 0;
    std::size_t found = 0;
    for (auto _ : state) {
        found += ask(queries[i % kQueries]);
        ++i;
    }
    state.counters["found"] = static_cast<double>(found) / static_cast<double>(i);
}

void BoxTreeMake(benchmark::State& state) {
    const std::vector<BoxTree::Entry> entries = Entries(CellBoxes(state.range(0)));
    for (auto _ : state) {
        BoxTree tree;
        tree.AddAll(entries);
        benchmark::DoNotOptimize(&tree);
    }
}

void BoxTreeAsk(benchmark::State& state) {
    const std::vector<TreeBox> boxes = CellBoxes(state.range(0));
    BoxTree tree;
    tree.AddAll(Entries(boxes));
    std::vector<int> ids;
    AskInTurn(state, Queries(boxes), [&](const TreeBox& query) {
        tree.Find(query, ids);
        return ids.size();
    });
}

// Boxes added one by one, each after a query, as velocities are thinned.
void BoxTreeGrow(benchmark::State& state) {
    const std::vector<TreeBox> boxes = CellBoxes(state.range(0));
    std::vector<int> ids;
    for (auto _ : state) {
        BoxTree tree;
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            tree.Find(boxes[i], ids);
            tree.Add(static_cast<int>(i), boxes[i]);
        }
        benchmark::DoNotOptimize(&tree);
    }
}

std::vector<kernel::Box> PlainBoxes(std::int64_t count) {
    std::vector<kernel::Box> boxes;
    for (const TreeBox& box : CellBoxes(count)) {
        boxes.push_back({box.low, box.high});
    }
    return boxes;
}

void HierarchyMake(benchmark::State& state) {
    const std::vector<kernel::Box> boxes = PlainBoxes(state.range(0));
    for (auto _ : state) {
        const kernel::BoxHierarchy hierarchy(boxes);
        benchmark::DoNotOptimize(&hierarchy);
    }
}

void HierarchyAsk(benchmark::State& state) {
    const kernel::BoxHierarchy hierarchy(PlainBoxes(state.range(0)));
    AskInTurn(state, Queries(CellBoxes(state.range(0))), [&](const TreeBox& query) {
        std::size_t count = 0;
        hierarchy.ForOverlap({query.low, query.high}, [&](std::size_t) { ++count; });
        return count;
    });
}

// Rays through the plate, across it but for a little.
std::pair<Point, Point> RayOf(const TreeBox& query) {
    return {{query.low[0], query.low[1], -1.0}, {query.low[0] + 1.3, query.low[1] + 0.7, 8.0}};
}

void HierarchyAskByRay(benchmark::State& state) {
    const kernel::BoxHierarchy hierarchy(PlainBoxes(state.range(0)));
    AskInTurn(state, Queries(CellBoxes(state.range(0))), [&](const TreeBox& query) {
        const auto [from, to] = RayOf(query);
        std::size_t count = 0;
        hierarchy.ForSegment({from, {to[0] - from[0], to[1] - from[1], to[2] - from[2]}, 0.0, 1.0},
                             [&](std::size_t) { ++count; });
        return count;
    });
}

namespace bg = boost::geometry;
using Corner = bg::model::point<double, 3, bg::cs::cartesian>;
using Stored = std::pair<bg::model::box<Corner>, int>;

Corner CornerAt(const Point& place) {
    return {place[0], place[1], place[2]};
}

// The box tree's library asked by segment, which the box tree itself does not offer.
void LibraryAskByRay(benchmark::State& state) {
    const std::vector<TreeBox> boxes = CellBoxes(state.range(0));
    std::vector<Stored> stored;
    for (const TreeBox& box : boxes) {
        stored.push_back({{CornerAt(box.low), CornerAt(box.high)}, 0});
    }
    const bg::index::rtree<Stored, bg::index::quadratic<16>> tree(stored);
    AskInTurn(state, Queries(boxes), [&](const TreeBox& query) {
        const auto [from, to] = RayOf(query);
        const bg::model::segment<Corner> segment{CornerAt(from), CornerAt(to)};
        std::size_t count = 0;
        const auto take = [&](const Stored&) { ++count; };
        tree.query(bg::index::intersects(segment), boost::make_function_output_iterator(take));
        return count;
    });
}

// Many lists of one length, so that what comes next is not foreseen.
template <class Sort>
void SortLists(benchmark::State& state, Sort sort) {
    constexpr std::size_t kLists = 512;
    const auto length = static_cast<std::size_t>(state.range(0));
    std::mt19937 random(8);
    std::vector<double> numbers(kLists * length);
    for (double& number : numbers) {
        number = static_cast<double>(random() % 1000000);
    }
    std::size_t list = 0;
    for (auto _ : state) {
        sort(numbers.data() + list * length, length);
        list = (list + 1) % kLists;
    }
}

template <class Sort>
void SortIds(benchmark::State& state, Sort sort) {
    std::vector<int> ids;
    SortLists(state, [&](const double* numbers, std::size_t length) {
        ids.assign(numbers, numbers + length);
        sort(ids);
        benchmark::DoNotOptimize(ids.data());
    });
}

void IdSort(benchmark::State& state) {
    std::vector<int> scratch;
    SortIds(state, [&](std::vector<int>& ids) { kernel::SortAscending(ids, scratch); });
}

void IdStdSort(benchmark::State& state) {
    SortIds(state, [](std::vector<int>& ids) { std::sort(ids.begin(), ids.end()); });
}

void CellsByCurve(benchmark::State& state) {
    const kernel::MeshData mesh = ShuffledPlate(state.range(0));
    omp_set_num_threads(1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(kernel::CurveOrder(mesh));
    }
}

// The same by the order of points, which std::sort makes.
void CellsByPointOrder(benchmark::State& state) {
    const kernel::MeshData mesh = ShuffledPlate(state.range(0));
    for (auto _ : state) {
        std::vector<std::array<float, 3>> middles(mesh.cellTypes.size());
        for (int cell = 0; cell < mesh.Cells(); ++cell) {
            for (int c = 0; c < 4; ++c) {
                for (std::size_t a = 0; a < 3; ++a) {
                    middles[static_cast<std::size_t>(cell)][a] += static_cast<float>(
                        0.25 * mesh.points[static_cast<std::size_t>(mesh.Corners(cell)[c])][a]);
                }
            }
        }
        benchmark::DoNotOptimize(MortonOrder(middles));
    }
}

// What the order is for: places of all corners, cell after cell.
void Visit(benchmark::State& state, const kernel::MeshData& mesh, const std::vector<int>& order) {
    std::vector<int> number(mesh.points.size(), -1);
    std::vector<Point> places;
    std::vector<int> corners;
    for (const int cell : order) {
        for (int c = 0; c < 4; ++c) {
            const int node = mesh.Corners(cell)[c];
            int& mine = number[static_cast<std::size_t>(node)];
            if (mine < 0) {
                mine = static_cast<int>(places.size());
                places.push_back(mesh.points[static_cast<std::size_t>(node)]);
            }
            corners.push_back(mine);
        }
    }
    for (auto _ : state) {
        double sum = 0.0;
        for (const int corner : corners) {
            sum += places[static_cast<std::size_t>(corner)][2];
        }
        benchmark::DoNotOptimize(sum);
    }
}

void VisitByCurve(benchmark::State& state) {
    const kernel::MeshData mesh = ShuffledPlate(state.range(0));
    Visit(state, mesh, kernel::CurveOrder(mesh));
}

void VisitByFile(benchmark::State& state) {
    const kernel::MeshData mesh = ShuffledPlate(state.range(0));
    std::vector<int> order(mesh.cellTypes.size());
    std::iota(order.begin(), order.end(), 0);
    Visit(state, mesh, order);
}

#define QNL_BOXES Arg(200000)
BENCHMARK(BoxTreeMake)->QNL_BOXES->Unit(benchmark::kMillisecond);
BENCHMARK(BoxTreeAsk)->QNL_BOXES;
BENCHMARK(BoxTreeGrow)->QNL_BOXES->Unit(benchmark::kMillisecond);
BENCHMARK(HierarchyMake)->QNL_BOXES->Unit(benchmark::kMillisecond);
BENCHMARK(HierarchyAsk)->QNL_BOXES;
BENCHMARK(HierarchyAskByRay)->QNL_BOXES;
BENCHMARK(LibraryAskByRay)->QNL_BOXES;
BENCHMARK(IdSort)->Arg(8)->Arg(24)->Arg(64)->Arg(200);
BENCHMARK(IdStdSort)->Arg(8)->Arg(24)->Arg(64)->Arg(200);
BENCHMARK(CellsByCurve)->Arg(200000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(CellsByPointOrder)->Arg(200000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(VisitByCurve)->Arg(200000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(VisitByFile)->Arg(200000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qnl

BENCHMARK_MAIN();
