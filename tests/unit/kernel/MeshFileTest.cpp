#include "kernel/mesh/MeshFile.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "support/MeshBuilder.h"
#include "support/ScratchFolder.h"
#include "unit/kernel/RawMeshFile.h"

namespace {

using qnl::kernel::CellType;
using qnl::kernel::MeshData;
using qnl::kernel::MeshFault;

std::string FaultOf(const std::string& path) {
    try {
        qnl::kernel::ReadMeshFile(path);
    } catch (const MeshFault& fault) {
        return fault.what();
    }
    return "no fault";
}

struct SpoiledCase {
    const char* name;
    std::function<void(RawMeshFile&)> spoil;
    const char* message;
};

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

// Two pieces, a tetra each, that share the face of the labels 11, 12, 13.
void SplitInTwo(RawMeshFile& file) {
    file.pointCounts = {4, 4};
    file.cellCounts = {1, 1};
    file.cornerCounts = {4, 4};
    file.points = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 9, 9, 9, 0, 1, 0, 1, 1, 1};
    file.connectivity = {0, 1, 2, 3, 0, 2, 1, 3};
    file.offsets = {0, 4, 0, 4};
    file.types = {10, 10};
    file.labels = {{11, 12, 13, 14, 12, 11, 13, 20}};
}

const SpoiledCase kSpoiledCases[] = {
    {"Type", [](RawMeshFile& f) { f.type = "ImageData"; },
     "attribute Type of /VTKHDF: expected UnstructuredGrid, found \"ImageData\""},
    {"NegativeCount", [](RawMeshFile& f) { f.cellCounts = {-1}; },
     "/VTKHDF/NumberOfCells[0]: expected 0 to 17179869168, found -1"},
    {"HugeCount", [](RawMeshFile& f) { f.pointCounts = {std::int64_t{1} << 31}; },
     "/VTKHDF/NumberOfPoints: expected at most 2147483646, found 2147483648"},
    {"PieceCounts",
     [](RawMeshFile& f) {
         f.cellCounts = {1, 0};
     },
     "the numbers of pieces disagree: NumberOfPoints has 1, NumberOfCells 2, NumberOfConnectivityIds 1"},
    {"NoPiece", [](RawMeshFile& f) { f.cellCounts = f.pointCounts = f.cornerCounts = {}; },
     "the numbers of pieces disagree: NumberOfPoints has 0, NumberOfCells 0, NumberOfConnectivityIds 0"},
    {"PointCount", [](RawMeshFile& f) { f.pointCounts = {5}; },
     "/VTKHDF/Points: expected 15 values, found 12"},
    {"TwoColumns", [](RawMeshFile& f) { f.columns = 2; },
     "/VTKHDF/Points: expected three columns, found another shape"},
    {"TypeCount",
     [](RawMeshFile& f) {
         f.types = {10, 10};
     },
     "/VTKHDF/Types: expected 1 values, found 2"},
    {"UnsupportedCell", [](RawMeshFile& f) { f.types = {24}; },
     "cell 1: unsupported cell type 24, expected 10 (tetra), 12 (hexa), 13 (wedge) or 14 (pyramid)"},
    {"UnsupportedCellThatWouldFitWrapped", [](RawMeshFile& f) { f.types = {256 + 10}; },
     "cell 1: unsupported cell type 266, expected 10 (tetra), 12 (hexa), 13 (wedge) or 14 (pyramid)"},
    {"FirstOffset",
     [](RawMeshFile& f) {
         f.offsets = {1, 4};
     },
     "/VTKHDF/Offsets[0]: expected 0, found 1"},
    {"LastOffset",
     [](RawMeshFile& f) {
         f.offsets = {0, 5};
     },
     "/VTKHDF/Offsets[1]: expected 4 (end of cell 1), found 5"},
    {"OffsetCount", [](RawMeshFile& f) { f.offsets = {4}; }, "/VTKHDF/Offsets: expected 2 values, found 1"},
    {"CornerCount", [](RawMeshFile& f) { f.cornerCounts = {5}; },
     "/VTKHDF/NumberOfConnectivityIds: expected 4 (sum over the cells), found 5"},
    {"ConnectivityCount",
     [](RawMeshFile& f) {
         f.connectivity = {0, 1, 2};
     },
     "/VTKHDF/Connectivity: expected 4 values, found 3"},
    {"IndexTooLarge", [](RawMeshFile& f) { f.connectivity[2] = 4; },
     "/VTKHDF/Connectivity[2]: expected a point index from 0 to 3, found 4"},
    {"IndexNegative", [](RawMeshFile& f) { f.connectivity[3] = -1; },
     "/VTKHDF/Connectivity[3]: expected a point index from 0 to 3, found -1"},
    {"IndexThatWouldFitWrapped", [](RawMeshFile& f) { f.connectivity[3] = (std::int64_t{1} << 32) + 3; },
     "/VTKHDF/Connectivity[3]: expected a point index from 0 to 3, found 4294967299"},
    {"CornerTwice", [](RawMeshFile& f) { f.connectivity[3] = 1; },
     "cell 1: point 2 stands at two of its corners"},
    {"NanCoordinate", [](RawMeshFile& f) { f.points[4] = kNan; },
     "point 2: expected finite coordinates, found nan"},
    {"InfiniteCoordinate", [](RawMeshFile& f) { f.points[11] = -kInfinity; },
     "point 4: expected finite coordinates, found -inf"},
    {"LabelZero",
     [](RawMeshFile& f) {
         f.labels = {{1, 2, 0, 4}};
     },
     "/VTKHDF/PointData/NodeId of point 3: expected 1 to 2147483646, found 0"},
    {"LabelTooLarge",
     [](RawMeshFile& f) {
         f.labels = {{1, 2, 3, 2147483647}};
     },
     "/VTKHDF/PointData/NodeId of point 4: expected 1 to 2147483646, found 2147483647"},
    {"LabelTwice",
     [](RawMeshFile& f) {
         f.labels = {{5, 6, 7, 5}};
     },
     "duplicate label 5 at the points 1 and 4"},
    {"LabelCount",
     [](RawMeshFile& f) {
         f.labels = {{5, 6, 7}};
     },
     "/VTKHDF/PointData/NodeId: expected 4 values, found 3"},
    {"Region", [](RawMeshFile& f) { f.regions = {{3}}; },
     "/VTKHDF/CellData/Region of cell 1: expected 0, 1 or 2, found 3"},
    {"RegionCount",
     [](RawMeshFile& f) {
         f.regions = {{0, 0}};
     },
     "/VTKHDF/CellData/Region: expected 1 values, found 2"},
    {"ToleranceZero", [](RawMeshFile& f) { f.tolerance = {{0.0}}; },
     "/VTKHDF/FieldData/GeomTolerance: expected a length above 0, found 0.000000"},
    {"ToleranceNan", [](RawMeshFile& f) { f.tolerance = {{kNan}}; },
     "/VTKHDF/FieldData/GeomTolerance: expected a length above 0, found nan"},
    {"ToleranceCount",
     [](RawMeshFile& f) {
         f.tolerance = {{1.0, 2.0}};
     },
     "/VTKHDF/FieldData/GeomTolerance: expected 1 values, found 2"},
    {"PiecesWithoutLabels",
     [](RawMeshFile& f) {
         SplitInTwo(f);
         f.labels.reset();
     },
     "several pieces need /VTKHDF/PointData/NodeId to be joined, and it is missing"},
    {"LabelTwiceInSecondPiece",
     [](RawMeshFile& f) {
         SplitInTwo(f);
         f.labels = {{11, 12, 13, 14, 12, 20, 13, 20}};
     },
     "duplicate label 20 at the points 6 and 8"},
    {"IndexOfOtherPiece",
     [](RawMeshFile& f) {
         SplitInTwo(f);
         f.connectivity[7] = 4;
     },
     "/VTKHDF/Connectivity[7]: expected a point index from 0 to 3, found 4"},
    {"OffsetsThatRunOn",
     [](RawMeshFile& f) {
         SplitInTwo(f);
         f.offsets = {0, 4, 4, 8};
     },
     "/VTKHDF/Offsets[2]: expected 0, found 4"},
};

