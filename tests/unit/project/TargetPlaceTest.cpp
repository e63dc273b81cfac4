#include "project/TargetPlace.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/Faults.h"
#include "project/ProjectPaths.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::project::CheckRoom;
using qnl::project::CheckWritable;
using qnl::project::ProblemOfRoom;

TEST(CheckWritable, LeavesNothingBehind) {
    const ScratchFolder folder;
    CheckWritable(folder.Path());
    CheckWritable(folder.File("not/yet/there"));
    EXPECT_EQ(folder.FileCount(), 0U);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(CheckWritable, AFileIsNoFolderAndOtherFaultsStay) {
    const ScratchFolder folder;
    folder.Write("file", "");
    qnl::RecordFault({"earlier", "", "", "", ""});
    EXPECT_THROW(CheckWritable(folder.File("file/below")), qnl::project::InputProblem);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST(ProblemOfRoom, TellsThePlaceAndBothSizes) {
    EXPECT_EQ(ProblemOfRoom("/data", 1000, 1000), "");
    EXPECT_EQ(ProblemOfRoom("/data", 12345678, 65536),
              "/data: at least 12 MB are needed and 66 kB are free; free space, or name another place");
    EXPECT_EQ(ProblemOfRoom("/data", 1230000000, 999),
              "/data: at least 1.2 GB are needed and 999 bytes are free; free space, or name another place");
}

TEST(CheckRoom, NoDiskHoldsEverything) {
    const ScratchFolder folder;
    CheckRoom(folder.Path(), 1);
    EXPECT_THROW(CheckRoom(folder.File("below"), std::numeric_limits<std::uintmax_t>::max()),
                 qnl::project::InputProblem);
}

}  // namespace
