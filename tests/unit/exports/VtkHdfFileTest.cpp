#include "exports/VtkHdfFile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ExportSample.h"
#include "hdf5/Hdf5.h"
#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::exports::Storage;
using qnl::hdf5::InputFile;

constexpr std::uint64_t kMost = 1000000;

struct HdfFileTest : testing::TestWithParam<Storage> {
    HdfFileTest() {
        EXPECT_TRUE(
            qnl::exports::WriteHdfSurface(folder.File("x.hdf"), SampleSurface(), SampleFrame(), GetParam()));
    }
    ScratchFolder folder;
};

TEST_P(HdfFileTest, HoldsAGridOfTheFaces) {
    const InputFile file(folder.File("x.hdf"));
    EXPECT_EQ(file.ReadText("/VTKHDF", "Type"), "UnstructuredGrid");
    EXPECT_EQ(file.ReadAttribute<std::int32_t>("/VTKHDF", "Version"), (std::vector<std::int32_t>{1, 0}));
    EXPECT_EQ(file.Read<std::int64_t>("/VTKHDF/NumberOfPoints", kMost), std::vector<std::int64_t>{5});
    EXPECT_EQ(file.Read<std::int64_t>("/VTKHDF/NumberOfCells", kMost), std::vector<std::int64_t>{2});
    EXPECT_EQ(file.Read<std::int64_t>("/VTKHDF/NumberOfConnectivityIds", kMost),
              std::vector<std::int64_t>{7});
    EXPECT_EQ(file.Read<std::int64_t>("/VTKHDF/Connectivity", kMost), SampleSurface().corners);
    EXPECT_EQ(file.Read<std::int64_t>("/VTKHDF/Offsets", kMost), (std::vector<std::int64_t>{0, 4, 7}));
    EXPECT_EQ(file.Read<std::uint8_t>("/VTKHDF/Types", kMost), (std::vector<std::uint8_t>{9, 5}));
    EXPECT_EQ(file.Describe("/VTKHDF/Points").shape, (std::vector<std::uint64_t>{5, 3}));
    EXPECT_EQ(file.Read<float>("/VTKHDF/Points", kMost)[12], 2.0F);
}

TEST_P(HdfFileTest, HoldsTheArraysAndNumbers) {
    const InputFile file(folder.File("x.hdf"));
    EXPECT_EQ(file.List("/VTKHDF/PointData"),
              (std::vector<std::string>{"Node label", "Speed [cm per s]", "Status", "Way [mm]"}));
    EXPECT_EQ(file.Read<std::int32_t>("/VTKHDF/PointData/Node label", kMost), SampleSurface().labels);
    const std::vector<float> speed = file.Read<float>("/VTKHDF/PointData/Speed [cm per s]", kMost);
    EXPECT_EQ(speed[1], 0.1F);
    EXPECT_TRUE(std::isnan(speed[2]));
    EXPECT_EQ(file.Read<std::int32_t>("/VTKHDF/PointData/Status", kMost),
              (std::vector<std::int32_t>{0, 0, 1, 0, 0}));
    EXPECT_EQ(file.Describe("/VTKHDF/PointData/Way [mm]").shape, (std::vector<std::uint64_t>{5, 3}));
    EXPECT_EQ(file.Read<double>("/VTKHDF/FieldData/TimeValue", kMost), std::vector<double>{0.1});
}

INSTANTIATE_TEST_SUITE_P(Storages, HdfFileTest, testing::Values(Storage::Uncompressed, Storage::Compressed));

TEST(WriteHdfSurface, AFileThatCannotBeWrittenIsAFault) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    EXPECT_FALSE(qnl::exports::WriteHdfSurface(folder.File("none/x.hdf"), SampleSurface(), SampleFrame(),
                                               Storage::Uncompressed));
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST(WriteFileSeries, ListsFilesWithExactTimes) {
    const ScratchFolder folder;
    EXPECT_TRUE(qnl::exports::WriteFileSeries(folder.File("x"), {{0.1, "a_0001.hdf"}}));
    EXPECT_EQ(
        folder.Read("x"),
        "{\n  \"file-series-version\": \"1.0\",\n  \"files\": [\n    {\n      \"name\": \"a_0001.hdf\",\n"
        "      \"time\": 0.1\n    }\n  ]\n}\n");
}

}  // namespace
