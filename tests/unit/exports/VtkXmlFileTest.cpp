#include "exports/VtkXmlFile.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <cstring>
#include <tuple>

#include "ExportSample.h"
#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::exports::ExportFrame;
using qnl::exports::ExportSurface;
using qnl::exports::Storage;
using qnl::exports::VtkKind;

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// One written file, its XML and the bytes behind it.
struct Written {
    explicit Written(const std::string& content) {
        const std::string mark = "<AppendedData encoding=\"raw\">\n_";
        const std::size_t begin = content.find(mark);
        EXPECT_NE(begin, std::string::npos);
        head = content.substr(0, begin);
        bytes = content.substr(begin + mark.size());
    }
    std::vector<std::uint64_t> Words(std::size_t offset, std::size_t count) const {
        std::vector<std::uint64_t> words(count);
        std::memcpy(words.data(), bytes.data() + offset, count * sizeof(std::uint64_t));
        return words;
    }
    template <typename Value>
    std::vector<Value> Values(std::size_t offset, std::size_t count) const {
        EXPECT_EQ(Words(offset, 1)[0], count * sizeof(Value));
        std::vector<Value> values(count);
        std::memcpy(values.data(), bytes.data() + offset + sizeof(std::uint64_t), count * sizeof(Value));
        return values;
    }

    std::string head;
    std::string bytes;
};

Written WriteSurface(VtkKind kind, const ExportSurface& surface, const ExportFrame& frame, Storage storage) {
    const ScratchFolder folder;
    EXPECT_TRUE(qnl::exports::WriteVtkSurface(folder.File("x"), kind, surface, frame, storage));
    return Written(folder.Read("x"));
}

TEST(WriteVtkSurface, ArraysStandBehindEachOtherAfterTheirLengths) {
    const Written file =
        WriteSurface(VtkKind::PolyData, SampleSurface(), SampleFrame(), Storage::Uncompressed);
    EXPECT_TRUE(Holds(file.head, "<Piece NumberOfPoints=\"5\" NumberOfPolys=\"2\">"));
    EXPECT_TRUE(Holds(file.head, "Name=\"TimeValue\" NumberOfTuples=\"1\" format=\"ascii\">0.1<"));
    EXPECT_FALSE(Holds(file.head, "compressor"));
    EXPECT_TRUE(Holds(
        file.head,
        "type=\"Int32\" Name=\"Node label\" NumberOfComponents=\"1\" format=\"appended\" offset=\"0\""));
    EXPECT_EQ(file.Values<int>(0, 5), (std::vector<int>{11, 12, 13, 14, 15}));
    EXPECT_TRUE(Holds(
        file.head, "Name=\"Speed [cm per s]\" NumberOfComponents=\"1\" format=\"appended\" offset=\"28\""));
    const std::vector<float> speed = file.Values<float>(28, 5);
    EXPECT_EQ(speed[1], 0.1F);
    EXPECT_TRUE(std::isnan(speed[2]));
    EXPECT_EQ(file.Values<int>(56, 5), (std::vector<int>{0, 0, 1, 0, 0}));
    EXPECT_TRUE(
        Holds(file.head, "Name=\"Way [mm]\" NumberOfComponents=\"3\" format=\"appended\" offset=\"84\""));
    EXPECT_EQ(file.Values<float>(84, 15)[4], 5.0F);
    EXPECT_TRUE(
        Holds(file.head, "Name=\"Points\" NumberOfComponents=\"3\" format=\"appended\" offset=\"152\""));
    EXPECT_EQ(file.Values<float>(152, 15)[14], 0.1F);
    EXPECT_EQ(file.Values<std::int64_t>(220, 7), SampleSurface().corners);
    EXPECT_EQ(file.Values<std::int64_t>(284, 2), SampleSurface().ends);
    EXPECT_EQ(file.bytes.substr(308), "\n</AppendedData>\n</VTKFile>\n");
}

TEST(WriteVtkSurface, AGridTellsTheTypesOfItsCells) {
    const Written file = WriteSurface(VtkKind::UnstructuredGrid, SampleSurface(), {}, Storage::Uncompressed);
    EXPECT_TRUE(Holds(file.head, "<Piece NumberOfPoints=\"5\" NumberOfCells=\"2\">"));
    EXPECT_TRUE(
        Holds(file.head, "Name=\"types\" NumberOfComponents=\"1\" format=\"appended\" offset=\"184\""));
    EXPECT_EQ(file.Values<std::uint8_t>(184, 2), (std::vector<std::uint8_t>{9, 5}));
}

