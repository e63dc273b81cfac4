#include "project/ProjectPaths.h"

#include <gtest/gtest.h>

#include "project/ProjectInputs.h"
#include "support/ScratchFolder.h"
#include "support_apps/Refusal.h"

namespace {

using qnl::project::CheckInputs;
using qnl::project::ChooseStageFile;
using qnl::project::CountIntermediateTimes;
using qnl::project::FindBaseStageFiles;
using qnl::project::SplitStagePath;
using qnl::project::StageFile;

constexpr const char* kRunText =
    "[MESH]\nMeshCount = 1\nMesh1 = m.hdf\n[MATERIAL]\nMaterialCount = 1\nMaterial1 = m.toml\n";

bool Mentions(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// A project with one flow stage and two intermediate times, complete as far as existence goes.
struct Project {
    Project() {
        for (const char* file : {"part1.k4f", "part1_001.k4f", "part1_002.k4f"}) {
            folder.Write("Analysis/Run1/" + std::string(file), "x");
        }
        folder.Write("Analysis/Run1/part1.run", kRunText);
        folder.Write("Mesh/m.hdf", "x");
        folder.Write("Material/m.toml", "x");
    }
    std::string Run(const std::string& file) const { return folder.Path() + "/Analysis/Run1/" + file; }
    StageFile Base() const { return ChooseStageFile(folder.Path(), false); }
    void Remove(const std::string& file) const { std::filesystem::remove(folder.Path() + "/" + file); }

    ScratchFolder folder;
};

TEST(SplitStagePath, TakesDirectoryNameAndRun) {
    const StageFile file = SplitStagePath("some/part.v2/Analysis/Run12/part12.k4f");
    EXPECT_EQ(file.directory, "some\\part.v2");
    EXPECT_EQ(file.run, "12");
    EXPECT_EQ(file.name, "part");
    EXPECT_EQ(file.extension, ".k4f");
    EXPECT_EQ(file.index, 0);
    EXPECT_EQ(file.Path(), "some\\part.v2\\Analysis\\Run12\\part12.k4f");
    EXPECT_EQ(file.Sibling(".run"), "some\\part.v2\\Analysis\\Run12\\part12.run");
}

TEST(SplitStagePath, BackslashesAreTheSame) {
    EXPECT_EQ(SplitStagePath("D:\\P\\Analysis\\Run2\\part2.k4c").directory, "D:\\P");
}

TEST(SplitStagePath, TheCurrentFolderMayBeTheProject) {
    const StageFile file = SplitStagePath("Analysis/Run1/part1.k4f");
    EXPECT_EQ(file.directory, ".");
    EXPECT_EQ(file.Path(), ".\\Analysis\\Run1\\part1.k4f");
}

TEST(SplitStagePath, TheLastRunFolderCounts) {
    EXPECT_EQ(SplitStagePath("a/Analysis/Run1/b/Analysis/Run2/part2.k4f").directory, "a\\Analysis\\Run1\\b");
}

TEST(SplitStagePath, AnIndexedNameTellsItsIndex) {
    const StageFile file = SplitStagePath("p/Analysis/Run1/part1_012.k4f");
    EXPECT_EQ(file.index, 12);
    EXPECT_EQ(file.name, "part");
    EXPECT_EQ(file.Path(), "p\\Analysis\\Run1\\part1_012.k4f");
    EXPECT_EQ(file.AtIndex(0).Path(), "p\\Analysis\\Run1\\part1.k4f");
    EXPECT_EQ(file.AtIndex(345).Path(), "p\\Analysis\\Run1\\part1_345.k4f");
}

TEST(SplitStagePath, AnUnderscoreInTheNameIsNoIndexUnlessTheRunStandsBeforeIt) {
    EXPECT_EQ(SplitStagePath("p/Analysis/Run1/a_b1.k4f").name, "a_b");
    EXPECT_EQ(SplitStagePath("p/Analysis/Run1/part_001.k4f").name, "part_00");
    EXPECT_EQ(SplitStagePath("p/Analysis/Run1/part1_1.k4f").name, "part1_");
}

TEST(SplitStagePath, RefusesWhatIsNoStageFile) {
    for (const char* path : {"part1.k4f", "p/Run1/part1.k4f", "p/Analysis/Run/part1.k4f",
                             "p/Analysis/Run1/sub/part1.k4f", "p/Analysis/Run1/part2.k4f",
                             "p/Analysis/Run1/part1", "p/Analysis/Run1/", "p/XAnalysis/Run1/part1.k4f", ""}) {
        EXPECT_TRUE(Mentions(Refusal([&] { SplitStagePath(path); }), "is expected at")) << path;
    }
}

TEST(SplitStagePath, RefusesAnotherExtensionByName) {
    EXPECT_TRUE(Mentions(Refusal([] { SplitStagePath("p/Analysis/Run1/part1.fzr"); }), "\".fzr\""));
}

TEST(FindBaseStageFiles, LatestRunFirstThenByStage) {
    const ScratchFolder folder;
    for (const char* file :
         {"Run2/a2.k4w", "Run2/a2.k4f", "Run2/a2_001.k4f", "Run10/a10.k4o", "Run10/a10.k4c", "Run2/a2.run",
          "Run2/other.k4f", "Run2/a2.k4hc", "Run2/a2.k4p"}) {
        folder.Write("Analysis/" + std::string(file), "");
    }
    std::vector<std::string> found;
    for (const StageFile& file : FindBaseStageFiles(folder.Path() + "/")) {
        found.push_back(file.run + file.extension);
    }
    EXPECT_EQ(found, (std::vector<std::string>{"10.k4c", "10.k4o", "2.k4f", "2.k4p", "2.k4hc", "2.k4w"}));
}

TEST(FindBaseStageFiles, AFolderThatIsNoProjectHasNone) {
    EXPECT_TRUE(FindBaseStageFiles(ScratchFolder().Path()).empty());
    EXPECT_TRUE(FindBaseStageFiles("/does/not/exist").empty());
}

TEST(CountIntermediateTimes, CountsFromOneWithoutGap) {
    const Project project;
    EXPECT_EQ(CountIntermediateTimes(project.Base()), 2);
    project.folder.Write("Analysis/Run1/part1_003.k4c", "");
    project.folder.Write("Analysis/Run1/other1_003.k4f", "");
    project.folder.Write("Analysis/Run1/part1_003.fzr", "");
    EXPECT_EQ(CountIntermediateTimes(project.Base()), 2);
}

TEST(CountIntermediateTimes, RefusesAGap) {
    const Project project;
    project.folder.Write("Analysis/Run1/part1_004.k4f", "");
    const std::string refusal = Refusal([&] { CountIntermediateTimes(project.Base()); });
    EXPECT_TRUE(Mentions(refusal, project.Run("part1_003.k4f") + " is missing")) << refusal;
    EXPECT_TRUE(Mentions(refusal, "part1_004.k4f")) << refusal;
}

TEST(ChooseStageFile, AFolderGivesFlowAndTheProbeItsFibreResult) {
    const Project project;
    project.folder.Write("Analysis/Run1/part1.k4o", "");
    project.folder.Write("Analysis/Run1/part1.k4c", "");
    EXPECT_EQ(ChooseStageFile(project.folder.Path(), false).extension, ".k4f");
    EXPECT_EQ(ChooseStageFile(project.folder.Path(), true).extension, ".k4o");
}

TEST(ChooseStageFile, AnIntermediateTimeIsAnsweredWithItsBaseFile) {
    const Project project;
    const std::string refusal = Refusal([&] { ChooseStageFile(project.Run("part1_002.k4f"), false); });
    EXPECT_TRUE(Mentions(refusal, "is intermediate output time 2: name the base file " +
                                      project.Run("part1.k4f") + " instead"))
        << refusal;
}

TEST(ChooseStageFile, AMissingFileIsNamed) {
    const Project project;
    EXPECT_TRUE(Mentions(Refusal([&] { ChooseStageFile(project.Run("part1.k4c"), false); }),
                         project.Run("part1.k4c") + " is missing"));
    EXPECT_TRUE(
        Mentions(Refusal([] { ChooseStageFile("/does/not/exist", false); }), "/does/not/exist is missing"));
}

TEST(ChooseStageFile, AFolderWithoutStageResultsIsNoProject) {
    const ScratchFolder folder;
    EXPECT_TRUE(
        Mentions(Refusal([&] { ChooseStageFile(folder.Path(), false); }), "no stage result is found"));
    EXPECT_TRUE(Mentions(Refusal([&] { ChooseStageFile(folder.Path(), true); }), "no fibre result is found"));
}

TEST(CheckInputs, ACompleteProjectPasses) {
    const Project project;
    EXPECT_EQ(Refusal([&] { CheckInputs(project.Base(), 2, false); }), "not refused");
}

struct Missing {
    const char* file;
    const char* role;
};

class CheckInputsMissing : public testing::TestWithParam<Missing> {};

TEST_P(CheckInputsMissing, IsToldWithItsPath) {
    const Project project;
    const StageFile base = project.Base();
    project.Remove(GetParam().file);
    const std::string refusal = Refusal([&] { CheckInputs(base, 2, false); });
    EXPECT_TRUE(Mentions(refusal, project.folder.Path() + "/" + GetParam().file + " is missing: "))
        << refusal;
    EXPECT_TRUE(Mentions(refusal, GetParam().role)) << refusal;
}

INSTANTIATE_TEST_SUITE_P(Files, CheckInputsMissing,
                         testing::Values(Missing{"Analysis/Run1/part1.run", "the run file"},
                                         Missing{"Analysis/Run1/part1_002.k4f", "intermediate output time 2"},
                                         Missing{"Mesh/m.hdf", "the mesh that"},
                                         Missing{"Material/m.toml", "the material that"}));

TEST(CheckInputs, ARunFileThatNamesNothingIsTold) {
    const Project project;
    project.folder.Write("Analysis/Run1/part1.run", "[MATERIAL]\nMaterialCount = 1\nMaterial1 = m.toml\n");
    EXPECT_TRUE(Mentions(Refusal([&] { CheckInputs(project.Base(), 0, false); }), "names no mesh"));
    project.folder.Write("Analysis/Run1/part1.run", "[MESH]\nMeshCount = 1\nMesh1 = m.hdf\n");
    EXPECT_TRUE(Mentions(Refusal([&] { CheckInputs(project.Base(), 0, false); }), "names no material"));
}

TEST(CheckInputs, AFolderInPlaceOfAFileIsTold) {
    const Project project;
    project.Remove("Mesh/m.hdf");
    std::filesystem::create_directory(project.folder.Path() + "/Mesh/m.hdf");
    EXPECT_TRUE(Mentions(Refusal([&] { CheckInputs(project.Base(), 0, false); }), "not a folder"));
}

TEST(StagesNote, TellsOfAPathThatHoldsSeveralStages) {
    EXPECT_EQ(StagesNote(SplitStagePath("old/Analysis/Run1/part1.k4c")), "");
    EXPECT_EQ(StagesNote(SplitStagePath("old/Analysis/Run1/part1.k4o")), "");
    EXPECT_TRUE(Mentions(StagesNote(SplitStagePath("old.k4w/Analysis/Run1/part1.k4c")),
                         "the extensions of cool and warp, and"));
}

TEST(CheckInputs, APathThatDoesNotFitALauncherWordIsRefused) {
    const std::string deep = "/" + std::string(240, 'd');
    StageFile file = SplitStagePath(deep + "/Analysis/Run1/part1.k4c");
    EXPECT_TRUE(Mentions(Refusal([&] { CheckInputs(file, 0, false); }), "at most 254 fit"));
}

}  // namespace