class SpoiledMeshFile : public testing::TestWithParam<SpoiledCase> {};

TEST_P(SpoiledMeshFile, IsRefusedInOneLine) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile file;
    GetParam().spoil(file);
    file.Write(path);
    EXPECT_EQ(FaultOf(path), "Mesh file " + path + ": " + GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(EachFault, SpoiledMeshFile, testing::ValuesIn(kSpoiledCases),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(MeshFile, NamesAMissingFile) {
    const ScratchFolder folder;
    EXPECT_EQ(FaultOf(folder.File("none.hdf")),
              "Mesh file " + folder.File("none.hdf") + ": not found, or not readable");
    EXPECT_EQ(FaultOf(folder.Path()), "Mesh file " + folder.Path() + ": not found, or not readable");
}

TEST(MeshFile, NamesFilesOfOtherKinds) {
    const ScratchFolder folder;
    folder.Write("a.hdf", "solid cube\n");
    EXPECT_EQ(FaultOf(folder.File("a.hdf")), "Mesh file " + folder.File("a.hdf") + ": not a VTKHDF file");
    folder.Write("b.hdf", "");
    EXPECT_EQ(FaultOf(folder.File("b.hdf")), "Mesh file " + folder.File("b.hdf") + ": not a VTKHDF file");
    qnl::hdf5::OutputFile other(folder.File("c.hdf"));
    other.CreateGroup("/items");
    other.Close();
    EXPECT_EQ(FaultOf(folder.File("c.hdf")),
              "Mesh file " + folder.File("c.hdf") + ": not a VTKHDF file: it has no group /VTKHDF");
    qnl::hdf5::OutputFile bare(folder.File("d.hdf"));
    bare.CreateGroup("/VTKHDF");
    bare.Close();
    EXPECT_EQ(FaultOf(folder.File("d.hdf")),
              "Mesh file " + folder.File("d.hdf") +
                  ": not a VTKHDF file: /VTKHDF lacks the attributes Version and Type");
}

TEST(MeshFile, RefusesEveryTruncation) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    qnl::kernel::WriteMeshFile(qnl::testing::BuildBox({}), path, 4);
    const std::string whole = folder.Read("mesh.hdf");
    for (std::size_t length = 0; length < whole.size(); length += 97) {
        folder.Write("mesh.hdf", whole.substr(0, length));
        const std::string fault = FaultOf(path);
        EXPECT_NE(fault, "no fault") << length;
        EXPECT_EQ(fault.find('\n'), std::string::npos) << fault;
    }
}

TEST(MeshFile, SurvivesFlippedBytes) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    qnl::kernel::WriteMeshFile(qnl::testing::BuildBox({}), path);
    const std::string whole = folder.Read("mesh.hdf");
    int refused = 0;
    for (std::size_t at = 0; at < whole.size(); at += 43) {
        std::string spoiled = whole;
        spoiled[at] = static_cast<char>(spoiled[at] ^ 0x7f);
        folder.Write("mesh.hdf", spoiled);
        refused += FaultOf(path) == "no fault" ? 0 : 1;
    }
    EXPECT_GT(refused, 15);
}

