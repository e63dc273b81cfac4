#include "kernel/topology/FaceTopology.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>

#include "kernel/mesh/CurveOrder.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/mesh/Prefetch.h"
#include "kernel/topology/FaceMatch.h"

namespace qnl::kernel {
namespace {

constexpr std::size_t kLookAhead = 16;

std::uint8_t ShapeIndex(std::uint8_t vtkType) {
    return static_cast<std::uint8_t>(FindCellShape(vtkType) - kCellShapes.data());
}

void LayOutLinks(const MeshData& mesh, FaceTopology& topology) {
    const std::size_t cells = mesh.cellTypes.size();
    const bool allTetra = std::all_of(mesh.cellTypes.begin(), mesh.cellTypes.end(), [](std::uint8_t type) {
        return type == static_cast<std::uint8_t>(CellType::Tetra);
    });
    if (allTetra) {
        topology.links.resize(FaceTopology::kTetraLinks * cells);
        return;
    }
    topology.shape.resize(cells);
    topology.start.resize(cells);
    std::size_t next = 0;
    for (std::size_t cell = 0; cell < cells; ++cell) {
        const std::uint8_t index =
            ShapeIndex(mesh.cellTypes[static_cast<std::size_t>(topology.fileCell[cell])]);
        topology.shape[cell] = index;
        topology.start[cell] = next;
        next += static_cast<std::size_t>(kCellShapes[index].corners + kCellShapes[index].faces);
    }
    topology.links.resize(next);
}

// Copies the corners, numbering nodes as they come, and gives the number of nodes.
void TakeCorners(const MeshData& mesh, FaceTopology& topology) {
    std::vector<int> number(mesh.points.size(), -1);
    topology.fileNode.reserve(mesh.points.size());
    const std::size_t cells = mesh.cellTypes.size();
    for (std::size_t cell = 0; cell < cells; ++cell) {
        if (cell + 2 * kLookAhead < cells) {
            Prefetch(&mesh.offsets[static_cast<std::size_t>(topology.fileCell[cell + 2 * kLookAhead])]);
            Prefetch(mesh.Corners(topology.fileCell[cell + kLookAhead]));
        }
        const int* corner = mesh.Corners(topology.fileCell[cell]);
        const int count = topology.Shape(static_cast<int>(cell)).corners;
        int* target = topology.links.data() + topology.Start(static_cast<int>(cell));
        for (int c = 0; c < count; ++c) {
            int& node = number[static_cast<std::size_t>(corner[c])];
            if (node < 0) {
                node = static_cast<int>(topology.fileNode.size());
                topology.fileNode.push_back(corner[c]);
            }
            target[c] = node;
        }
    }
}

void TakeNodes(const MeshData& mesh, FaceTopology& topology) {
    topology.nodes.resize(topology.fileNode.size());
    for (std::size_t i = 0; i < topology.nodes.size(); ++i) {
        topology.nodes[i].place = mesh.points[static_cast<std::size_t>(topology.fileNode[i])];
    }
}

struct FileFace {
    int fileCell;
    std::uint8_t localFace;
    int cell;
};

BoundaryFace Describe(const MeshData& mesh, const FileFace& face) {
    const CellShape& shape = mesh.Shape(face.fileCell);
    const auto& corners = shape.face[face.localFace];
    BoundaryFace result{face.fileCell, face.localFace, shape.faceCorners[face.localFace], {-1, -1, -1, -1}};
    for (std::size_t c = 0; c < result.corners; ++c) {
        result.nodes[c] = mesh.Corners(face.fileCell)[corners[c]];
    }
    return result;
}

std::vector<BoundaryFace> NumberBoundary(const MeshData& mesh, const std::vector<CellFace>& single,
                                         FaceTopology& topology) {
    std::vector<FileFace> faces;
    faces.reserve(single.size());
    for (const CellFace& face : single) {
        faces.push_back({topology.fileCell[static_cast<std::size_t>(face.cell)], face.localFace, face.cell});
    }
    std::sort(faces.begin(), faces.end(), [](const FileFace& a, const FileFace& b) {
        return a.fileCell != b.fileCell ? a.fileCell < b.fileCell : a.localFace < b.localFace;
    });
    constexpr std::size_t kLargestId = std::numeric_limits<int>::max();
    if (faces.size() + mesh.cellTypes.size() > kLargestId) {
        throw MeshFault("too large: " + std::to_string(faces.size()) + " boundary faces and " +
                        std::to_string(mesh.Cells()) + " cells, expected at most " +
                        std::to_string(kLargestId) + " together");
    }
    std::vector<BoundaryFace> boundary;
    boundary.reserve(faces.size());
    for (const FileFace& face : faces) {
        topology.SetNeighbour(face.cell, face.localFace, ~static_cast<int>(boundary.size()));
        boundary.push_back(Describe(mesh, face));
    }
    topology.boundaryFaces = static_cast<int>(boundary.size());
    return boundary;
}

[[noreturn]] void RejectSharedFace(const FaceTopology& topology, const std::array<int, 3>& cells) {
    std::array<int, 3> file{};
    for (std::size_t i = 0; i < 3; ++i) {
        file[i] = topology.fileCell[static_cast<std::size_t>(cells[i])] + 1;
    }
    std::sort(file.begin(), file.end());
    throw MeshFault("face with three or more owners: cells " + std::to_string(file[0]) + ", " +
                    std::to_string(file[1]) + ", " + std::to_string(file[2]));
}

}  // namespace

TopologyResult BuildFaceTopology(const MeshData& mesh) {
    TopologyResult result;
    FaceTopology& topology = result.topology;
    topology.fileCell = CurveOrder(mesh);
    LayOutLinks(mesh, topology);
    TakeCorners(mesh, topology);
    const FaceMatch match = MatchFaces(topology);
    if (match.overshared) {
        RejectSharedFace(topology, *match.overshared);
    }
    topology.foldedCells = match.folded;
    result.boundary = NumberBoundary(mesh, match.single, topology);
    TakeNodes(mesh, topology);
    return result;
}

}  // namespace qnl::kernel
