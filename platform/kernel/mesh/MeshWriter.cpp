#include <algorithm>

#include "hdf5/Hdf5.h"
#include "kernel/mesh/MeshFile.h"

namespace qnl::kernel {
namespace {

// The layout's wedge has its first triangle turned outward: the two ends of ours change places.
std::vector<std::int64_t> FileConnectivity(const MeshData& mesh) {
    std::vector<std::int64_t> ids(mesh.connectivity.begin(), mesh.connectivity.end());
    for (std::size_t cell = 0; cell < mesh.cellTypes.size(); ++cell) {
        if (mesh.cellTypes[cell] == static_cast<std::uint8_t>(CellType::Wedge)) {
            const auto first = ids.begin() + mesh.offsets[cell];
            std::swap_ranges(first, first + 3, first + 3);
        }
    }
    return ids;
}

void WriteTopology(const MeshData& mesh, hdf5::OutputFile& file, unsigned deflate) {
    const std::int64_t points = mesh.Nodes();
    const std::int64_t cells = mesh.Cells();
    const std::int64_t corners = static_cast<std::int64_t>(mesh.connectivity.size());
    file.Write("/VTKHDF/NumberOfPoints", &points, {1});
    file.Write("/VTKHDF/NumberOfCells", &cells, {1});
    file.Write("/VTKHDF/NumberOfConnectivityIds", &corners, {1});
    const std::vector<std::int64_t> ids = FileConnectivity(mesh);
    file.Write("/VTKHDF/Connectivity", ids.data(), {ids.size()}, deflate);
    file.Write("/VTKHDF/Offsets", mesh.offsets.data(), {mesh.offsets.size()}, deflate);
    file.Write("/VTKHDF/Types", mesh.cellTypes.data(), {mesh.cellTypes.size()}, deflate);
}

template <typename T>
void WritePoints(const MeshData& mesh, hdf5::OutputFile& file, unsigned deflate) {
    std::vector<T> values;
    values.reserve(3 * mesh.points.size());
    for (const Point& point : mesh.points) {
        for (const double value : point) {
            values.push_back(static_cast<T>(value));
        }
    }
    file.Write("/VTKHDF/Points", values.data(), {mesh.points.size(), 3}, deflate);
}

}  // namespace

void WriteMeshFile(const MeshData& mesh, std::string_view path, unsigned deflate) {
    hdf5::OutputFile file(path);
    file.CreateGroup("/VTKHDF");
    file.WriteArray<std::int32_t>("/VTKHDF", "Version", {1, 0});
    file.WriteText("/VTKHDF", "Type", "UnstructuredGrid", hdf5::Charset::Ascii);
    WriteTopology(mesh, file, deflate);
    if (mesh.singlePrecision) {
        WritePoints<float>(mesh, file, deflate);
    } else {
        WritePoints<double>(mesh, file, deflate);
    }
    for (const char* group : {"/VTKHDF/PointData", "/VTKHDF/CellData", "/VTKHDF/FieldData"}) {
        file.CreateGroup(group);
    }
    if (!mesh.labels.empty()) {
        file.Write("/VTKHDF/PointData/NodeId", mesh.labels.data(), {mesh.labels.size()}, deflate);
    }
    if (!mesh.regions.empty()) {
        const std::vector<std::int32_t> regions(mesh.regions.begin(), mesh.regions.end());
        file.Write("/VTKHDF/CellData/Region", regions.data(), {regions.size()}, deflate);
    }
    if (mesh.geomTolerance) {
        file.Write("/VTKHDF/FieldData/GeomTolerance", &*mesh.geomTolerance, {1});
    }
    file.Close();
}

}  // namespace qnl::kernel
