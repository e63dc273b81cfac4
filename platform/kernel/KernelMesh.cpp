#include <cmath>
#include <string>

#include "kernel/MeshKernelState.h"
#include "kernel/mesh/CellVolumes.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/mesh/MeshFile.h"
#include "kernel/mesh/MeshSizes.h"
#include "kernel/rays/RayTolerance.h"
#include "kernel/topology/FaceTopology.h"

namespace qnl::kernel {

namespace {

void CheckPart(const MeshData& mesh) {
    for (const std::int8_t region : mesh.regions) {
        if (region == 0) {
            return;
        }
    }
    throw MeshFault("no cell of region 0 (part) among its " + std::to_string(mesh.Cells()) + " cells");
}

void CheckBoundary(const std::vector<BoundaryFace>& boundary) {
    if (boundary.empty()) {
        throw MeshFault("no boundary face: every face has two owners");
    }
}

// Volume by area: half the nominal wall of a thin part.
double GeomTolerance(const MeshData& mesh, const std::vector<double>& volumes,
                     const std::vector<BoundaryFace>& boundary) {
    if (mesh.geomTolerance) {
        return *mesh.geomTolerance;
    }
    const double area = PartArea(mesh, boundary);
    if (area == 0.0) {
        throw MeshFault("no boundary face belongs to the part, so that its modulus cannot be formed");
    }
    return PartVolume(mesh, volumes) / area;
}

void CheckSizes(const KernelMesh& kernel) {
    const auto usable = [](double size) { return std::isfinite(size) && size > 0.0; };
    if (!usable(kernel.meshSize) || !usable(kernel.geomTolerance)) {
        throw MeshFault("no usable sizes: mean edge length " + std::to_string(kernel.meshSize) +
                        " mm, modulus " + std::to_string(kernel.geomTolerance) + " mm");
    }
}

void TakeEntities(const MeshData& mesh, const std::vector<BoundaryFace>& boundary, KernelMesh& kernel) {
    kernel.byLabel = ArraysByLabel(mesh, NodeClasses(mesh, kernel.lonelyNodes));
    kernel.runnerCells = RunnerCells(mesh);
    kernel.hasLabels = !mesh.labels.empty();
    kernel.nodes = NodeRecords(mesh);
    kernel.faces = FaceRecords(mesh.points, boundary);
    kernel.cells = CellRecords(mesh);
}

KernelMesh DeriveKernelMesh(MeshData mesh) {
    KernelMesh kernel;
    CheckPart(mesh);
    std::vector<double> volumes;
    kernel.turnedCells = TurnNegativeCells(mesh, volumes).others;
    TopologyResult faces = BuildFaceTopology(mesh);
    CheckBoundary(faces.boundary);
    kernel.boundary = BoundaryGraph(faces.boundary, mesh.Nodes());
    kernel.meshSize = MeanEdgeLength(kernel.boundary, mesh.points);
    kernel.geomTolerance = GeomTolerance(mesh, volumes, faces.boundary);
    CheckSizes(kernel);
    kernel.box = BoundingBox(mesh.points);
    kernel.epsilon = RayEpsilon(kernel.meshSize, mesh.singlePrecision);
    kernel.cellVolumes = std::move(volumes);
    kernel.rays =
        std::make_unique<RayWalker>(std::move(faces.topology), kernel.meshSize, mesh.singlePrecision);
    TakeEntities(mesh, faces.boundary, kernel);
    return kernel;
}

}  // namespace

KernelMesh LoadKernelMesh(const char* path) {
    MeshData mesh = ReadMeshFile(path);
    try {
        return DeriveKernelMesh(std::move(mesh));
    } catch (const MeshFault& fault) {
        throw WithFile(path, fault.what());
    }
}

}  // namespace qnl::kernel
