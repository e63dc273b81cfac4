#include <gtest/gtest.h>

#include <omp.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <set>
#include <vector>

#include "kernel/mesh/MeshFile.h"
#include "platform/CThickGen.h"
#include "platform/Faults.h"
#include "results/ResultFile.h"
#include "support/BruteRay.h"
#include "support/CapturedOutput.h"
#include "support/MeshBuilder.h"
#include "support/ScratchFolder.h"
#include "thickness/WallThickness.h"

namespace {

namespace fs = std::filesystem;
using qnl::testing::BoxMesh;
using qnl::testing::Fill;

/// A plate of 8 x 6 x 2 mm.
qnl::kernel::MeshData Plate(Fill fill) {
    BoxMesh box;
    box.fill = fill;
    box.blocks = {8, 6, 4};
    box.size = {8.0, 6.0, 2.0};
    return qnl::testing::BuildBox(box);
}

bool IsInsideFace(const qnl::kernel::Point& point) {
    const bool away = point[0] > 0.5 && point[0] < 7.5 && point[1] > 0.5 && point[1] < 5.5;
    return away && (point[2] == 0.0 || point[2] == 2.0);
}

bool IsOnBoundary(const qnl::kernel::Point& p) {
    return p[0] == 0.0 || p[0] == 8.0 || p[1] == 0.0 || p[1] == 6.0 || p[2] == 0.0 || p[2] == 2.0;
}

TEST(Thickness, OfAPlateIsThatOfItsWalls) {
    for (const Fill fill : {Fill::Tetra, Fill::Hexa, Fill::Wedge, Fill::Pyramid, Fill::Mixed}) {
        const ScratchFolder folder;
        const qnl::kernel::MeshData mesh = Plate(fill);
        qnl::kernel::WriteMeshFile(mesh, folder.File("plate.hdf"));
        EXPECT_EQ(CThickGen(folder.File("plate.hdf").c_str(), nullptr).m_nStatus, 0);
        const qnl::results::ResultFileContent content =
            qnl::results::ReadResultFile(folder.File("plate.thk"));
        ASSERT_EQ(content.maxNode, mesh.Nodes());
        EXPECT_FALSE(content.hasNodeIds);
        ASSERT_EQ(content.items.size(), 2u);
        EXPECT_EQ(content.items[0].id, 1);
        EXPECT_EQ(content.items[1].id, 2);
        EXPECT_EQ(content.items[0].unit, "mm");
        int inside = 0;
        for (std::size_t i = 0; i < mesh.points.size(); ++i) {
            const float thickness = content.items[0].values[i];
            if (IsInsideFace(mesh.points[i])) {
                EXPECT_NEAR(thickness, 2.0, 1e-6);
                ++inside;
            } else {
                EXPECT_EQ(thickness > 0.0F, IsOnBoundary(mesh.points[i])) << i;
            }
            EXPECT_EQ(content.items[1].values[i] > 0.0F, IsOnBoundary(mesh.points[i])) << i;
        }
        EXPECT_GE(inside, 70);
        EXPECT_EQ(folder.FileCount(), 2u);
    }
}

// Two boxes of different cells that share one corner node, whose normals cancel there.
qnl::kernel::MeshData BoxesAtACorner() {
    BoxMesh box;
    box.fill = Fill::Tetra;
    box.blocks = {3, 2, 2};
    box.size = {3.0, 1.0, 2.0};
    qnl::kernel::MeshData mesh = qnl::testing::BuildBox(box);
    box.fill = Fill::Hexa;
    box.origin = {3.0, 1.0, 2.0};
    qnl::testing::Append(mesh, qnl::testing::BuildBox(box));
    const auto cornerNode =
        static_cast<int>(std::find(mesh.points.begin(), mesh.points.end(), box.origin) - mesh.points.begin());
    for (int& node : mesh.connectivity) {
        node = mesh.points[static_cast<std::size_t>(node)] == box.origin ? cornerNode : node;
    }
    return mesh;
}

// The rule written down once more, from the values along the rays as they stand in the file.
double MeanOfRing(const std::set<int>& ring, const std::vector<float>& alongRay) {
    double sum = 0.0;
    int count = 0;
    for (const int node : ring) {
        const float value = alongRay[static_cast<std::size_t>(node)];
        sum += value > 0.0F ? static_cast<double>(value) : 0.0;
        count += value > 0.0F ? 1 : 0;
    }
    return count > 0 ? sum / count : 0.0;
}

TEST(Thickness, ItsSecondItemIsTheMeanOfTheRing) {
    const ScratchFolder folder;
    const qnl::kernel::MeshData mesh = BoxesAtACorner();
    qnl::kernel::WriteMeshFile(mesh, folder.File("boxes.hdf"));
    ASSERT_EQ(CThickGen(folder.File("boxes.hdf").c_str(), nullptr).m_nStatus, 0);
    const auto items = qnl::results::ReadResultFile(folder.File("boxes.thk")).items;
    std::vector<std::set<int>> rings(mesh.points.size());
    for (const std::vector<int>& face : qnl::testing::BruteBoundary(mesh)) {
        for (std::size_t c = 0; c < face.size(); ++c) {
            const int next = face[(c + 1) % face.size()];
            rings[static_cast<std::size_t>(face[c])].insert(next);
            rings[static_cast<std::size_t>(next)].insert(face[c]);
        }
    }
    int withoutRay = 0;
    int unlikeOwn = 0;
    for (std::size_t node = 0; node < rings.size(); ++node) {
        const double expected = MeanOfRing(rings[node], items[0].values);
        EXPECT_NEAR(items[1].values[node], expected, 1e-6) << node;
        withoutRay += !rings[node].empty() && items[0].values[node] == 0.0F ? 1 : 0;
        unlikeOwn += std::fabs(expected - static_cast<double>(items[0].values[node])) > 0.01 ? 1 : 0;
    }
    EXPECT_EQ(withoutRay, 1) << "the shared corner has no normal";
    EXPECT_GT(unlikeOwn, 20);
}

TEST(Thickness, IsWrittenByLabel) {
    const ScratchFolder folder;
    qnl::kernel::MeshData mesh = qnl::testing::SingleCell(qnl::kernel::CellType::Hexa);
    mesh.labels = {12, 3, 7, 1, 20, 5, 9, 2};
    qnl::kernel::WriteMeshFile(mesh, folder.File("cube.hdf"));
    EXPECT_EQ(CThickGen(folder.File("cube.hdf").c_str(), nullptr).m_nStatus, 0);
    const qnl::results::ResultFileContent content = qnl::results::ReadResultFile(folder.File("cube.thk"));
    ASSERT_EQ(content.maxNode, 20);
    for (int label = 1; label <= 20; ++label) {
        const bool used = std::count(mesh.labels.begin(), mesh.labels.end(), label) > 0;
        const auto entry = static_cast<std::size_t>(label) - 1;
        // From each corner along the diagonal of the unit cube.
        EXPECT_NEAR(content.items[0].values[entry], used ? std::sqrt(3.0) : 0.0, 1e-6) << label;
        EXPECT_NEAR(content.items[1].values[entry], used ? std::sqrt(3.0) : 0.0, 1e-6) << label;
    }
}

TEST(Thickness, DoesNotDependOnTheNumberOfThreads) {
    const ScratchFolder folder;
    BoxMesh box;
    box.fill = Fill::Mixed;
    box.blocks = {8, 5, 3};
    box.map = qnl::testing::Twist(0.05);
    box.shuffled = true;
    qnl::kernel::WriteMeshFile(qnl::testing::BuildBox(box), folder.File("a.hdf"));
    const int threads = omp_get_max_threads();
    omp_set_num_threads(1);
    EXPECT_EQ(CThickGen(folder.File("a.hdf").c_str(), nullptr).m_nStatus, 0);
    const std::string alone = folder.Read("a.thk");
    fs::remove(folder.File("a.thk"));
    omp_set_num_threads(4);
    EXPECT_EQ(CThickGen(folder.File("a.hdf").c_str(), nullptr).m_nStatus, 0);
    EXPECT_EQ(folder.Read("a.thk"), alone);
    omp_set_num_threads(threads);
}

TEST(Thickness, LeavesANewerFileAloneAndReplacesAnOlderOne) {
    const ScratchFolder folder;
    const std::string mesh = folder.File("cube.hdf");
    const std::string thickness = folder.Write("cube.thk", "kept");
    qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(qnl::kernel::CellType::Hexa), mesh);
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(mesh, now);
    fs::last_write_time(thickness, now + std::chrono::seconds(2));
    EXPECT_EQ(CThickGen(mesh.c_str(), nullptr).m_nStatus, 0);
    EXPECT_EQ(folder.Read("cube.thk"), "kept");
    fs::last_write_time(thickness, now);
    EXPECT_EQ(CThickGen(mesh.c_str(), nullptr).m_nStatus, 0);
    EXPECT_NE(folder.Read("cube.thk"), "kept");
}

