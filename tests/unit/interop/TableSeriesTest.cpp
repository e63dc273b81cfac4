#include "interop/TableSeries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "hdf5/Hdf5.h"
#include "interop/HeldSeries.h"
#include "interop/PointRows.h"
#include "interop/ValueTable.h"
#include "support/Hdf5Edit.h"
#include "unit/interop/ForeignCells.h"
#include "unit/interop/ForeignFileText.h"

namespace {

using qnl::interop::ForeignProblem;
using qnl::interop::ForeignSeries;
using qnl::interop::ForeignSnapshot;
using qnl::interop::HoldSeries;
using Numbers = std::vector<double>;

/// The unit cube, with labels 11 to 18 unless left out, an array of points and one of cells.
std::unique_ptr<ForeignSeries> Cube(bool labelled = true) {
    ForeignSnapshot snapshot;
    snapshot.file = "cube.inp";
    snapshot.mesh = ForeignCells(CubeCorners()).Add(12, {0, 1, 2, 3, 4, 5, 6, 7}).mesh;
    snapshot.arrays = {{"temperature", 1, false, Numbers(8, -1.0)}, {"body", 1, true, {4.0}}};
    if (labelled) {
        snapshot.arrays.push_back({"NodeId", 1, false, {11, 12, 13, 14, 15, 16, 17, 18}});
    }
    return HoldSeries(snapshot, {});
}

struct TableSeries : testing::Test, ForeignFileText {
    std::unique_ptr<ForeignSeries> Join(const std::string& text, bool labelled = true) const {
        return qnl::interop::JoinTable(*Cube(labelled), Write("t.csv", text));
    }
    std::string RefusalOf(const std::string& text) const {
        try {
            Join(text);
            return {};
        } catch (const ForeignProblem& problem) {
            const std::string sentence = problem.what();
            return sentence.substr(sentence.find("t.csv"));
        }
    }
};

/// A value for each node in descending order of the labels: 10 a label.
std::string Backwards(const std::string& head, int first = 18) {
    std::string text = head;
    for (int n = first; n > first - 8; --n) {
        text += std::to_string(n) + "," + std::to_string(10 * n) + "\n";
    }
    return text;
}

TEST_F(TableSeries, GoesByLabels) {
    const auto series = Join(Backwards("Node Label,temperature@0.5\n"));
    ASSERT_EQ(series->Count(), 1);
    const ForeignSnapshot snapshot = series->Read(0);
    EXPECT_EQ(snapshot.seconds, 0.5);
    EXPECT_EQ(ArrayOf(snapshot, "temperature").values, (Numbers{110, 120, 130, 140, 150, 160, 170, 180}))
        << "in place of the mesh's own";
    EXPECT_EQ(ArrayOf(snapshot, "body").values, (Numbers{4.0}));
    EXPECT_EQ(ArrayOf(snapshot, "NodeId").values.size(), 8U);
    EXPECT_TRUE(snapshot.warnings.empty());
}

TEST_F(TableSeries, WithoutLabelsTheyAreTheIndexFromOne) {
    const auto series = Join(Backwards("id,T\n", 8), false);
    const ForeignSnapshot snapshot = series->Read(0);
    EXPECT_EQ(snapshot.seconds, std::nullopt);
    EXPECT_EQ(ArrayOf(snapshot, "T").values, (Numbers{10, 20, 30, 40, 50, 60, 70, 80}));
}

TEST_F(TableSeries, ReadsTimesInEveryForm) {
    std::string text = "node,T t=2s,T@0.5,T @ t=1 s,T@1e1s,rho\n";
    for (int n = 11; n <= 18; ++n) {
        text += std::to_string(n) + ",2,0.5,1,10,7\n";
    }
    const auto series = Join(text);
    ASSERT_EQ(series->Count(), 4);
    for (const auto& [index, seconds] : {std::pair{0, 0.5}, {1, 1.0}, {2, 2.0}, {3, 10.0}}) {
        const ForeignSnapshot snapshot = series->Read(index);
        EXPECT_EQ(snapshot.seconds, seconds);
        EXPECT_EQ(ArrayOf(snapshot, "T").values, Numbers(8, seconds));
        EXPECT_EQ(ArrayOf(snapshot, "rho").values, Numbers(8, 7.0)) << "a column without a time holds always";
    }
}

TEST_F(TableSeries, ReadsSpreadsheetsOfOtherCountries) {
    std::string text = "\xEF\xBB\xBF# made by hand\r\n\"node\";\"T@0,5\"\r\n\r\n";
    for (int n = 11; n <= 18; ++n) {
        text += std::to_string(n) + ";1,25\r\n";
    }
    const ForeignSnapshot snapshot = Join(text)->Read(0);
    EXPECT_EQ(snapshot.seconds, 0.5);
    EXPECT_EQ(ArrayOf(snapshot, "T").values, Numbers(8, 1.25));
}

TEST_F(TableSeries, JoinsComponents) {
    std::string text = "node,u_x@1,u_y@1,u_z@1,v:0@1,v:1@1,v:2@1,w_x@1\n";
    for (int n = 11; n <= 18; ++n) {
        text += std::to_string(n) + ",1,2,3,4,5,6,7\n";
    }
    const ForeignSnapshot snapshot = Join(text)->Read(0);
    const auto u = ArrayOf(snapshot, "u");
    EXPECT_EQ(u.components, 3);
    EXPECT_EQ(Numbers(u.values.begin(), u.values.begin() + 4), (Numbers{1, 2, 3, 1}));
    EXPECT_EQ(ArrayOf(snapshot, "v").values[5], 6.0);
    EXPECT_EQ(ArrayOf(snapshot, "w_x").components, 1) << "a vector has three";
}

TEST_F(TableSeries, GoesByPlacesWithinTheTolerance) {
    // The largest of diagonal and coordinates is 1.732: rows fit within 1.7e-5.
    const ForeignSnapshot snapshot = Join(
                                         "x,y,z,T\n0,0,0,1\n1,0,0,2\n1,1,0,3\n0,1,0,4\n0,0,1,5\n1,0,1.00001,"
                                         "6\n1,1,0.99999,7\n0,1,1.00003,8\n")
                                         ->Read(0);
    const Numbers values = ArrayOf(snapshot, "T").values;
    EXPECT_EQ(Numbers(values.begin(), values.begin() + 7), (Numbers{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_TRUE(std::isnan(values[7]));
    ASSERT_EQ(snapshot.warnings.size(), 2U);
    EXPECT_NE(snapshot.warnings[0].find("1 of 8 rows belong to no node of cube.inp, the first is row 8"),
              std::string::npos);
    EXPECT_NE(snapshot.warnings[1].find("has no row for 1 of the 8 points of cube.inp"), std::string::npos);
}

struct Hdf5Table : TableSeries {
    std::string Made(std::size_t labels) const {
        qnl::hdf5::OutputFile file(folder.File("t.h5"));
        std::vector<std::int32_t> nodes;
        Numbers moved;
        for (std::size_t n = 0; n < 8; ++n) {
            nodes.push_back(18 - static_cast<std::int32_t>(n));
            moved.insert(moved.end(), {1.0, 2.0, 3.0 + static_cast<double>(n)});
        }
        file.Write("/node", nodes.data(), {labels});
        file.Write("/T@2", moved.data(), {8});
        file.Write("/disp@2", moved.data(), {8, 3});
        file.Close();
        return folder.File("t.h5");
    }
};

TEST_F(Hdf5Table, HasADatasetForEachColumn) {
    const ForeignSnapshot snapshot = qnl::interop::JoinTable(*Cube(), Made(8))->Read(0);
    EXPECT_EQ(snapshot.seconds, 2.0);
    EXPECT_EQ(ArrayOf(snapshot, "T").values[7], 1.0) << "label 18 is the first row";
    EXPECT_EQ(ArrayOf(snapshot, "disp").components, 3);
    EXPECT_EQ(ArrayOf(snapshot, "disp").values[2], 10.0) << "label 11 is the last row";
}

TEST_F(Hdf5Table, RefusesColumnsThatDoNotFit) {
    EXPECT_THROW(qnl::interop::ReadValueTable(Made(7)), ForeignProblem);
    const std::string file = Made(8);
    hdf5_edit::PutUnstored(file, "/T@3", 1ULL << 40U);
    EXPECT_THROW(qnl::interop::ReadValueTable(file), ForeignProblem);
    hdf5_edit::PutFloats(Made(8), "/T@3", {1, 2, 3, 4}, 2);
    EXPECT_THROW(qnl::interop::ReadValueTable(file), ForeignProblem);
    EXPECT_THROW(qnl::interop::ReadValueTable(Write("cut.h5", folder.Read("t.h5").substr(0, 700))),
                 ForeignProblem);
}

TEST_F(TableSeries, RefusesWhatItCannotUse) {
    EXPECT_EQ(RefusalOf("T@1\n5\n"),
              "t.csv does not tell to which nodes its rows belong; give a column \"node\" "
              "with the labels, or columns \"x\", \"y\" and \"z\"");
    EXPECT_NE(RefusalOf("node\n11\n").find("holds no column of values"), std::string::npos);
    EXPECT_EQ(RefusalOf("node,T@noon\n11,5\n"),
              "t.csv: column \"T@noon\" tells no time; name columns by quantity "
              "and seconds, like temperature@0.5");
    EXPECT_NE(RefusalOf("node,T@1,T t=1s\n11,5,5\n").find("is there twice"), std::string::npos);
    EXPECT_NE(RefusalOf("node,id,T\n11,11,5\n").find("is there twice"), std::string::npos);
    EXPECT_NE(RefusalOf("node,T\n11,5\n11,6\n").find("row 2 names node 11"), std::string::npos);
    EXPECT_EQ(RefusalOf("node,T\n11,5\n12,5,6\n"),
              "t.csv, line 3: expected 2 fields, as many as there are names, "
              "found 3; repair the line");
    EXPECT_EQ(RefusalOf("node,T\n11,hot\n"),
              "t.csv, line 2: expected a number in column \"T\", found \"hot\"; repair the line");
    EXPECT_NE(RefusalOf("node,T\n1,5\n").find("has no row for any point of cube.inp"), std::string::npos);
    EXPECT_NE(RefusalOf("x,y,z,T\n0,nan,0,5\n").find("row 1 has no finite place"), std::string::npos);
    EXPECT_NE(RefusalOf("").find("is empty"), std::string::npos);
    EXPECT_NE(RefusalOf("node,,T\n").find("a name for each column"), std::string::npos);
}

TEST_F(TableSeries, RefusesAMeshOfSeveralTimes) {
    const auto twice = HoldSeries(Cube()->Read(0), {{1.0, {}}, {2.0, {}}});
    EXPECT_THROW(qnl::interop::JoinTable(*twice, Write("t.csv", "node,T\n11,5\n")), ForeignProblem);
}

TEST(MatchPlaces, TakesTheNearestAndOfTwoAsNearTheFirst) {
    const std::vector<std::array<double, 3>> points{{0, 0, 0}, {-5, 0, 0}, {1e300, 0, 0}};
    const std::vector<std::array<double, 3>> rows{
        {0.5, 0, 0}, {-0.25, 0, 0}, {0.25, 0, 0}, {-5, 0, 1}, {-5, 0, 1.5}};
    EXPECT_EQ(qnl::interop::MatchPlaces(points, rows, 1.0), (std::vector<std::int64_t>{1, 3, -1}));
}

TEST(MatchPlaces, IsThatOfAllPairs) {
    std::mt19937 random(7);
    const auto coordinate = [&] { return static_cast<double>(random() % 10000) * 1e-4 - 0.5; };
    std::vector<std::array<double, 3>> rows(300);
    for (auto& row : rows) {
        row = {coordinate(), coordinate(), coordinate()};
    }
    const double tolerance = 0.1;
    const auto matched = qnl::interop::MatchPlaces(rows, {rows.begin() + 150, rows.end()}, tolerance);
    int found = 0;
    for (std::size_t p = 0; p < rows.size(); ++p) {
        double best = tolerance;
        std::int64_t nearest = -1;
        for (std::size_t r = 150; r < rows.size(); ++r) {
            const double distance =
                std::hypot(rows[p][0] - rows[r][0], rows[p][1] - rows[r][1], rows[p][2] - rows[r][2]);
            if (distance < best) {
                best = distance;
                nearest = static_cast<std::int64_t>(r) - 150;
            }
        }
        EXPECT_EQ(matched[p], nearest);
        found += nearest >= 0 && p < 150 ? 1 : 0;
    }
    EXPECT_GT(found, 10);
    EXPECT_LT(found, 140);
}

}  // namespace
