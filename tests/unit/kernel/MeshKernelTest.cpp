#include <gtest/gtest.h>
#include <omp.h>

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "kernel/mesh/MeshFile.h"
#include "platform/CQNLOptKer.h"
#include "platform/Faults.h"
#include "support/MeshBuilder.h"
#include "support/Sanitizers.h"
#include "support/ScratchFolder.h"
#include "unit/kernel/RawMeshFile.h"

namespace {

using qnl::kernel::CellType;
using qnl::kernel::MeshData;
using qnl::testing::Fill;

int Read(CQNLOptKer& kernel, std::string path) {
    return kernel.ReadMeshData(path.data(), 0);
}

// Status and what stands on standard output.
std::pair<int, std::string> ReadAloud(CQNLOptKer& kernel, const std::string& path) {
    testing::internal::CaptureStdout();
    const int status = Read(kernel, path);
    return {status, testing::internal::GetCapturedStdout()};
}

// Loads a generated mesh through a file.
class MeshKernel : public testing::Test {
protected:
    void Load(const MeshData& mesh) {
        qnl::kernel::WriteMeshFile(mesh, path_);
        ASSERT_EQ(Read(kernel_, path_), 1);
    }
    std::vector<int> Near(const std::array<double, 6>& box, int slot = 0) {
        int count = -1;
        const int* ids =
            kernel_.SearchNearBlockID(box[0], box[1], box[2], box[3], box[4], box[5], count, slot);
        return {ids, ids + count};
    }
    // Ids of the entities whose records' boxes overlap.
    std::vector<int> NearByRecords(const std::array<double, 6>& box) const {
        std::vector<int> ids;
        for (int id = 1; id <= kernel_.m_nSurfaces + kernel_.m_nCells; ++id) {
            const EntityRecord& record =
                id <= kernel_.m_nSurfaces ? kernel_.p_Surfce[id] : kernel_.p_Cell[id - kernel_.m_nSurfaces];
            bool overlap = true;
            for (std::size_t a = 0; a < 3; ++a) {
                overlap = overlap && record.boxMin[a] <= box[a + 3] && box[a] <= record.boxMax[a];
            }
            if (overlap) {
                ids.push_back(id);
            }
        }
        return ids;
    }
    ScratchFolder folder_;
    std::string path_ = folder_.File("mesh.hdf");
    CQNLOptKer kernel_;
};

// Pages of memory that the process holds, in bytes; 0 where the system does not tell.
std::size_t ResidentBytes() {
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident * 4096;
}

TEST_F(MeshKernel, SparseLabelsCostWhatTheNodesCost) {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    const int largest = 1 << 28;
    if (QNL_THREAD_SANITIZER != 0) {
        GTEST_SKIP() << "this build makes memory resident that nobody touched";
    }
    mesh.labels = {7, largest, 70000000, 140000000};
    const std::size_t before = ResidentBytes();
    Load(mesh);
    EXPECT_LT(ResidentBytes(), before + (std::size_t{64} << 20));
    EXPECT_EQ(kernel_.m_pNodeGlobalIdToLocal[largest], 2);
    EXPECT_EQ(kernel_.m_pNodeGlobalIdToLocal[largest - 1], 0);
    EXPECT_EQ(kernel_.m_pIsPartNodeTemp[140000000], 1);
    EXPECT_EQ(kernel_.m_pNotRunnerNode[7], 1);
}

std::size_t Threads() {
    std::error_code absent;
    const std::filesystem::directory_iterator tasks("/proc/self/task", absent);
    return absent ? 0 : static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

// A fresh thread, whose teams are its own; the cells are more than one thread sorts alone.
TEST_F(MeshKernel, ReadsWithTheNumberOfThreadsThatIsSet) {
    qnl::testing::BoxMesh box;
    box.blocks = {30, 30, 30};
    qnl::kernel::WriteMeshFile(BuildBox(box), path_);
    std::thread([&] {
        omp_set_num_threads(1);
        const std::size_t before = Threads();
        EXPECT_EQ(Read(kernel_, path_), 1);
        EXPECT_EQ(Threads(), before);
    }).join();
    EXPECT_EQ(kernel_.m_nCells, 162000);
}

TEST_F(MeshKernel, FillsItsMembers) {
    MeshData mesh = qnl::testing::SingleCell(CellType::Hexa);
    qnl::testing::Append(mesh, qnl::testing::SingleCell(CellType::Tetra));
    for (std::size_t i = 8; i < 12; ++i) {
        mesh.points[i][2] += 5.0;
    }
    mesh.points.push_back({-1.0, 0.0, 9.0});
    mesh.regions = {0, 2};
    mesh.labels = {11, 12, 13, 14, 15, 16, 17, 18, 4, 3, 2, 1, 30};
    Load(mesh);
    EXPECT_EQ(kernel_.m_nNodes, 13);
    EXPECT_EQ(kernel_.m_nCells, 2);
    EXPECT_EQ(kernel_.m_nSurfaces, 10);
    EXPECT_EQ(kernel_.m_bUseNodeLabel, 1);
    EXPECT_EQ(kernel_.p_Node[1].label, 11);
    EXPECT_EQ(kernel_.p_Node[9].label, 4);
    EXPECT_EQ(kernel_.p_Node[12].z, 6.0);
    EXPECT_EQ(kernel_.m_pIsPartNodeTemp[18], 1);
    EXPECT_EQ(kernel_.m_pNotRunnerNode[2], -1);
    EXPECT_EQ(kernel_.m_pNotRunnerNode[30], 0);
    EXPECT_EQ(kernel_.m_pNodeGlobalIdToLocal[30], 13);
    EXPECT_EQ(kernel_.m_pIsRunnerCell[1], 0);
    EXPECT_EQ(kernel_.m_pIsRunnerCell[2], 1);
    EXPECT_EQ((std::vector<double>(kernel_.m_dBox, kernel_.m_dBox + 6)),
              (std::vector<double>{1, 1, 9, -1, 0, 0}));
    EXPECT_NEAR(kernel_.m_dGeomTolerance, 1.0 / 6.0, 1e-15);
    EXPECT_NEAR(kernel_.m_dMeshSize, (12.0 + 3.0 + 3.0 * std::sqrt(2.0)) / 18.0, 1e-15);
    EXPECT_EQ(kernel_.p_Cell[2].zMiddle, 5.5);
}

TEST_F(MeshKernel, OrdersFacesByCellThenLocalFace) {
    MeshData mesh = qnl::testing::SingleCell(CellType::Hexa);
    Load(mesh);
    const std::vector<std::vector<int>> expected{{1, 4, 3, 2}, {5, 6, 7, 8}, {1, 2, 6, 5},
                                                 {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}};
    ASSERT_EQ(kernel_.m_nSurfaces, 6);
    for (int i = 1; i <= 6; ++i) {
        const SurfaceRecord& face = kernel_.p_Surfce[i];
        EXPECT_EQ((std::vector<int>(face.nodes + 1, face.nodes + 1 + face.nNode)),
                  expected[static_cast<std::size_t>(i) - 1]);
    }
}

TEST_F(MeshKernel, WithoutLabelsTheIndexIsTheLabel) {
    Load(qnl::testing::SingleCell(CellType::Wedge));
    EXPECT_EQ(kernel_.m_bUseNodeLabel, 0);
    EXPECT_EQ(kernel_.p_Node[6].label, 6);
    EXPECT_EQ(kernel_.m_pNodeGlobalIdToLocal[6], 6);
    EXPECT_EQ(kernel_.m_pNodeGlobalIdToLocal[0], 0);
}

TEST_F(MeshKernel, TheFileMaySetTheTolerance) {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    mesh.geomTolerance = 0.75;
    Load(mesh);
    EXPECT_EQ(kernel_.m_dGeomTolerance, 0.75);
}

TEST_F(MeshKernel, CountsTurnedCellsAndLonelyNodesWhenLogging) {
    RawMeshFile raw;
    raw.connectivity = {0, 1, 3, 2};
    raw.pointCounts = {5};
    raw.points.insert(raw.points.end(), {7, 7, 7});
    raw.Write(path_);
    EXPECT_EQ(ReadAloud(kernel_, path_), std::make_pair(1, std::string()));
    kernel_.m_nLogLevel = 1;
    EXPECT_EQ(ReadAloud(kernel_, path_),
              std::make_pair(1, std::string("Cells of negative volume that were turned: 1\n"
                                            "Nodes in no cell: 1\n")));
    EXPECT_EQ((std::vector<int>(kernel_.p_Cell[1].nodes + 1, kernel_.p_Cell[1].nodes + 5)),
              (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(kernel_.m_nNodes, 5);
}

TEST_F(MeshKernel, TurnedWedgesAreNotCounted) {
    qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(CellType::Wedge), path_);
    kernel_.m_nLogLevel = 1;
    EXPECT_EQ(ReadAloud(kernel_, path_), std::make_pair(1, std::string()));
}

struct RefusedMesh {
    const char* name;
    MeshData mesh;
    const char* message;
};

MeshData TetrasOnOneFace() {
    MeshData mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 2}, {0, 0, -1}};
    mesh.cellTypes = {10, 10, 10};
    mesh.regions = {0, 0, 0};
    mesh.offsets = {0, 4, 8, 12};
    mesh.connectivity = {0, 1, 2, 3, 0, 1, 2, 4, 0, 2, 1, 5};
    return mesh;
}

MeshData RunnerOnly() {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    mesh.regions = {1};
    return mesh;
}

MeshData NoCells() {
    MeshData mesh;
    mesh.offsets = {0};
    return mesh;
}

MeshData FlatTetra() {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    mesh.points[3] = {1, 1, 0};
    return mesh;
}

// Two cells with the same corners: each face has two owners.
MeshData ClosedOnItself() {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    mesh.cellTypes = {10, 10};
    mesh.regions = {0, 0};
    mesh.offsets = {0, 4, 8};
    mesh.connectivity = {0, 1, 2, 3, 0, 1, 2, 3};
    return mesh;
}

// A part cell with a runner cell on each of its faces.
MeshData PartInside() {
    MeshData mesh = qnl::testing::SingleCell(CellType::Tetra);
    mesh.points.insert(mesh.points.end(), {{0.2, 0.2, -1}, {0.2, -1, 0.2}, {1, 1, 1}, {-1, 0.2, 0.2}});
    mesh.cellTypes.assign(5, 10);
    mesh.regions = {0, 1, 1, 1, 1};
    mesh.offsets = {0, 4, 8, 12, 16, 20};
    mesh.connectivity = {0, 1, 2, 3, 0, 2, 1, 4, 0, 1, 3, 5, 1, 2, 3, 6, 0, 3, 2, 7};
    return mesh;
}

const RefusedMesh kRefusedMeshes[] = {
    {"ThreeOwners", TetrasOnOneFace(), "face with three or more owners: cells 1, 2, 3"},
    {"RunnerOnly", RunnerOnly(), "no cell of region 0 (part) among its 1 cells"},
    {"NoCells", NoCells(), "no cell of region 0 (part) among its 0 cells"},
    {"FlatTetra", FlatTetra(), "cell 1 has zero volume"},
    {"ClosedOnItself", ClosedOnItself(), "no boundary face: every face has two owners"},
    {"PartInside", PartInside(),
     "no boundary face belongs to the part, so that its modulus cannot be formed"},
};

TEST_F(MeshKernel, RefusesUnusableMeshesAndFillsNothing) {
    for (const RefusedMesh& refused : kRefusedMeshes) {
        qnl::kernel::WriteMeshFile(refused.mesh, path_);
        CQNLOptKer kernel;
        qnl::TakeFaults();
        const auto [status, text] = ReadAloud(kernel, path_);
        EXPECT_LT(status, 0) << refused.name;
        EXPECT_EQ(text, "Mesh file " + path_ + ": " + refused.message + "\n") << refused.name;
        EXPECT_EQ(kernel.p_Node, nullptr);
        EXPECT_EQ(kernel.m_nCells, 0);
        const std::vector<qnl::Fault> faults = qnl::TakeFaults();
        ASSERT_EQ(faults.size(), 1u) << refused.name;
        EXPECT_EQ(faults[0].file, path_);
    }
}

TEST_F(MeshKernel, AFailedReadKeepsTheEarlierMesh) {
    Load(qnl::testing::SingleCell(CellType::Hexa));
    EXPECT_LT(ReadAloud(kernel_, folder_.File("none.hdf")).first, 0);
    EXPECT_EQ(kernel_.m_nNodes, 8);
    EXPECT_EQ(kernel_.p_Node[7].x, 1.0);
}

TEST_F(MeshKernel, GivesNormalsToBoundaryNodesOnly) {
    qnl::testing::BoxMesh box;
    box.fill = Fill::Hexa;
    box.blocks = {2, 2, 2};
    Load(BuildBox(box));
    std::vector<double> x(28, 7.0);
    std::vector<double> y(28, 7.0);
    std::vector<double> z(28, 7.0);
    kernel_.ComputeNodeSurfaceNormal(x.data(), y.data(), z.data());
    EXPECT_EQ(x[0], 7.0);
    EXPECT_EQ(z[14], 7.0) << "the middle node";
    EXPECT_EQ(z[5], -1.0) << "the middle of the lower side";
    EXPECT_EQ(x[5], 0.0);
    EXPECT_EQ(x[2], 0.0) << "the middle of an edge along x";
    EXPECT_NEAR(y[2], -std::sqrt(0.5), 3e-11);
    EXPECT_EQ(y[2], z[2]);
}

TEST_F(MeshKernel, SmoothsBoundaryNodesOnly) {
    qnl::testing::BoxMesh box;
    box.fill = Fill::Hexa;
    box.blocks = {2, 2, 2};
    Load(BuildBox(box));
    std::vector<double> values(28, 0.0);
    values[0] = 5.0;
    values[1] = 4.0;
    values[14] = 9.0;
    kernel_.SmoothSurfaceNodeValue(values.data(), 1);
    EXPECT_EQ(values[0], 5.0);
    EXPECT_EQ(values[1], 1.0);
    EXPECT_EQ(values[2], 0.8);
    EXPECT_EQ(values[14], 9.0);
}

TEST_F(MeshKernel, ItsTreeHoldsEveryFaceAndCell) {
    qnl::testing::BoxMesh box;
    box.fill = Fill::Mixed;
    box.blocks = {8, 3, 3};
    box.jiggle = 0.2;
    box.shuffled = true;
    Load(BuildBox(box));
    for (int i = 0; i < 50; ++i) {
        const double x = i / 49.0;
        const double y = (i * 7 % 50) / 49.0;
        const double z = (i * 13 % 50) / 49.0;
        const std::array<double, 6> query{x - 1e-4, y - 1e-4, z - 1e-4, x + 1e-4, y + 1e-4, z + 1e-4};
        EXPECT_EQ(Near(query, i % 3), NearByRecords(query)) << i;
    }
    EXPECT_EQ(Near({-9, -9, -9, 9, 9, 9}).size(),
              static_cast<std::size_t>(kernel_.m_nSurfaces + kernel_.m_nCells));
}

TEST_F(MeshKernel, ASetRangeEmptiesTheTree) {
    Load(qnl::testing::SingleCell(CellType::Hexa));
    kernel_.SetADTreeRange(2, 2, 2, -1, -1, -1, 1, 10000, 200000);
    EXPECT_TRUE(Near({-9, -9, -9, 9, 9, 9}).empty());
    kernel_.AddSurfaceToADTree(3, 5, 5, 5, 6, 6, 6);
    EXPECT_EQ(Near({-9, -9, -9, 9, 9, 9}), std::vector<int>{3}) << "also outside the range";
}

TEST_F(MeshKernel, SlotsKeepTheirResults) {
    kernel_.SetADTreeRange(2, 2, 2, -1, -1, -1, 1, 10000, 200000);
    kernel_.AddSurfaceToADTree(1, 0, 0, 0, 1, 1, 1);
    kernel_.AddSurfaceToADTree(2, 2, 2, 2, 3, 3, 3);
    int firstCount = 0;
    int secondCount = 0;
    const int* first = kernel_.SearchNearBlockID(0, 0, 0, 1, 1, 1, firstCount, 0);
    const int* second = kernel_.SearchNearBlockID(2, 2, 2, 3, 3, 3, secondCount, 5);
    ASSERT_EQ(firstCount, 1);
    ASSERT_EQ(secondCount, 1);
    EXPECT_EQ(first[0], 1);
    EXPECT_EQ(second[0], 2);
}

TEST_F(MeshKernel, ThreadsMaySearchTheTreeAtOnce) {
    qnl::testing::BoxMesh box;
    box.blocks = {6, 6, 6};
    Load(BuildBox(box));
    const std::vector<int> expected = NearByRecords({0.2, 0.2, 0.2, 0.4, 0.5, 0.6});
    std::array<int, 4> differences{};
    std::vector<std::thread> threads;
    for (int slot = 0; slot < 4; ++slot) {
        threads.emplace_back([&, slot] {
            for (int i = 0; i < 200; ++i) {
                differences[static_cast<std::size_t>(slot)] +=
                    Near({0.2, 0.2, 0.2, 0.4, 0.5, 0.6}, slot) == expected ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, (std::array<int, 4>{}));
}

TEST_F(MeshKernel, FindsTheElementsOfARay) {
    qnl::testing::BoxMesh box;
    box.fill = Fill::Hexa;
    box.blocks = {1, 1, 4};
    Load(BuildBox(box));
    kernel_.InitialzeSearch(2);
    int count = 0;
    const int* ids = kernel_.FindPassElemByAnyRay(count, 0.5, 0.5, 1.0, 0.0, 0.0, -1.0, 1);
    ASSERT_EQ(count, 6) << "the upper and the lower face, and four cells";
    const int faces = kernel_.m_nSurfaces;
    EXPECT_EQ((std::vector<int>(ids + 2, ids + 6)),
              (std::vector<int>{faces + 1, faces + 2, faces + 3, faces + 4}));
}

TEST_F(MeshKernel, SortsWithItsOwnTolerance) {
    Load(qnl::testing::SingleCell(CellType::Hexa));
    double keys[] = {0, 2.0, 1.0 + 0.9e-8, 1.0, 1.0 + 3e-8};
    int ids[] = {0, 1, 2, 3, 4};
    kernel_.shellSorting(4, keys, ids);
    EXPECT_EQ((std::vector<int>(ids + 1, ids + 5)), (std::vector<int>{2, 3, 4, 1}));
}

TEST(EmptyMeshKernel, AnswersWithNothing) {
    CQNLOptKer kernel;
    int count = 5;
    kernel.FindPassElemByAnyRay(count, 0, 0, 0, 1, 0, 0, 0);
    EXPECT_EQ(count, 0);
    kernel.SearchNearBlockID(0, 0, 0, 1, 1, 1, count, 0);
    EXPECT_EQ(count, 0);
    double value = 3.0;
    kernel.SmoothSurfaceNodeValue(&value, 2);
    EXPECT_EQ(value, 3.0);
}

class ArgumentWords : public testing::Test {
protected:
    int Handle(std::vector<std::string> words) {
        std::vector<char*> pointers;
        for (std::string& word : words) {
            pointers.push_back(word.data());
        }
        for (auto& buffer : buffers_) {
            std::strcpy(buffer.data(), "old");
        }
        CQNLOptKer kernel;
        return kernel.argumentHandle(static_cast<int>(pointers.size()), pointers.data(), buffers_[0].data(),
                                     buffers_[1].data(), buffers_[2].data(), buffers_[3].data(),
                                     buffers_[4].data(), buffers_[5].data());
    }
    std::array<std::array<char, 255>, 6> buffers_{};
};

TEST_F(ArgumentWords, AreCopiedInOrder) {
    EXPECT_EQ(Handle({"a.k4f", "C:\\p", "n", "4", "1"}), 5);
    const char* const expected[] = {"a.k4f", "C:\\p", "n", "4", "1", ""};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_STREQ(buffers_[i].data(), expected[i]);
    }
    EXPECT_EQ(Handle({"a", "b", "c", "d", "e", "f", "g"}), 6);
    EXPECT_STREQ(buffers_[5].data(), "f");
    EXPECT_EQ(Handle({}), 0);
    EXPECT_STREQ(buffers_[0].data(), "");
}

TEST_F(ArgumentWords, AWordThatDoesNotFitChangesNothing) {
    EXPECT_THROW(Handle({"a", std::string(255, 'x')}), std::length_error);
    EXPECT_STREQ(buffers_[0].data(), "old");
    EXPECT_EQ(Handle({"a", std::string(254, 'x')}), 2);
    EXPECT_EQ(std::strlen(buffers_[1].data()), 254u);
}

}  // namespace
