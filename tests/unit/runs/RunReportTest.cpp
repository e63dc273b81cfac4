#include "runs/RunReport.h"

#include <gtest/gtest.h>

#include <sstream>

#include "platform/Faults.h"
#include "results/ResultFile.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::runs::EvaluatedTime;

/// A result with one item of one value.
EvaluatedTime Written(const ScratchFolder& folder, int index, double seconds, float value) {
    const std::string path = folder.File("part1_00" + std::to_string(index) + ".fzr");
    qnl::results::StageResult result;
    result.nodeIds = {1};
    result.maxNode = 1;
    result.items = {{2, "Max_Temperature", "oC", qnl::results::kNodeData, 0.0F, 0.0F, {value}}};
    EXPECT_TRUE(qnl::results::WriteStageResult(path, result));
    return {{index, seconds}, "", path, true, {}, {}};
}

TEST(SeriesOfRun, StandsInTheOrderOfTimeWithItsContents) {
    const ScratchFolder folder;
    std::vector<EvaluatedTime> times{Written(folder, 0, 3.0, 30.0F), Written(folder, 1, 1.0, 10.0F),
                                     Written(folder, 2, 2.0, 20.0F)};
    ASSERT_TRUE(qnl::runs::ReadResults(times));
    qnl::series::KnownTimes known;
    const qnl::series::SeriesFiles series =
        qnl::runs::SeriesOfRun({}, times, {qnl::Mode::Resolved, true}, known);
    EXPECT_TRUE(series.realTimes);
    EXPECT_TRUE(series.view.smoothedNormals);
    EXPECT_TRUE(series.SeesInsideCells());
    ASSERT_EQ(series.times.size(), 3U);
    ASSERT_EQ(known.contents.size(), 3U);
    for (std::size_t t = 0; t < 3; ++t) {
        const double seconds = static_cast<double>(t + 1);
        EXPECT_EQ(series.times[t].axis, seconds);
        EXPECT_EQ(known.contents[t].items[0].values[0], static_cast<float>(10.0 * seconds));
    }
}

TEST(ReadResults, AResultThatCannotBeReadIsAFaultAndHasNoTable) {
    const ScratchFolder folder;
    std::vector<EvaluatedTime> times{Written(folder, 0, 3.0, 30.0F), Written(folder, 1, 1.0, 10.0F)};
    folder.Write("part1_001.fzr", "no result");
    qnl::TakeFaults();
    EXPECT_FALSE(qnl::runs::ReadResults(times));
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
    std::ostringstream out;
    qnl::runs::PrintResultTables(times, out);
    EXPECT_NE(out.str().find("Output time 3 s"), std::string::npos);
    EXPECT_EQ(out.str().find("Output time 1 s"), std::string::npos);
}

}  // namespace
