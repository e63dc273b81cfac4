#include <cmath>
#include <limits>
#include <string>

#include "kernel/cell_volumes.h"
#include "kernel/face_topology.h"
#include "kernel/mesh_fault.h"
#include "kernel/mesh_file.h"
#include "kernel/mesh_kernel_state.h"
#include "kernel/mesh_sizes.h"
#include "kernel/ray_tolerance.h"

namespace {

using qnl::MeshFault;

void CheckPart(const qnl::MeshData& mesh) {
    for (const std::int8_t region : mesh.regions) {
        if (region == 0) {
            return;
        }
    }
    throw MeshFault("no cell of region 0 (part) among its " + std::to_string(mesh.Cells()) + " cells");
}

void CheckBoundary(const qnl::MeshData& mesh, const std::vector<qnl::BoundaryFace>& boundary) {
    if (boundary.empty()) {
        throw MeshFault("no boundary face: every face has two owners");
    }
    constexpr std::size_t kLargestId = std::numeric_limits<int>::max();
    if (boundary.size() + mesh.cellTypes.size() > kLargestId) {
        throw MeshFault("too large: " + std::to_string(boundary.size()) + " boundary faces and " +
                        std::to_string(mesh.Cells()) + " cells, expected at most " +
                        std::to_string(kLargestId) + " together");
    }
}

// Volume by area: half the nominal wall of a thin part.
double GeomTolerance(const qnl::MeshData& mesh, const std::vector<double>& volumes,
                     const std::vector<qnl::BoundaryFace>& boundary) {
    if (mesh.geomTolerance) {
        return *mesh.geomTolerance;
    }
    const double area = qnl::PartArea(mesh, boundary);
    if (area == 0.0) {
        throw MeshFault("no boundary face belongs to the part, so that its modulus cannot be formed");
    }
    return qnl::PartVolume(mesh, volumes) / area;
}

void CheckSizes(const KernelMesh& kernel) {
    const auto usable = [](double size) { return std::isfinite(size) && size > 0.0; };
    if (!usable(kernel.meshSize) || !usable(kernel.geomTolerance)) {
        throw MeshFault("no usable sizes: mean edge length " + std::to_string(kernel.meshSize) +
                        " mm, modulus " + std::to_string(kernel.geomTolerance) + " mm");
    }
}

void TakeEntities(const qnl::MeshData& mesh, const std::vector<qnl::BoundaryFace>& boundary,
                  KernelMesh& kernel) {
    kernel.byLabel = qnl::ArraysByLabel(mesh, qnl::NodeClasses(mesh, kernel.lonelyNodes));
    kernel.runnerCells = qnl::RunnerCells(mesh);
    kernel.hasLabels = !mesh.labels.empty();
    kernel.nodes = qnl::NodeRecords(mesh);
    kernel.faces = qnl::FaceRecords(mesh.points, boundary);
    kernel.cells = qnl::CellRecords(mesh);
}

KernelMesh DeriveKernelMesh(qnl::MeshData mesh) {
    KernelMesh kernel;
    CheckPart(mesh);
    std::vector<double> volumes;
    kernel.turnedCells = qnl::TurnNegativeCells(mesh, volumes).others;
    qnl::TopologyResult faces = qnl::BuildFaceTopology(mesh);
    CheckBoundary(mesh, faces.boundary);
    kernel.boundary = qnl::BoundaryGraph(faces.boundary, mesh.Nodes());
    kernel.meshSize = qnl::MeanEdgeLength(kernel.boundary, mesh.points);
    kernel.geomTolerance = GeomTolerance(mesh, volumes, faces.boundary);
    CheckSizes(kernel);
    kernel.box = qnl::BoundingBox(mesh.points);
    kernel.epsilon = qnl::RayEpsilon(kernel.meshSize, mesh.singlePrecision);
    volumes = {};
    kernel.rays =
        std::make_unique<qnl::RayWalker>(std::move(faces.topology), kernel.meshSize, mesh.singlePrecision);
    TakeEntities(mesh, faces.boundary, kernel);
    return kernel;
}

}  // namespace

KernelMesh LoadKernelMesh(const char* path) {
    qnl::MeshData mesh = qnl::ReadMeshFile(path);
    try {
        return DeriveKernelMesh(std::move(mesh));
    } catch (const MeshFault& fault) {
        throw qnl::WithFile(path, fault.what());
    }
}