TEST(MeshFile, NamesAMissingDataset) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    qnl::hdf5::OutputFile file(path);
    file.CreateGroup("/VTKHDF");
    file.WriteArray<std::int32_t>("/VTKHDF", "Version", {1, 0});
    file.WriteText("/VTKHDF", "Type", "UnstructuredGrid");
    file.Close();
    const std::string expected =
        "Mesh file " + path + ": /VTKHDF/NumberOfPoints: cannot be opened as a dataset";
    EXPECT_EQ(FaultOf(path).substr(0, expected.size()), expected);
}

TEST(MeshFile, RefusesASizeThatIsOnlyAnnounced) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile raw;
    raw.pointCounts = {100000000};
    raw.points = {};
    raw.Write(path);
    const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
    H5Ldelete(file, "/VTKHDF/Points", H5P_DEFAULT);
    const hsize_t extents[2] = {100000000, 3};
    const hid_t space = H5Screate_simple(2, extents, nullptr);
    const hid_t data =
        H5Dcreate2(file, "/VTKHDF/Points", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    H5Dclose(data);
    H5Sclose(space);
    H5Fclose(file);
    EXPECT_EQ(FaultOf(path), "Mesh file " + path +
                                 ": /VTKHDF/Points: announces 300000000 values, but only 0 bytes are stored");
}

TEST(MeshFile, JoinsPiecesByLabel) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile raw;
    SplitInTwo(raw);
    raw.regions = {{0, 1}};
    raw.Write(path);
    const MeshData mesh = qnl::kernel::ReadMeshFile(path);
    EXPECT_EQ(mesh.labels, (std::vector<int>{11, 12, 13, 14, 20}));
    EXPECT_EQ(mesh.connectivity, (std::vector<int>{0, 1, 2, 3, 1, 2, 0, 4}));
    EXPECT_EQ(mesh.offsets, (std::vector<std::int64_t>{0, 4, 8}));
    EXPECT_EQ(mesh.regions, (std::vector<std::int8_t>{0, 1}));
    ASSERT_EQ(mesh.Nodes(), 5);
    EXPECT_EQ(mesh.points[0], (qnl::kernel::Point{0, 0, 0})) << "the first appearance sets the place";
    EXPECT_EQ(mesh.points[4], (qnl::kernel::Point{1, 1, 1}));
}

