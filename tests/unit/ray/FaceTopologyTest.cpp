#include "kernel/topology/FaceTopology.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <set>

#include "RayMeshes.h"
#include "kernel/mesh/MeshFault.h"
#include "kernel/topology/FaceMatch.h"
#include "support/BruteRay.h"
#include "support/MeshBuilder.h"

namespace qnl {
namespace {

using testing::BuildBox;
using testing::Fill;
using testing::NamedMesh;

std::vector<NamedMesh> AllBodies() {
    std::vector<NamedMesh> all = testing::SingleBodies();
    std::vector<NamedMesh> more = testing::AwkwardBodies();
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

// The corner nodes of a face in the file's numbering.
std::multiset<int> FaceNodes(const kernel::FaceTopology& topology, int cell, std::size_t face) {
    const kernel::CellShape& shape = topology.Shape(cell);
    std::multiset<int> nodes;
    for (std::size_t c = 0; c < shape.faceCorners[face]; ++c) {
        const int node = topology.Corners(cell)[shape.face[face][c]];
        nodes.insert(topology.fileNode[static_cast<std::size_t>(node)]);
    }
    return nodes;
}

bool HasFace(const kernel::FaceTopology& topology, int cell, const std::multiset<int>& nodes) {
    for (std::size_t f = 0; f < static_cast<std::size_t>(topology.Shape(cell).faces); ++f) {
        if (FaceNodes(topology, cell, f) == nodes) {
            return true;
        }
    }
    return false;
}

TEST(FaceTopology, BoundaryEqualsBruteForceInOrderAndCorners) {
    for (const NamedMesh& named : AllBodies()) {
        const kernel::TopologyResult result = kernel::BuildFaceTopology(named.mesh);
        const auto expected = testing::BruteBoundary(named.mesh);
        ASSERT_EQ(result.boundary.size(), expected.size()) << named.name;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const kernel::BoundaryFace& face = result.boundary[i];
            const std::vector<int> nodes(face.nodes.begin(), face.nodes.begin() + face.corners);
            ASSERT_EQ(nodes, expected[i]) << named.name;
            ASSERT_EQ(face.nodes[3] == -1, face.corners == 3) << named.name;
            if (i > 0) {
                const kernel::BoundaryFace& last = result.boundary[i - 1];
                ASSERT_TRUE(last.cell < face.cell ||
                            (last.cell == face.cell && last.localFace < face.localFace));
            }
        }
    }
}

TEST(FaceTopology, NeighboursShareTheFaceAndKnowEachOther) {
    for (const NamedMesh& named : AllBodies()) {
        const kernel::TopologyResult result = kernel::BuildFaceTopology(named.mesh);
        const kernel::FaceTopology& topology = result.topology;
        std::set<int> boundaryFaces;
        for (int cell = 0; cell < topology.Cells(); ++cell) {
            for (std::size_t f = 0; f < static_cast<std::size_t>(topology.Shape(cell).faces); ++f) {
                const int neighbour = topology.Neighbours(cell)[f];
                const std::multiset<int> nodes = FaceNodes(topology, cell, f);
                if (neighbour >= 0) {
                    ASSERT_TRUE(HasFace(topology, neighbour, nodes)) << named.name;
                } else {
                    ASSERT_TRUE(boundaryFaces.insert(~neighbour).second) << named.name;
                    const kernel::BoundaryFace& face = result.boundary[static_cast<std::size_t>(~neighbour)];
                    ASSERT_EQ(face.cell, topology.fileCell[static_cast<std::size_t>(cell)]) << named.name;
                    ASSERT_EQ(face.localFace, f) << named.name;
                }
            }
        }
        EXPECT_EQ(boundaryFaces.size(), result.boundary.size());
    }
}

TEST(FaceTopology, HoldsEveryCellOnceWithItsPlaces) {
    for (const NamedMesh& named : AllBodies()) {
        const kernel::FaceTopology topology = kernel::BuildFaceTopology(named.mesh).topology;
        std::vector<int> cells = topology.fileCell;
        std::sort(cells.begin(), cells.end());
        for (int cell = 0; cell < named.mesh.Cells(); ++cell) {
            ASSERT_EQ(cells[static_cast<std::size_t>(cell)], cell);
            const int fileCell = topology.fileCell[static_cast<std::size_t>(cell)];
            for (int c = 0; c < topology.Shape(cell).corners; ++c) {
                const int fileNode = named.mesh.Corners(fileCell)[c];
                const int node = topology.Corners(cell)[c];
                ASSERT_EQ(topology.fileNode[static_cast<std::size_t>(node)], fileNode);
                ASSERT_EQ(topology.Place(node), named.mesh.points[static_cast<std::size_t>(fileNode)]);
            }
        }
    }
}

TEST(FaceTopology, DoesNotDependOnTheNumberOfThreads) {
    const int before = omp_get_max_threads();
    testing::BoxMesh box;
    box.blocks = {40, 30, 20};
    box.shuffled = true;
    const kernel::MeshData mesh = BuildBox(box);
    omp_set_num_threads(1);
    const kernel::TopologyResult single = kernel::BuildFaceTopology(mesh);
    for (const int threads : {2, 5, 8}) {
        omp_set_num_threads(threads);
        const kernel::TopologyResult several = kernel::BuildFaceTopology(mesh);
        EXPECT_EQ(several.topology.links, single.topology.links);
        EXPECT_EQ(several.topology.fileCell, single.topology.fileCell);
        EXPECT_EQ(several.topology.fileNode, single.topology.fileNode);
    }
    omp_set_num_threads(before);
}

// The records that meshes of very many cells need, on small ones.
TEST(FaceTopology, WideRecordsGiveTheSame) {
    for (const NamedMesh& named : AllBodies()) {
        kernel::FaceTopology topology = kernel::BuildFaceTopology(named.mesh).topology;
        const std::vector<int> expected = topology.links;
        for (int cell = 0; cell < topology.Cells(); ++cell) {
            for (int f = 0; f < topology.Shape(cell).faces; ++f) {
                int& link = topology.links[topology.Start(cell) +
                                           static_cast<std::size_t>(topology.Shape(cell).corners + f)];
                link = link < 0 ? link : -1;
            }
        }
        const kernel::FaceMatch match = kernel::MatchFaces(topology, 0);
        EXPECT_EQ(topology.links, expected) << named.name;
        EXPECT_EQ(match.folded, topology.foldedCells) << named.name;
        EXPECT_EQ(match.single.size(), static_cast<std::size_t>(topology.boundaryFaces)) << named.name;
    }
}

TEST(FaceTopology, NamesTheOwnersOfAFaceWithThree) {
    kernel::MeshData mesh = testing::SingleCell(kernel::CellType::Tetra);
    mesh.points.push_back({0.0, 0.0, -1.0});
    mesh.points.push_back({0.1, 0.1, 2.0});
    mesh.connectivity = {0, 1, 2, 3, 0, 2, 1, 4, 0, 1, 2, 5};
    mesh.offsets = {0, 4, 8, 12};
    mesh.cellTypes.assign(3, mesh.cellTypes[0]);
    mesh.regions.assign(3, 0);
    try {
        kernel::BuildFaceTopology(mesh);
        FAIL() << "nothing raised";
    } catch (const kernel::MeshFault& fault) {
        EXPECT_STREQ(fault.what(), "face with three or more owners: cells 1, 2, 3");
    }
}

TEST(FaceTopology, TellsFoldedNeighboursFromOthers) {
    kernel::MeshData mesh = testing::SingleCell(kernel::CellType::Tetra);
    mesh.points.push_back({0.1, 0.1, 2.0});
    mesh.connectivity = {0, 1, 2, 3, 0, 1, 2, 4};
    mesh.offsets = {0, 4, 8};
    mesh.cellTypes.assign(2, mesh.cellTypes[0]);
    mesh.regions.assign(2, 0);
    EXPECT_EQ(kernel::BuildFaceTopology(mesh).topology.foldedCells, (std::vector<int>{0, 1}));
    for (const NamedMesh& named : testing::SingleBodies()) {
        EXPECT_TRUE(kernel::BuildFaceTopology(named.mesh).topology.foldedCells.empty()) << named.name;
    }
}

TEST(FaceTopology, TakesAMeshWithoutCells) {
    kernel::MeshData mesh;
    mesh.offsets = {0};
    mesh.points = {{0.0, 0.0, 0.0}};
    const kernel::TopologyResult result = kernel::BuildFaceTopology(mesh);
    EXPECT_EQ(result.topology.Cells(), 0);
    EXPECT_TRUE(result.boundary.empty());
}

}  // namespace
}  // namespace qnl
