#include "project/OutputNames.h"

#include <gtest/gtest.h>

#include "project/ProjectPaths.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::project::InputProblem;
using qnl::project::NameOfOutput;

TEST(NameOfOutput, LosesTheFirstEndingThatItHas) {
    EXPECT_EQ(NameOfOutput("part", {".pvd", ".vtp"}), "part");
    EXPECT_EQ(NameOfOutput("part.vtp", {".pvd", ".vtp"}), "part");
    EXPECT_EQ(NameOfOutput("part.pvd.vtp", {".pvd", ".vtp"}), "part.pvd");
    EXPECT_EQ(NameOfOutput("a.hdf.series", {".hdf.series", ".hdf"}), "a");
    EXPECT_EQ(NameOfOutput("part.v2", {".pvd"}), "part.v2");
}

TEST(NameOfOutput, NeedsANameAndAFolder) {
    const ScratchFolder folder;
    EXPECT_EQ(NameOfOutput(folder.File("x.csv"), {".csv"}), folder.File("x"));
    EXPECT_THROW(NameOfOutput("", {".csv"}), InputProblem);
    EXPECT_THROW(NameOfOutput(".csv", {".csv"}), InputProblem);
    EXPECT_THROW(NameOfOutput(folder.Path() + "/", {".csv"}), InputProblem);
    EXPECT_THROW(NameOfOutput(folder.File("none/x"), {".csv"}), InputProblem);
}

TEST(RefuseExisting, NamesTheFileThatIsThere) {
    const ScratchFolder folder;
    const std::string there = folder.Write("b", "");
    EXPECT_NO_THROW(qnl::project::RefuseExisting({folder.File("a")}));
    try {
        qnl::project::RefuseExisting({folder.File("a"), there});
        ADD_FAILURE() << "not refused";
    } catch (const InputProblem& problem) {
        EXPECT_EQ(std::string(problem.what()).find(there + " is there already"), 0U);
    }
}

}  // namespace