TEST(MeshFile, NamesTheFirstLabelGivenTwice) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile raw;
    SplitInTwo(raw);
    raw.labels = {{13, 12, 11, 14, 12, 30, 30, 12}};
    raw.Write(path);
    EXPECT_EQ(FaultOf(path), "Mesh file " + path + ": duplicate label 30 at the points 6 and 7");
    raw.labels = {{13, 12, 11, 14, 30, 12, 12, 30}};
    raw.Write(path);
    EXPECT_EQ(FaultOf(path), "Mesh file " + path + ": duplicate label 12 at the points 6 and 7");
}

TEST(MeshFile, ReadsAnEmptyPiece) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile raw;
    raw.pointCounts = {0, 4};
    raw.cellCounts = {0, 1};
    raw.cornerCounts = {0, 4};
    raw.offsets = {0, 0, 4};
    raw.labels = {{4, 3, 2, 1}};
    raw.Write(path);
    const MeshData mesh = qnl::kernel::ReadMeshFile(path);
    EXPECT_EQ(mesh.labels, (std::vector<int>{4, 3, 2, 1}));
    EXPECT_EQ(mesh.connectivity, (std::vector<int>{0, 1, 2, 3}));
}

TEST(MeshFile, OptionalDatasetsMayBeAbsent) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    RawMeshFile().Write(path);
    const MeshData mesh = qnl::kernel::ReadMeshFile(path);
    EXPECT_TRUE(mesh.labels.empty());
    EXPECT_EQ(mesh.regions, (std::vector<std::int8_t>{0}));
    EXPECT_FALSE(mesh.geomTolerance.has_value());
    EXPECT_FALSE(mesh.singlePrecision);
}

class WrittenMeshFile : public testing::TestWithParam<unsigned> {};

// A mixed mesh with everything that a file can hold, its coordinates exact in single precision.
MeshData FullMesh() {
    qnl::testing::BoxMesh box;
    box.fill = qnl::testing::Fill::Mixed;
    box.blocks = {8, 2, 2};
    box.region = [](const qnl::kernel::Point& p) { return p[0] < 0.3 ? 1 : (p[0] > 0.8 ? 2 : 0); };
    MeshData mesh = BuildBox(box);
    for (int node = 0; node < mesh.Nodes(); ++node) {
        mesh.labels.push_back(1000 - node);
    }
    mesh.geomTolerance = 0.25;
    return mesh;
}

TEST_P(WrittenMeshFile, ReadsBackTheSame) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    MeshData mesh = FullMesh();
    mesh.singlePrecision = GetParam() == 6;
    qnl::kernel::WriteMeshFile(mesh, path, GetParam());
    const MeshData read = qnl::kernel::ReadMeshFile(path);
    EXPECT_EQ(read.points, mesh.points);
    EXPECT_EQ(read.singlePrecision, mesh.singlePrecision);
    EXPECT_EQ(read.cellTypes, mesh.cellTypes);
    EXPECT_EQ(read.offsets, mesh.offsets);
    EXPECT_EQ(read.regions, mesh.regions);
    EXPECT_EQ(read.labels, mesh.labels);
    EXPECT_EQ(read.geomTolerance, mesh.geomTolerance);
    const std::string first = folder.Read("mesh.hdf");
    qnl::kernel::WriteMeshFile(mesh, path, GetParam());
    EXPECT_EQ(folder.Read("mesh.hdf"), first) << "the same bytes every time";
    EXPECT_EQ(folder.FileCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Deflate, WrittenMeshFile, testing::Values(0u, 6u));

TEST(MeshFile, WritesWedgesInTheOrderOfTheLayout) {
    const ScratchFolder folder;
    const std::string path = folder.File("mesh.hdf");
    qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(CellType::Wedge), path);
    EXPECT_EQ(qnl::kernel::ReadMeshFile(path).connectivity, (std::vector<int>{3, 4, 5, 0, 1, 2}));
}

}  // namespace
