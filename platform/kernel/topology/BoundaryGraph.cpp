#include "kernel/topology/BoundaryGraph.h"

#include <algorithm>

#include "base/Vector3.h"

namespace qnl::kernel {
namespace {

constexpr int kNotOnBoundary = -1;

// Boundary number of each node; fills the list of boundary nodes.
std::vector<int> NumberNodes(const std::vector<BoundaryFace>& faces, int nodeCount, std::vector<int>& nodes) {
    std::vector<int> number(static_cast<std::size_t>(nodeCount), kNotOnBoundary);
    for (const BoundaryFace& face : faces) {
        for (std::size_t c = 0; c < face.corners; ++c) {
            number[static_cast<std::size_t>(face.nodes[c])] = 0;
        }
    }
    for (int node = 0; node < nodeCount; ++node) {
        int& mine = number[static_cast<std::size_t>(node)];
        if (mine != kNotOnBoundary) {
            mine = static_cast<int>(nodes.size());
            nodes.push_back(node);
        }
    }
    return number;
}

// Calls visit(a, b) for both directions of every face edge.
template <typename Visit>
void ForEachDirectedEdge(const std::vector<BoundaryFace>& faces, const std::vector<int>& number,
                         Visit visit) {
    for (const BoundaryFace& face : faces) {
        int previous = number[static_cast<std::size_t>(face.nodes[face.corners - std::size_t{1}])];
        for (std::size_t c = 0; c < face.corners; ++c) {
            const int current = number[static_cast<std::size_t>(face.nodes[c])];
            visit(previous, current);
            visit(current, previous);
            previous = current;
        }
    }
}

void SweepOnce(const BoundaryGraph& graph, const std::vector<double>& before, std::vector<double>& after) {
    const std::int64_t count = static_cast<std::int64_t>(before.size());
#pragma omp for schedule(static)
    for (std::int64_t i = 0; i < count; ++i) {
        const std::size_t node = static_cast<std::size_t>(i);
        const int* const begin = graph.NeighboursBegin(node);
        const int* const end = graph.NeighboursEnd(node);
        double sum = before[node];
        for (const int* neighbour = begin; neighbour != end; ++neighbour) {
            sum += before[static_cast<std::size_t>(*neighbour)];
        }
        after[node] = sum / static_cast<double>(1 + (end - begin));
    }
}

}  // namespace

BoundaryGraph::BoundaryGraph(const std::vector<BoundaryFace>& faces, int nodeCount) {
    const std::vector<int> number = NumberNodes(faces, nodeCount, nodes_);
    std::vector<std::int64_t> begin(nodes_.size() + 1, 0);
    ForEachDirectedEdge(faces, number, [&](int a, int) { ++begin[static_cast<std::size_t>(a) + 1]; });
    for (std::size_t i = 1; i < begin.size(); ++i) {
        begin[i] += begin[i - 1];
    }
    neighbours_.resize(static_cast<std::size_t>(begin.back()));
    std::vector<std::int64_t> next(begin.begin(), begin.end() - 1);
    ForEachDirectedEdge(faces, number, [&](int a, int b) {
        neighbours_[static_cast<std::size_t>(next[static_cast<std::size_t>(a)]++)] = b;
    });
    first_.assign(1, 0);
    first_.reserve(begin.size());
    auto kept = neighbours_.begin();
    for (std::size_t i = 0; i + 1 < begin.size(); ++i) {
        const auto from = neighbours_.begin() + begin[i];
        const auto to = neighbours_.begin() + begin[i + 1];
        std::sort(from, to);
        kept = std::unique_copy(from, to, kept);
        first_.push_back(kept - neighbours_.begin());
    }
    neighbours_.erase(kept, neighbours_.end());
    neighbours_.shrink_to_fit();
}

double MeanEdgeLength(const BoundaryGraph& graph, const std::vector<Point>& points) {
    const std::vector<int>& nodes = graph.Nodes();
    const auto pointOf = [&](std::size_t i) -> const Point& {
        return points[static_cast<std::size_t>(nodes[i])];
    };
    double sum = 0.0;
    std::int64_t edges = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const int* const end = graph.NeighboursEnd(i);
        const int* larger = std::upper_bound(graph.NeighboursBegin(i), end, static_cast<int>(i));
        for (; larger != end; ++larger, ++edges) {
            sum += Length(Minus(pointOf(static_cast<std::size_t>(*larger)), pointOf(i)));
        }
    }
    return edges == 0 ? 0.0 : sum / static_cast<double>(edges);
}

void SmoothOverBoundary(const BoundaryGraph& graph, double* values, int sweeps) {
    const std::vector<int>& nodes = graph.Nodes();
    if (sweeps <= 0 || nodes.empty()) {
        return;
    }
    std::vector<double> before(nodes.size());
    std::vector<double> after(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        before[i] = values[nodes[i]];
    }
#pragma omp parallel
    for (int sweep = 0; sweep < sweeps; ++sweep) {
        if (sweep % 2 == 0) {
            SweepOnce(graph, before, after);
        } else {
            SweepOnce(graph, after, before);
        }
    }
    const std::vector<double>& result = sweeps % 2 == 0 ? before : after;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        values[nodes[i]] = result[i];
    }
}

}  // namespace qnl::kernel
