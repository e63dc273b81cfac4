#include "interop/JoinedBlocks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace qnl::interop {

namespace {

constexpr std::int64_t kNone = -1;

bool AreFinite(const std::vector<std::array<double, 3>>& points) {
    return std::all_of(points.begin(), points.end(), [](const std::array<double, 3>& point) {
        return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
    });
}

/// For each point the first at its place that a cell has; kNone where no cell has one.
std::vector<std::int64_t> FirstAtTheirPlace(const ForeignMesh& mesh) {
    std::vector<char> used(mesh.points.size(), 0);
    for (const std::int64_t node : mesh.nodes) {
        used[static_cast<std::size_t>(node)] = 1;
    }
    std::vector<std::size_t> order(mesh.points.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return mesh.points[a] < mesh.points[b]; });
    std::vector<std::int64_t> first(mesh.points.size(), kNone);
    for (std::size_t begin = 0; begin < order.size();) {
        std::size_t end = begin;
        std::int64_t found = kNone;
        for (; end < order.size() && mesh.points[order[end]] == mesh.points[order[begin]]; ++end) {
            const bool isFirst = found == kNone && used[order[end]] != 0;
            found = isFirst ? static_cast<std::int64_t>(order[end]) : found;
        }
        for (; begin < end; ++begin) {
            first[order[begin]] = found;
        }
    }
    return first;
}

/// The points that stay, ascending.
std::vector<std::size_t> Staying(const std::vector<std::int64_t>& first) {
    std::vector<std::size_t> staying;
    for (std::size_t point = 0; point < first.size(); ++point) {
        if (first[point] == static_cast<std::int64_t>(point)) {
            staying.push_back(point);
        }
    }
    return staying;
}

void Renumber(const std::vector<std::int64_t>& numbers, std::vector<std::int64_t>& points) {
    for (std::int64_t& point : points) {
        point = point == kNone ? kNone : numbers[static_cast<std::size_t>(point)];
    }
}

void KeepPoints(const std::vector<std::size_t>& staying, ForeignSnapshot& snapshot) {
    std::vector<std::array<double, 3>> points;
    points.reserve(staying.size());
    for (const std::size_t point : staying) {
        points.push_back(snapshot.mesh.points[point]);
    }
    snapshot.mesh.points = std::move(points);
    for (ForeignArray& array : snapshot.arrays) {
        if (array.onCells) {
            continue;
        }
        std::vector<double> values;
        for (const std::size_t point : staying) {
            const auto begin = array.values.begin() + static_cast<std::ptrdiff_t>(point) * array.components;
            values.insert(values.end(), begin, begin + array.components);
        }
        array.values = std::move(values);
    }
}

void MergePoints(ForeignSnapshot& snapshot) {
    std::vector<std::int64_t> numbers = FirstAtTheirPlace(snapshot.mesh);
    const std::vector<std::size_t> staying = Staying(numbers);
    std::vector<std::int64_t> ofStaying(numbers.size(), kNone);
    for (std::size_t number = 0; number < staying.size(); ++number) {
        ofStaying[staying[number]] = static_cast<std::int64_t>(number);
    }
    Renumber(ofStaying, numbers);
    Renumber(numbers, snapshot.mesh.nodes);
    for (ForeignFaces& faces : snapshot.boundary) {
        Renumber(numbers, faces.points);
    }
    KeepPoints(staying, snapshot);
}

/// Whether each named block has a cell.
std::vector<bool> BlocksWithCells(const ForeignSnapshot& snapshot) {
    std::vector<bool> present(snapshot.blocks.size(), false);
    for (const ForeignArray& array : snapshot.arrays) {
        if (array.onCells && array.components == 1 && array.name == kBlockArray) {
            for (const double block : array.values) {
                present[static_cast<std::size_t>(block)] = true;
            }
        }
    }
    return present;
}

void DropBoundaries(ForeignSnapshot& snapshot) {
    const std::vector<bool> present = BlocksWithCells(snapshot);
    const auto isOfAbsentBlock = [&](const ForeignFaces& faces) {
        const auto block = std::find(snapshot.blocks.begin(), snapshot.blocks.end(), faces.block);
        return block != snapshot.blocks.end() &&
               !present[static_cast<std::size_t>(block - snapshot.blocks.begin())];
    };
    snapshot.boundary.erase(
        std::remove_if(snapshot.boundary.begin(), snapshot.boundary.end(), isOfAbsentBlock),
        snapshot.boundary.end());
}

}  // namespace

void JoinBlocks(ForeignSnapshot& snapshot) {
    if (snapshot.blocks.empty() || !AreFinite(snapshot.mesh.points)) {
        return;
    }
    DropBoundaries(snapshot);
    MergePoints(snapshot);
}

}  // namespace qnl::interop
