#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

#include "ResultSample.h"
#include "platform/CQNL3DResultWriter_Manipulator.h"
#include "platform/Faults.h"
#include "platform/ResultOrigin.h"
#include "results/StageItems.h"
#include "support/ScratchFolder.h"

namespace {

using Writer = CQNL3DResultWriter_Manipulator;

/// The calls of one result file with two node items over three labelled nodes.
struct Calls {
    std::array<int, 2> ids{1, 12};
    std::array<int, 2> types{1, 1};
    std::string names[2] = {"Frozen_Ratio", "SinkMarkDisplacement_Totoal"};
    std::string units[2] = {"--", "mm"};
    std::array<float, 2> maxima{0.75F, 5.0F};
    std::array<float, 2> minima{0.25F, -5.0F};
    std::array<int, 4> labels{-1, 10, 20, 5};
    std::array<float, 4> ratio{0.0F, 0.25F, 0.5F, 0.75F};
    std::array<float, 4> sink{0.0F, 5.0F, 0.0F, -5.0F};

    bool Describe(Writer& writer) {
        float time = 0.01F;
        std::string unit = "--";
        char* unitText = unit.data();
        std::array<char*, 2> nameTexts{names[0].data(), names[1].data()};
        std::array<char*, 2> unitTexts{units[0].data(), units[1].data()};
        return writer.SetHeadInfo(1004, 802218888, "Mesh\\a.hdf", "Material\\b.toml", ".pro", 0, 2) &&
               writer.SetFileInfo("QNL3DFrozenLayer", 1000, 1000, 1000) &&
               writer.SetMultipleTimeStepOutputInfo(0, &time, &unitText) &&
               writer.SetResultTypeInfo(3, 0, 0, 0, 0, 0, 0, 0) &&
               writer.SetResultDataIDMap(QNLRESULT_NODE, true) &&
               writer.SetResultItemInfo(ids.data(), nameTexts.data(), unitTexts.data(), types.data()) &&
               writer.SetMaxMinInfo(maxima.data(), minima.data());
    }
    bool WriteArrays(Writer& writer) {
        return writer.WriteResultDataIDArray(QNLRESULT_NODE, labels.data()) &&
               writer.WriteResultItem(1, ratio.data()) && writer.WriteResultItem(12, sink.data());
    }
};

TEST(ResultWriter, WritesWhatIsReadBack) {
    const ScratchFolder folder;
    const std::string path = folder.File("part1.frz");
    qnl::TakeFaults();
    Writer writer;
    Calls calls;
    ASSERT_EQ(writer.BeginWriting(path.c_str(), "", true), 1);
    EXPECT_EQ(folder.FileCount(), 0u);
    EXPECT_TRUE(calls.Describe(writer));
    EXPECT_TRUE(calls.WriteArrays(writer));
    EXPECT_EQ(folder.FileCount(), 0u);
    EXPECT_TRUE(writer.EndWriting());
    EXPECT_EQ(folder.FileCount(), 1u);

    const qnl::results::ResultFileContent content = qnl::results::ReadResultFile(path);
    EXPECT_EQ(content.resultVersion, 1);
    EXPECT_EQ(content.maxNode, 3);
    EXPECT_EQ(content.maxElement, 0);
    EXPECT_EQ(content.head.code, 1004);
    EXPECT_EQ(content.head.stamp, 802218888);
    EXPECT_EQ(content.head.mesh, "Mesh\\a.hdf");
    EXPECT_EQ(content.head.material, "Material\\b.toml");
    EXPECT_EQ(content.head.project, ".pro");
    EXPECT_EQ(content.head.flag, 0);
    ASSERT_TRUE(content.producer);
    EXPECT_EQ(content.producer->program, "QNL3DFrozenLayer");
    EXPECT_EQ(content.producer->major, 1000);
    EXPECT_EQ(content.producer->minor, 1000);
    EXPECT_EQ(content.producer->patch, 1000);
    ASSERT_TRUE(content.time);
    EXPECT_EQ(content.time->index, 0);
    EXPECT_EQ(content.time->value, 0.01F);
    EXPECT_EQ(content.time->unit, "--");
    EXPECT_EQ(content.nodeIds, (std::vector<int>{10, 20, 5}));
    ASSERT_EQ(content.items.size(), 2u);
    EXPECT_EQ(content.items[1].id, 12);
    EXPECT_EQ(content.items[1].name, "SinkMarkDisplacement_Totoal");
    EXPECT_EQ(content.items[1].unit, "mm");
    EXPECT_EQ(content.items[1].dataType, 1);
    EXPECT_EQ(content.items[1].max, 5.0F);
    EXPECT_EQ(content.items[1].min, -5.0F);
    EXPECT_EQ(content.items[0].values, (std::vector<float>{0.25F, 0.5F, 0.75F}));
    EXPECT_EQ(content.items[1].values, (std::vector<float>{5.0F, 0.0F, -5.0F}));
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

std::string BytesOfOneRun(const ScratchFolder& folder, const std::string& name) {
    Writer writer;
    Calls calls;
    writer.BeginWriting(folder.File(name).c_str(), "", true);
    EXPECT_TRUE(calls.Describe(writer) && calls.WriteArrays(writer) && writer.EndWriting());
    return folder.Read(name);
}

TEST(ResultWriter, GivesTheSameBytesEveryTime) {
    const ScratchFolder folder;
    const std::string first = BytesOfOneRun(folder, "a");
    EXPECT_GT(first.size(), 100u);
    const std::vector<std::string> disturbance(1000, std::string(777, 'x'));
    EXPECT_EQ(first, BytesOfOneRun(folder, "b"));
    EXPECT_EQ(first, BytesOfOneRun(folder, "a"));
    EXPECT_EQ(disturbance.size(), 1000u);
}

TEST(ResultWriter, LeavesTheOldFileWholeWithoutAnEnd) {
    const ScratchFolder folder;
    folder.Write("part1.frz", "old");
    {
        Writer writer;
        Calls calls;
        ASSERT_EQ(writer.BeginWriting(folder.File("part1.frz").c_str(), "", true), 1);
        EXPECT_TRUE(calls.Describe(writer) && calls.WriteArrays(writer));
    }
    EXPECT_EQ(folder.Read("part1.frz"), "old");
    EXPECT_EQ(folder.FileCount(), 1u);
}

/// What the one fault of a failed writing says; the old file must be whole.
std::string FaultOf(bool (*misuse)(Writer& writer, Calls& calls)) {
    const ScratchFolder folder;
    folder.Write("part1.frz", "old");
    qnl::TakeFaults();
    Writer writer;
    Calls calls;
    EXPECT_EQ(writer.BeginWriting(folder.File("part1.frz").c_str(), "", true), 1);
    const bool went = misuse(writer, calls);
    EXPECT_FALSE(went);
    EXPECT_FALSE(writer.EndWriting());
    EXPECT_EQ(folder.Read("part1.frz"), "old");
    EXPECT_EQ(folder.FileCount(), 1u);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    EXPECT_EQ(faults.size(), 1u);
    return faults.empty() ? "none" : faults[0].object + "|" + faults[0].expected + "|" + faults[0].found;
}

TEST(ResultWriter, RecordsMisuseOnce) {
    EXPECT_EQ(FaultOf([](Writer& writer, Calls&) { return writer.SetHeadInfo(1, 2, "", "", "", 0, -1); }),
              "item_count|0 or more|-1");
    EXPECT_EQ(
        FaultOf([](Writer& writer, Calls&) { return writer.SetResultTypeInfo(-3, 0, 0, 0, 0, 0, 0, 0); }),
        "max_node|0 or more|-3");
    EXPECT_EQ(FaultOf([](Writer& writer, Calls& calls) {
                  return calls.Describe(writer) && writer.SetResultDataIDMap(QNLRESULT_ELEMENT, true);
              }),
              "node_ids|a map of nodes|another kind of map");
    EXPECT_EQ(FaultOf([](Writer& writer, Calls& calls) {
                  return calls.Describe(writer) && writer.WriteResultItem(3, calls.ratio.data());
              }),
              "item 3|an item that has been described|none");
    EXPECT_EQ(FaultOf([](Writer& writer, Calls& calls) {
                  return calls.Describe(writer) &&
                         writer.WriteResultDataIDArray(QNLRESULT_NODE, calls.labels.data()) &&
                         writer.WriteResultItem(1, calls.ratio.data()) && writer.EndWriting();
              }),
              "items|every announced array|1 items missing");
    EXPECT_EQ(FaultOf([](Writer& writer, Calls& calls) {
                  return calls.Describe(writer) && writer.WriteResultItem(1, calls.ratio.data()) &&
                         writer.WriteResultItem(12, calls.ratio.data()) && writer.EndWriting();
              }),
              "items|every announced array|0 items and the node labels missing");
    EXPECT_EQ(FaultOf([](Writer& writer, Calls&) {
                  return writer.SetHeadInfo(1, 2, "", "", "", 0, 3) && writer.EndWriting();
              }),
              "item_count|3 items|0 described items");
}

TEST(ResultWriter, RefusesToWriteAnItemTwice) {
    const std::string fault = FaultOf([](Writer& writer, Calls& calls) {
        return calls.Describe(writer) && calls.WriteArrays(writer) &&
               writer.WriteResultItem(1, calls.ratio.data());
    });
    EXPECT_EQ(fault.find("/items/1|a result that can be stored|cannot be written"), 0u) << fault;
}

TEST(ResultWriter, SaysThatNothingCanBeWrittenThere) {
    const ScratchFolder folder;
    for (const std::string& path : {folder.File("no/folder/part1.frz"), folder.Path(), std::string()}) {
        qnl::TakeFaults();
        Writer writer;
        Calls calls;
        EXPECT_EQ(writer.BeginWriting(path.c_str(), "", true), -1);
        EXPECT_FALSE(calls.Describe(writer));
        EXPECT_FALSE(calls.WriteArrays(writer));
        EXPECT_FALSE(writer.EndWriting());
        EXPECT_EQ(qnl::TakeFaults().size(), 1u);
    }
    EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(ResultWriter, DoesNothingBeforeItBegins) {
    qnl::TakeFaults();
    Writer writer;
    Calls calls;
    EXPECT_FALSE(calls.Describe(writer));
    EXPECT_FALSE(writer.EndWriting());
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(ResultWriter, RecordsAFullDisk) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    const ScratchFolder folder;
    std::filesystem::create_symlink("/dev/full", folder.File("part1.frz"));
    qnl::TakeFaults();
    Writer writer;
    Calls calls;
    EXPECT_EQ(writer.BeginWriting(folder.File("part1.frz").c_str(), "", true), 1);
    EXPECT_TRUE(calls.Describe(writer) && calls.WriteArrays(writer));
    EXPECT_FALSE(writer.EndWriting());
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].file, "/dev/full");
    EXPECT_EQ(faults[0].found, "No space left on device");
}

TEST(StageResult, ComesBackAsItWasWritten) {
    const ScratchFolder folder;
    const qnl::results::StageResult sample = DenseSample();
    ASSERT_TRUE(qnl::results::WriteStageResult(folder.File("a.k4f"), sample));
    const qnl::results::ResultFileContent content = qnl::results::ReadResultFile(folder.File("a.k4f"));
    EXPECT_EQ(content.maxNode, 4);
    EXPECT_EQ(content.maxElement, 2);
    EXPECT_FALSE(content.hasNodeIds);
    EXPECT_EQ(content.head.project, "demo");
    ASSERT_TRUE(content.time);
    EXPECT_EQ(content.time->index, 5);
    EXPECT_EQ(content.time->value, 1.25F);
    EXPECT_EQ(content.time->unit, "s");
    ASSERT_EQ(content.items.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(content.items[i].id, sample.items[i].id);
        EXPECT_EQ(content.items[i].values, sample.items[i].values);
    }
    EXPECT_EQ(content.items[0].max, 230.5F);
    EXPECT_EQ(content.items[0].min, 20.0F);
    EXPECT_EQ(content.items[1].max, 0.25F);
    EXPECT_EQ(content.items[1].min, -0.5F);
}

TEST(StageResult, OfAnotherLengthIsNotWritten) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    qnl::results::StageResult sample = DenseSample();
    sample.items[1].values.push_back(0.0F);
    EXPECT_FALSE(qnl::results::WriteStageResult(folder.File("a.k4f"), sample));
    EXPECT_EQ(folder.FileCount(), 0u);
    std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].object, "item 9");
    EXPECT_EQ(faults[0].found, "3 values");
    sample = DenseSample();
    sample.items[1] = sample.items[0];
    EXPECT_FALSE(qnl::results::WriteStageResult(folder.File("a.k4f"), sample));
    EXPECT_EQ(qnl::TakeFaults().size(), 1u);
    EXPECT_FALSE(qnl::results::WriteStageResult(folder.File("no/folder/a.k4f"), DenseSample()));
    EXPECT_EQ(qnl::TakeFaults().size(), 1u);
    EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(StageItems, HaveTheUnitsOfTheirStage) {
    using qnl::FindStageItem;
    using qnl::StageKind;
    EXPECT_STREQ(FindStageItem(StageKind::Flow, 6)->unit, "\u00b0C");
    EXPECT_STREQ(FindStageItem(StageKind::Flow, 17)->unit, "g/cm\u00b3");
    EXPECT_STREQ(FindStageItem(StageKind::Cool, 2)->unit, "s");
    EXPECT_STREQ(FindStageItem(StageKind::Warp, 7)->unit, "%");
    EXPECT_STREQ(FindStageItem(StageKind::Thickness, 2)->unit, "mm");
    EXPECT_EQ(FindStageItem(StageKind::Fibre, 11)->type, QNLRESULT_ELEMENT);
    EXPECT_EQ(FindStageItem(StageKind::Warp, 6), nullptr);
    EXPECT_EQ(qnl::results::MakeStageItem(StageKind::Cool, 1, {1.0F}).name, "Temperature");
    EXPECT_THROW(qnl::results::MakeStageItem(StageKind::Cool, 3, {}), std::invalid_argument);
}

