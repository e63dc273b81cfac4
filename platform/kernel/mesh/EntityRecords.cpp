#include "kernel/mesh/EntityRecords.h"

#include <algorithm>

namespace qnl::kernel {
namespace {

// `list` has an unused entry 0; its node indices are 1-based.
EntityRecord MakeRecord(const std::vector<Point>& points, const int* list, int count) {
    EntityRecord record{};
    record.nNode = count;
    record.nodes = list;
    for (std::size_t a = 0; a < 3; ++a) {
        double low = points[static_cast<std::size_t>(list[1]) - 1][a];
        double high = low;
        for (int c = 2; c <= count; ++c) {
            const double value = points[static_cast<std::size_t>(list[c]) - 1][a];
            low = std::min(low, value);
            high = std::max(high, value);
        }
        record.boxMin[a] = low;
        record.boxMax[a] = high;
    }
    record.zMiddle = (record.boxMin[2] + record.boxMax[2]) / 2.0;
    return record;
}

}  // namespace

std::vector<NodeRecord> NodeRecords(const MeshData& mesh) {
    std::vector<NodeRecord> records(mesh.points.size() + 1);
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        const Point& point = mesh.points[i];
        const int label = mesh.labels.empty() ? static_cast<int>(i) + 1 : mesh.labels[i];
        records[i + 1] = {point[0], point[1], point[2], label, 0};
    }
    return records;
}

EntityRecords FaceRecords(const std::vector<Point>& points, const std::vector<BoundaryFace>& boundary) {
    EntityRecords faces;
    std::size_t corners = 1;
    for (const BoundaryFace& face : boundary) {
        corners += face.corners;
    }
    faces.lists.assign(corners, 0);
    faces.records.resize(boundary.size() + 1);
    int* list = faces.lists.data();
    for (std::size_t i = 0; i < boundary.size(); ++i) {
        const int count = boundary[i].corners;
        for (int c = 1; c <= count; ++c) {
            list[c] = boundary[i].nodes[static_cast<std::size_t>(c) - 1] + 1;
        }
        faces.records[i + 1] = MakeRecord(points, list, count);
        list += count;
    }
    return faces;
}

EntityRecords CellRecords(const MeshData& mesh) {
    EntityRecords cells;
    cells.lists.assign(mesh.connectivity.size() + 1, 0);
    std::transform(mesh.connectivity.begin(), mesh.connectivity.end(), cells.lists.begin() + 1,
                   [](int node) { return node + 1; });
    cells.records.resize(mesh.cellTypes.size() + 1);
    const int count = mesh.Cells();
#pragma omp parallel for schedule(static)
    for (int cell = 0; cell < count; ++cell) {
        const std::size_t index = static_cast<std::size_t>(cell);
        cells.records[index + 1] =
            MakeRecord(mesh.points, cells.lists.data() + mesh.offsets[index], mesh.Shape(cell).corners);
    }
    return cells;
}

}  // namespace qnl::kernel