TEST(WriteVtkSurface, NamesAreSafeInXml) {
    ExportFrame frame;
    frame.arrays.push_back({"a<b & \"c\"", 1, std::vector<int>(5)});
    EXPECT_TRUE(Holds(WriteSurface(VtkKind::PolyData, SampleSurface(), frame, Storage::Uncompressed).head,
                      "Name=\"a&lt;b &amp; &quot;c&quot;\""));
}

/// Inflates the blocks of the array at an offset, after checking the words before them.
std::string Inflated(const Written& file, std::size_t offset, const std::vector<std::size_t>& lengths,
                     std::uint64_t lastPart) {
    constexpr std::uint64_t kBlock = 262144;
    const std::size_t blocks = lengths.size();
    const std::vector<std::uint64_t> head = file.Words(offset, 3 + blocks);
    EXPECT_EQ(head[0], blocks);
    EXPECT_EQ(head[1], kBlock);
    EXPECT_EQ(head[2], lastPart);
    std::size_t place = offset + (3 + blocks) * sizeof(std::uint64_t);
    std::string all;
    for (std::size_t k = 0; k < blocks; ++k) {
        std::string block(lengths[k], '\0');
        uLongf length = static_cast<uLongf>(block.size());
        EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(block.data()), &length,
                             reinterpret_cast<const Bytef*>(file.bytes.data() + place),
                             static_cast<uLong>(head[3 + k])),
                  Z_OK);
        EXPECT_EQ(length, lengths[k]);
        place += static_cast<std::size_t>(head[3 + k]);
        all += block;
    }
    return all;
}

std::string BytesOf(const std::vector<float>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(float)};
}

TEST(WriteVtkSurface, CompressedArraysAreBlocksAfterTheirSizes) {
    ExportSurface surface = SampleSurface();
    surface.labels.clear();
    for (const auto& [count, lengths, lastPart] :
         {std::tuple(std::size_t{5}, std::vector<std::size_t>{20}, std::uint64_t{20}),
          std::tuple(std::size_t{65536}, std::vector<std::size_t>{262144}, std::uint64_t{0}),
          std::tuple(std::size_t{70000}, std::vector<std::size_t>{262144, 17856}, std::uint64_t{17856}),
          std::tuple(std::size_t{0}, std::vector<std::size_t>{}, std::uint64_t{0})}) {
        std::vector<float> values(count);
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = static_cast<float>(i % 1000) * 0.1F;
        }
        ExportFrame frame;
        frame.arrays.push_back({"Values", 1, values});
        const Written file = WriteSurface(VtkKind::PolyData, surface, frame, Storage::Compressed);
        EXPECT_TRUE(Holds(file.head, "compressor=\"vtkZLibDataCompressor\""));
        EXPECT_EQ(Inflated(file, 0, lengths, lastPart), BytesOf(values));
    }
}

TEST(WriteVtkSurface, AFileThatCannotBeWrittenIsAFault) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    EXPECT_FALSE(qnl::exports::WriteVtkSurface(folder.File("none/x.vtp"), VtkKind::PolyData, SampleSurface(),
                                               {}, Storage::Uncompressed));
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST(WriteVtkLines, CellsAreLines) {
    const ScratchFolder folder;
    EXPECT_TRUE(qnl::exports::WriteVtkLines(folder.File("x"), SampleSurface(), {}));
    const Written file(folder.Read("x"));
    EXPECT_TRUE(Holds(file.head, "NumberOfLines=\"2\""));
    EXPECT_TRUE(Holds(file.head, "<Lines>"));
}

TEST(WriteCollection, ListsFilesWithExactTimes) {
    const ScratchFolder folder;
    EXPECT_TRUE(qnl::exports::WriteCollection(folder.File("x.pvd"), {{0.1, "a_0001.vtp"}, {6.4, "b&c.vtp"}}));
    EXPECT_EQ(
        folder.Read("x.pvd"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<VTKFile type=\"Collection\" version=\"0.1\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n"
        "<Collection>\n"
        "<DataSet timestep=\"0.1\" group=\"\" part=\"0\" file=\"a_0001.vtp\"/>\n"
        "<DataSet timestep=\"6.4\" group=\"\" part=\"0\" file=\"b&amp;c.vtp\"/>\n"
        "</Collection>\n</VTKFile>\n");
}

}  // namespace
