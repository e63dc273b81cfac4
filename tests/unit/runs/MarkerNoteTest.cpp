#include "runs/MarkerNote.h"

#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

using qnl::project::SplitStagePath;
using qnl::runs::MarkerNote;

constexpr const char* kLog = "Analysis/Run1/QNLIntermediateOutputTime.log";

TEST(MarkerNote, SaysWhatFollowsFromALogThatIsMissingOrIncomplete) {
    const ScratchFolder folder;
    folder.Write("Analysis/Run1/part1.k4f", "");
    const qnl::project::StageFile base = SplitStagePath(folder.File("Analysis/Run1/part1.k4f"));
    EXPECT_EQ(MarkerNote(base).find(folder.File(kLog) + " is missing: the normals are not smoothed"), 0U);
    folder.Write(kLog, "1 0.5\n");
    EXPECT_EQ(MarkerNote(base).find(folder.File(kLog) + " is not complete (no [EOF] in it): the normals"),
              0U);
    folder.Write(kLog, "1 0.5\n[EOF]\n");
    EXPECT_EQ(MarkerNote(base), "");
}

TEST(MarkerNote, IsNotSaidOfStagesWithoutSuchALog) {
    const ScratchFolder folder;
    for (const char* name : {"part1.k4c", "part1.k4hc", "part1.k4w", "part1.k4o"}) {
        EXPECT_EQ(MarkerNote(SplitStagePath(folder.File("Analysis/Run1/") + name)), "") << name;
    }
}

TEST(IsMarkerComplaint, KnowsTheLineOfTheEvaluation) {
    EXPECT_TRUE(qnl::runs::IsMarkerComplaint("QNLIntermediateOutputTime.log doesn't exist !"));
    EXPECT_FALSE(qnl::runs::IsMarkerComplaint("C:/Run1/QNLIntermediateOutputTime.log"));
    EXPECT_FALSE(qnl::runs::IsMarkerComplaint("*.run doesn't exist !"));
}

}  // namespace
