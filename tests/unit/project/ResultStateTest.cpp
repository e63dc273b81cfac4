#include "project/ResultState.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/CQNL3DResultWriter_Manipulator.h"
#include "project/Warnings.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::InputRole;
using qnl::project::Freshness;
using qnl::project::RunTerms;
using qnl::project::SeriesState;

/// Texts in place of a run's inputs, and results without items that record them.
struct ResultStateTest : testing::Test {
    ResultStateTest() {
        folder.Write(
            "Analysis/Run1/a1.run",
            "[MESH]\nMeshCount = 1\nMesh1 = m.hdf\n[MATERIAL]\nMaterialCount = 1\nMaterial1 = p.toml\n");
        folder.Write("Mesh/m.hdf", "mesh");
        folder.Write("Material/p.toml", "material");
        for (const int index : {0, 1, 2}) {
            folder.Write("Analysis/Run1/" + Name(index, ".k4f"), "stage " + std::to_string(index));
        }
        origin.version = QNL_VERSION;
        origin.mode = 2;
        origin.analysisCode = 4;
    }

    static std::string Name(int index, const std::string& extension) {
        return "a1" + (index == 0 ? "" : "_00" + std::to_string(index)) + extension;
    }

    void Record(InputRole role, const std::string& path) {
        origin.inputs.push_back(
            {role, std::filesystem::path(path).filename().string(), qnl::DigestOf(folder.File(path))});
    }

    void WriteResult(int index, bool recorded = true) const {
        CQNL3DResultWriter_Manipulator writer;
        writer.BeginWriting(folder.File("Analysis/Run1/" + Name(index, ".fzr")).c_str(), "", true);
        writer.SetHeadInfo(0, 0, "", "", "", 2, 0);
        if (recorded) {
            qnl::SetResultOrigin(writer, origin);
        }
        ASSERT_TRUE(writer.EndWriting());
    }

    qnl::project::StageFile Base() const {
        return qnl::project::SplitStagePath(folder.File("Analysis/Run1/a1.k4f"));
    }
    std::string StateOf(int index) const { return SeriesState(Base()).Of(index).Text(); }

    ScratchFolder folder;
    qnl::ResultOrigin origin;
};

TEST_F(ResultStateTest, AResultIsFreshUntilAnInputDiffers) {
    Record(InputRole::Mesh, "Mesh/m.hdf");
    Record(InputRole::Stage, "Analysis/Run1/a1.k4f");
    Record(InputRole::FibreAtBase, "Analysis/Run1/a1.k4o");
    EXPECT_EQ(StateOf(0), "missing");
    WriteResult(0);
    EXPECT_EQ(StateOf(0), "fresh");
    folder.Write("Analysis/Run1/a1.k4o", "");
    EXPECT_EQ(StateOf(0), "stale: the fibre result a1.k4o was not there");
    folder.Write("Analysis/Run1/a1.k4f", "stage X");
    EXPECT_EQ(StateOf(0), "stale: the stage result a1.k4f has changed");
    std::filesystem::remove(folder.File("Mesh/m.hdf"));
    EXPECT_EQ(StateOf(0), "stale: the mesh m.hdf is missing");
}

TEST_F(ResultStateTest, AnInputOfAnotherNameDiffers) {
    Record(InputRole::Mesh, "Mesh/m.hdf");
    origin.inputs.back().name = "n.hdf";
    WriteResult(0);
    EXPECT_EQ(StateOf(0), "stale: it was made with the mesh n.hdf, and the mesh is now m.hdf");
}

TEST_F(ResultStateTest, WithoutARecordNothingIsKnown) {
    WriteResult(0, false);
    EXPECT_EQ(StateOf(0), "not recorded");
    folder.Write("Analysis/Run1/a1.fzr", "no result");
    EXPECT_EQ(StateOf(0), "not recorded");
}

TEST_F(ResultStateTest, TermsCountWhereTheyAreKnown) {
    WriteResult(0);
    SeriesState state(Base());
    EXPECT_EQ(state.Of(0, RunTerms{2, 4, false}).freshness, Freshness::Fresh);
    EXPECT_EQ(state.Of(0, RunTerms{1, 4, false}).freshness, Freshness::Stale);
    EXPECT_EQ(state.Of(0, RunTerms{2, 6, false}).freshness, Freshness::Stale);
    EXPECT_EQ(state.Of(0, RunTerms{2, 4, true}).freshness, Freshness::Stale);
}

TEST_F(ResultStateTest, AnotherVersionOfTheProgramIsStale) {
    origin.version = "0.0.1";
    WriteResult(0);
    EXPECT_EQ(SeriesState(Base()).Of(0).freshness, Freshness::Stale);
}

TEST_F(ResultStateTest, NotesGroupWhatIsWrongAndCountTheMissing) {
    Record(InputRole::Material, "Material/p.toml");
    WriteResult(0);
    WriteResult(1);
    EXPECT_TRUE(qnl::project::NotesOnResults(Base(), {0, 1}, false, "run").empty());
    folder.Write("Material/p.toml", "other");
    const std::vector<std::string> notes = qnl::project::NotesOnResults(Base(), {0, 1}, true, "run again");
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0],
              "2 of 2 results (a1.fzr, a1_001.fzr) are stale: the material p.toml has changed; run again");
    WriteResult(1, false);
    EXPECT_EQ(
        qnl::project::NotesOnResults(Base(), {1}, false, "run again").front(),
        "1 of 1 result (a1_001.fzr) does not record what it was made from, and may be stale; run again");
    EXPECT_EQ(notes[1], "1 of 3 output times has no result here (a1_002.k4f); run again");
}

TEST(DifferingInput, OnlyWhatBothRecordIsCompared) {
    qnl::ResultOrigin one;
    one.inputs.push_back({InputRole::Mesh, "m.hdf", {3, 1}});
    qnl::ResultOrigin other = one;
    EXPECT_EQ(qnl::project::DifferingInput(one, other, InputRole::Mesh), nullptr);
    EXPECT_EQ(qnl::project::DifferingInput(one, other, InputRole::Material), nullptr);
    other.inputs[0].digest.hash = 2;
    EXPECT_NE(qnl::project::DifferingInput(one, other, InputRole::Mesh), nullptr);
    EXPECT_EQ(qnl::project::DifferingInput(one, std::nullopt, InputRole::Mesh), nullptr);
}

TEST(Warnings, AreToldOnce) {
    qnl::project::TakeWarnings();
    qnl::project::RecordWarning("a");
    qnl::project::RecordWarning("b");
    qnl::project::RecordWarning("a");
    EXPECT_EQ(qnl::project::TakeWarnings(), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(qnl::project::TakeWarnings().empty());
}

}  // namespace