TEST(Thickness, TellsWhatWentWrong) {
    const ScratchFolder folder;
    const CapturedOutput output;
    EXPECT_EQ(CThickGen(folder.File("missing.hdf").c_str(), nullptr).m_nStatus, 1);
    const std::string text = folder.Write("text.hdf", "no mesh");
    EXPECT_EQ(CThickGen(text.c_str(), nullptr).m_nStatus, 1);
    const std::string mesh = folder.File("cube.hdf");
    qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(qnl::kernel::CellType::Hexa), mesh);
    fs::create_directory(folder.File("cube.thk"));
    fs::last_write_time(folder.File("cube.thk"), fs::last_write_time(mesh) - std::chrono::seconds(2));
    qnl::TakeFaults();
    EXPECT_EQ(CThickGen(mesh.c_str(), nullptr).m_nStatus, 2);
    EXPECT_EQ(qnl::TakeFaults().size(), 1u);
    EXPECT_FALSE(fs::exists(folder.File("missing.thk")));
    EXPECT_FALSE(fs::exists(folder.File("text.thk")));
}

TEST(Thickness, NeedsAnExtension) {
    try {
        const CThickGen generator("mesh", nullptr);
        FAIL() << "status " << generator.m_nStatus;
    } catch (const std::out_of_range& error) {
        EXPECT_NE(std::string(error.what()).find("invalid string position"), std::string::npos);
    }
    EXPECT_THROW(CThickGen(nullptr, nullptr), std::out_of_range);
}

TEST(Thickness, MeansTakePositiveNeighboursOnly) {
    // Two triangles 0 1 2 and 1 3 2 and a triangle 4 5 6 apart.
    const std::vector<qnl::kernel::BoundaryFace> faces = {
        {0, 0, 3, {0, 1, 2, -1}}, {0, 1, 3, {1, 3, 2, -1}}, {1, 0, 3, {4, 5, 6, -1}}};
    const qnl::kernel::BoundaryGraph graph(faces, 7);
    const std::vector<double> values = {1.0, 0.0, 4.0, 7.0, 0.0, 0.0, 0.0};
    const std::vector<double> expected = {4.0, 4.0, 4.0, 4.0, 0.0, 0.0, 0.0};
    EXPECT_EQ(qnl::thickness::PositiveMeansAround(graph, values), expected);
}

}  // namespace
