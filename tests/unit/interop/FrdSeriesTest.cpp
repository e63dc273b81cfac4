#include "interop/FrdSeries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "unit/interop/ForeignFileText.h"

namespace {

using qnl::interop::ForeignSnapshot;
using Numbers = std::vector<double>;

/// The text that std::printf would write.
template <typename... Values>
std::string Formatted(const char* format, Values... values) {
    char text[200];
    const int length = std::snprintf(text, sizeof text, format, values...);
    return {text, static_cast<std::size_t>(length)};
}

template <typename T>
std::string Bytes(T number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string Head(const char* block, int count, int form) {
    return Formatted("%s%18s%12d%37s%1d\n", block, "", count, "", form);
}

std::string StepHead(int step, double seconds, int count, int form, int kind = 1) {
    return Formatted("    1PSTEP\n  100CL  %3d%12.5E%12d%20s%2d%5d%10s%2d\n", 100 + step, seconds, count, "",
                     kind, step, "", form);
}

constexpr const char* kTemperature = " -4  NDTEMP      1    1\n -5  T           1    1    0    0\n";
constexpr const char* kDisplacement =
    " -4  DISP        4    1\n -5  D1          1    2    1    0\n -5  D2          1    2    2    0\n"
    " -5  D3          1    2    3    0\n -5  ALL         1    2    0    0    1ALL\n";

/// One tetra of the nodes 10, 20, 30 and 7, with temperatures 100 + label at 0.5 s.
std::string TextTetra(int form) {
    const int width = form == 0 ? 5 : 10;
    return "    1C\n    1UPGM               CalculiX\n" + Head("    2C", 4, form) +
           Formatted(" -1%*d%12.5E%12.5E%12.5E\n", width, 10, -1.0, -2.0, -3.0) +
           Formatted(" -1%*d%12.5E%12.5E%12.5E\n", width, 20, 4.0, 0.0, 0.0) +
           Formatted(" -1%*d%12.5E%12.5E%12.5E\n", width, 30, 0.0, 4.0, 0.0) +
           Formatted(" -1%*d%12.5E%12.5E%12.5E\n -3\n", width, 7, 0.0, 0.0, 4.0) + Head("    3C", 1, form) +
           Formatted(" -1%*d%5d%5d%5d\n -2%*d%*d%*d%*d\n -3\n", width, 5, 3, 0, 1, width, 10, width, 20,
                     width, 30, width, 7) +
           StepHead(1, 0.5, 4, form) + kTemperature + Formatted(" -1%*d%12.5E\n", width, 7, 107.0) +
           Formatted(" -1%*d%12.5E\n", width, 10, 110.0) + Formatted(" -1%*d%12.5E\n", width, 20, 120.0) +
           Formatted(" -1%*d%12.5E\n -3\n", width, 30, 130.0);
}

std::string BinaryTetra() {
    std::string text = "    1C\n" + Head("    2C", 4, 3);
    for (const int label : {10, 20, 30, 7}) {
        text += Bytes(label) + Bytes(label == 20 ? 4.0 : 0.0) + Bytes(label == 30 ? 4.0 : 0.0) +
                Bytes(label == 7 ? 4.0 : 0.0);
    }
    text += Head("    3C", 1, 2);
    for (const int number : {5, 3, 0, 1, 10, 20, 30, 7}) {
        text += Bytes(number);
    }
    text += StepHead(1, 0.5, 4, 2) + kTemperature;
    for (const int label : {7, 10, 20, 30}) {
        text += Bytes(label) + Bytes(100.0F + static_cast<float>(label));
    }
    return text;
}

constexpr const char* kEnd = " 9999\n";

void ExpectTetra(const ForeignSnapshot& snapshot) {
    EXPECT_EQ(snapshot.mesh.cellTypes, (std::vector<int>{10}));
    EXPECT_EQ(snapshot.mesh.offsets, (std::vector<std::int64_t>{0, 4}));
    EXPECT_EQ(snapshot.mesh.nodes, (std::vector<std::int64_t>{0, 1, 2, 3}));
    EXPECT_EQ(snapshot.mesh.points[1], (std::array<double, 3>{4.0, 0.0, 0.0}));
    EXPECT_EQ(ArrayOf(snapshot, "NodeId").values, (Numbers{10, 20, 30, 7}));
    EXPECT_EQ(ArrayOf(snapshot, "NDTEMP").values, (Numbers{110, 120, 130, 107}));
    EXPECT_EQ(snapshot.seconds, 0.5);
}

struct FrdSeries : testing::Test, ForeignFileText {
    std::string RefusalOf(const std::string& text) const { return Refusal("a.frd", text); }
};

TEST_F(FrdSeries, ReadsTheTextForms) {
    for (const int form : {0, 1}) {
        const ForeignSnapshot snapshot = ReadFirst("a.frd", TextTetra(form) + kEnd);
        ExpectTetra(snapshot);
        EXPECT_EQ(snapshot.mesh.points[0], (std::array<double, 3>{-1.0, -2.0, -3.0})) << "no blanks between";
    }
}

TEST_F(FrdSeries, ReadsTheBinaryForm) {
    ExpectTetra(ReadFirst("a.frd", BinaryTetra() + kEnd));
}

TEST_F(FrdSeries, ReadsEveryStepAndComponent) {
    const std::string displacement =
        StepHead(2, 1.25, 1, 1) + kDisplacement + " -1        20 1.00000E+00-2.00000E+00 3.00000E+00\n -3\n";
    const std::string again = StepHead(2, 1.25, 1, 1) + kTemperature + " -1        20 9.00000E+01\n -3\n";
    const auto series =
        qnl::interop::OpenForeignSeries({Write("a.frd", TextTetra(1) + displacement + again + kEnd)});
    ASSERT_EQ(series->Count(), 2);
    const ForeignSnapshot last = series->Read(1);
    EXPECT_EQ(last.seconds, 1.25);
    const qnl::interop::ForeignArray moved = ArrayOf(last, "DISP");
    EXPECT_EQ(moved.components, 3) << "the magnitude is not stored";
    EXPECT_EQ(Numbers(moved.values.begin() + 3, moved.values.begin() + 6), (Numbers{1.0, -2.0, 3.0}));
    EXPECT_TRUE(std::isnan(moved.values[0])) << "node 10 has none";
    EXPECT_EQ(ArrayOf(last, "NDTEMP").values[1], 90.0);
}

TEST_F(FrdSeries, ReadsLongRecords) {
    std::string head = " -4  STRESS      7    1\n";
    for (int c = 0; c < 7; ++c) {
        head += " -5  S           1    4    1    1\n";
    }
    const std::string text =
        TextTetra(1) + StepHead(2, 1.0, 1, 1) + head +
        " -1        20 1.00000E+00 2.00000E+00 3.00000E+00 4.00000E+00 5.00000E+00 6.00000E+00\n"
        " -2           7.00000E+00\n -3\n" +
        kEnd;
    const auto series = qnl::interop::OpenForeignSeries({Write("a.frd", text)});
    const Numbers values = ArrayOf(series->Read(1), "STRESS").values;
    EXPECT_EQ(Numbers(values.begin() + 7, values.begin() + 14), (Numbers{1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(FrdSeries, ReadsElementsOfTwentyNodesByTheirCorners) {
    std::string text = "    1C\n" + Head("    2C", 20, 1);
    for (int n = 1; n <= 20; ++n) {
        text += Formatted(" -1%10d%12.5E%12.5E%12.5E\n", n, n / 1.0, 0.0, 0.0);
    }
    text += " -3\n" + Head("    3C", 1, 1) + " -1         1    4    0    1\n -2";
    for (int n = 1; n <= 20; ++n) {
        text += Formatted("%10d", n) + (n == 10 ? "\n -2" : "");
    }
    const ForeignSnapshot snapshot = ReadFirst("a.frd", text + "\n -3\n" + kEnd);
    EXPECT_EQ(snapshot.mesh.cellTypes, (std::vector<int>{25}));
    EXPECT_EQ(snapshot.mesh.nodes.size(), 20U);
    EXPECT_EQ(snapshot.seconds, std::nullopt) << "a mesh alone has no time";
}

TEST_F(FrdSeries, LeavesFrequenciesOut) {
    const std::string mode = StepHead(2, 440.0, 1, 1, 2) + kTemperature + " -1        20 9.00000E+01\n -3\n";
    EXPECT_EQ(qnl::interop::OpenForeignSeries({Write("a.frd", TextTetra(1) + mode + kEnd)})->Count(), 1);
}

TEST_F(FrdSeries, TellsWhereAFileEndsTooEarly) {
    const std::string whole = TextTetra(1) + kEnd;
    const std::size_t lines = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\n'));
    std::size_t end = 0;
    for (std::size_t line = 0; line < lines; ++line) {
        EXPECT_NE(RefusalOf(whole.substr(0, end)).find("found the end of the file; export it anew"),
                  std::string::npos)
            << line;
        end = whole.find('\n', end) + 1;
    }
    const std::string binary = BinaryTetra();
    for (std::size_t length = 0; length < binary.size(); ++length) {
        EXPECT_NE(RefusalOf(binary.substr(0, length)), "") << length;
    }
}

TEST_F(FrdSeries, RefusesCountsThatDoNotHold) {
    EXPECT_EQ(
        RefusalOf(With(TextTetra(1), "           4 ", "           5 ") + kEnd),
        "a.frd, line 8: expected 5 node records, as the head of the block says, found 4; export it anew");
    for (const char* count : {"  2000000000 ", "          -4 ", "           x "}) {
        EXPECT_NE(RefusalOf(With(BinaryTetra(), "           4 ", count) + kEnd), "") << count;
    }
    EXPECT_NE(RefusalOf(With(TextTetra(1), "NDTEMP      1", "NDTEMP  99999")).find("1 to 64 components"),
              std::string::npos);
}

TEST_F(FrdSeries, RefusesNumbersThatNameNothingOrComeTwice) {
    EXPECT_EQ(RefusalOf(With(TextTetra(1), " -1        20", " -1        10") + kEnd),
              "a.frd, line 5: expected each node once, found node 10 again; export it anew");
    EXPECT_EQ(RefusalOf(With(TextTetra(1), "        30         7\n", "        30        99\n") + kEnd),
              "a.frd: element 5 names node 99, which the file does not have; export the mesh with all of its "
              "nodes");
    EXPECT_EQ(RefusalOf(With(TextTetra(1), " -1         7 1.07", " -1         8 1.07") + kEnd),
              "a.frd, line 17: expected a node of the mesh, found node 8; export it anew");
    EXPECT_EQ(RefusalOf(With(TextTetra(1), " -1         7 1.07", " -1        10 1.07") + kEnd),
              "a.frd, line 18: expected each node once, found node 10 again; export it anew");
}

TEST_F(FrdSeries, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(RefusalOf(With(TextTetra(1), "         5    3", "         5   13") + kEnd),
              "a.frd, line 10: expected an element type from 1 to 12, found element 5 of type 13; use "
              "tetrahedra, hexahedra and wedges");
    EXPECT_EQ(RefusalOf(With(TextTetra(1), "1.07000E+02", "1.07000E+xx") + kEnd),
              "a.frd, line 17: expected a value, found \"1.07000E+xx\"; export it anew");
    EXPECT_EQ(RefusalOf("hello\n"),
              "a.frd, line 1: expected the head 1C of an .frd file, found another text; "
              "export it anew");
    EXPECT_NE(RefusalOf(With(TextTetra(1), "    3C", "    4C")).find("found \"    4C"), std::string::npos);
}

}  // namespace