TEST(ResultWriter, KeepsWhatTheResultWasMadeFrom) {
    const ScratchFolder folder;
    const std::string path = folder.File("part1.frz");
    Writer writer;
    Calls calls;
    writer.BeginWriting(path.c_str(), "", true);
    ASSERT_TRUE(calls.Describe(writer));
    qnl::ResultOrigin origin;
    origin.version = "1.2.3";
    origin.mode = 1;
    origin.analysisCode = 6;
    origin.diagnostics = true;
    origin.inputs = {{qnl::InputRole::Mesh, "a.hdf", {std::int64_t{1} << 40, 0xfedcba9876543210}},
                     {qnl::InputRole::MarkerLog, "a.log", {}}};
    qnl::SetResultOrigin(writer, origin);
    ASSERT_TRUE(calls.WriteArrays(writer) && writer.EndWriting());

    const std::optional<qnl::ResultOrigin> read = qnl::results::ReadResultOrigin(path);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->version, "1.2.3");
    EXPECT_EQ(read->mode, 1);
    EXPECT_EQ(read->analysisCode, 6);
    EXPECT_TRUE(read->diagnostics);
    ASSERT_EQ(read->inputs.size(), 2u);
    EXPECT_EQ(read->inputs[0].name, "a.hdf");
    EXPECT_EQ(read->inputs[0].digest, origin.inputs[0].digest);
    EXPECT_EQ(read->inputs[1].role, qnl::InputRole::MarkerLog);
    EXPECT_FALSE(read->inputs[1].digest.IsThere());
    EXPECT_TRUE(qnl::results::ReadResultFile(path).origin);
}

TEST(ResultWriter, AFileMayTellNothingOfItsInputs) {
    const ScratchFolder folder;
    const std::string path = folder.File("part1.frz");
    Writer writer;
    Calls calls;
    writer.BeginWriting(path.c_str(), "", true);
    ASSERT_TRUE(calls.Describe(writer) && calls.WriteArrays(writer) && writer.EndWriting());
    EXPECT_FALSE(qnl::results::ReadResultOrigin(path));
    EXPECT_FALSE(qnl::results::ReadResultOrigin(folder.File("missing")));
}

}  // namespace
