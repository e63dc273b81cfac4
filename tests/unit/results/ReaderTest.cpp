#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "ResultSample.h"
#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/Faults.h"
#include "support/Hdf5Edit.h"
#include "support/ScratchFolder.h"

namespace {

using Reader = CQNL3DResultReader_Manipulator;

std::string WriteSample(const ScratchFolder& folder, const qnl::results::StageResult& sample) {
    const std::string path = folder.File("stage.k4f");
    EXPECT_TRUE(qnl::results::WriteStageResult(path, sample));
    qnl::TakeFaults();
    return path;
}

TEST(ResultReader, GivesHeadItemsAndValues) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.GetResultVersion(), 1);

    int code = 0;
    int stamp = 0;
    int flag = 0;
    int count = 0;
    std::array<char, 1024> mesh{};
    std::array<char, 1024> material{};
    std::array<char, 1024> project{};
    reader.GetHeadInfo(code, stamp, mesh.data(), material.data(), project.data(), flag, count);
    EXPECT_EQ(code, 1007);
    EXPECT_EQ(stamp, 42);
    EXPECT_STREQ(mesh.data(), "Mesh\\part.hdf");
    EXPECT_STREQ(material.data(), "Material\\abs.toml");
    EXPECT_STREQ(project.data(), "demo");
    EXPECT_EQ(flag, 3);
    ASSERT_EQ(count, 3);

    std::array<std::array<char, 260>, 3> nameText{};
    std::array<std::array<char, 260>, 3> unitText{};
    std::array<char*, 3> names{nameText[0].data(), nameText[1].data(), nameText[2].data()};
    std::array<char*, 3> units{unitText[0].data(), unitText[1].data(), unitText[2].data()};
    std::array<int, 3> ids{};
    std::array<int, 3> types{};
    reader.GetResultItemInfo(ids.data(), names.data(), units.data(), types.data());
    EXPECT_EQ(ids, (std::array<int, 3>{6, 9, 14}));
    EXPECT_EQ(types, (std::array<int, 3>{1, 2, 1}));
    EXPECT_STREQ(names[0], "Temperature");
    EXPECT_STREQ(units[0], "\u00b0C");
    EXPECT_STREQ(names[1], "Axy");
    EXPECT_STREQ(units[1], "");

    EXPECT_EQ(reader.GetMaxCavityNode(), 4);
    EXPECT_EQ(reader.GetMaxCavityElem(), 2);
    std::vector<float> values(5, -7.0F);
    EXPECT_TRUE(reader.GetResultItem(6, values.data()));
    EXPECT_EQ(values, (std::vector<float>{-7.0F, 20.0F, 230.5F, 90.0F, 21.0F}));
    std::vector<float> elements(3, -7.0F);
    EXPECT_TRUE(reader.GetResultItem(9, elements.data()));
    EXPECT_EQ(elements, (std::vector<float>{-7.0F, 0.25F, -0.5F}));
    EXPECT_FALSE(reader.GetResultDataIDMap(QNLRESULT_NODE));
    reader.EndReading();
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(ResultReader, RefusesAnItemOfATypeThatWasNotAskedFor) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.GetMaxCavityElem(), 2);
    std::vector<float> values(3, -7.0F);
    EXPECT_FALSE(reader.GetResultItem(6, values.data())) << "four values by node do not fit";
    EXPECT_EQ(values, std::vector<float>(3, -7.0F));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "item 6 data_type");
    EXPECT_EQ(faults[0].found, "values by node");
    EXPECT_TRUE(reader.GetResultItem(9, values.data()));
    EXPECT_EQ(values, (std::vector<float>{-7.0F, 0.25F, -0.5F}));
}

TEST(ResultReader, LeavesValuesAloneWhenTheItemIsAbsent) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    std::vector<float> values(5, -7.0F);
    for (const int item : {7, 0, -1, 1000000}) {
        EXPECT_FALSE(reader.GetResultItem(item, values.data())) << item;
    }
    EXPECT_EQ(values, std::vector<float>(5, -7.0F));
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(ResultReader, GivesTheIdMap) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, MappedSample());
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.GetMaxCavityNode(), 3);
    EXPECT_TRUE(reader.GetResultDataIDMap(QNLRESULT_NODE));
    EXPECT_FALSE(reader.GetResultDataIDMap(QNLRESULT_ELEMENT));
    std::vector<int> ids(4, -1);
    EXPECT_FALSE(reader.GetResultDataIDArray(QNLRESULT_ELEMENT, ids.data()));
    EXPECT_EQ(ids, std::vector<int>(4, -1));
    EXPECT_TRUE(reader.GetResultDataIDArray(QNLRESULT_NODE, ids.data()));
    EXPECT_EQ(ids, (std::vector<int>{-1, 7, 3, 1000}));
}

TEST(ResultReader, HandsNodeLabelsOverAsTheyStand) {
    const ScratchFolder folder;
    qnl::results::StageResult sample = MappedSample();
    sample.nodeIds = std::vector<int>{-5, 0, 2147483647};
    const std::string path = WriteSample(folder, sample);
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    std::vector<int> ids(4, 1);
    EXPECT_TRUE(reader.GetResultDataIDArray(QNLRESULT_NODE, ids.data()));
    EXPECT_EQ(ids, (std::vector<int>{1, -5, 0, 2147483647}));
}

TEST(ResultReader, ReadsAFileWithoutAnyEntry) {
    const ScratchFolder folder;
    qnl::results::StageResult sample = MappedSample();
    sample.nodeIds = std::vector<int>();
    sample.items.front().values.clear();
    const std::string path = WriteSample(folder, sample);
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.GetMaxCavityNode(), 0);
    float value = -7.0F;
    EXPECT_TRUE(reader.GetResultItem(1, &value));
    EXPECT_EQ(value, -7.0F);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(ResultReader, CanReadOneFileAfterAnother) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    Reader reader;
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.BeginReading(folder.File("missing").c_str(), nullptr), -1);
    EXPECT_EQ(reader.GetMaxCavityNode(), 0);
    EXPECT_EQ(reader.GetMaxCavityElem(), 0);
    EXPECT_EQ(reader.GetResultVersion(), 0);
    float value = 0.0F;
    EXPECT_FALSE(reader.GetResultItem(6, &value));
    EXPECT_FALSE(reader.GetResultDataIDMap(QNLRESULT_NODE));
    ASSERT_GE(reader.BeginReading(path.c_str(), nullptr), 0);
    EXPECT_EQ(reader.GetMaxCavityNode(), 4);
    reader.EndReading();
    EXPECT_EQ(reader.GetMaxCavityNode(), 0);
    qnl::TakeFaults();
}

/// Status of an opening and the words of its one fault; "none" without a fault.
struct Opening {
    int status;
    std::string fault;
};

Opening Open(const std::string& path) {
    qnl::TakeFaults();
    Reader reader;
    const int status = reader.BeginReading(path.c_str(), nullptr);
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    if (faults.empty()) {
        return {status, "none"};
    }
    EXPECT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].file, path);
    EXPECT_FALSE(faults[0].remedy.empty());
    return {status, faults[0].object + "|" + faults[0].expected + "|" + faults[0].found};
}

TEST(ResultReader, TellsMissingFilesFromForeignAndDamagedOnes) {
    const ScratchFolder folder;
    EXPECT_EQ(Open(folder.File("missing.k4f")).status, -1);
    EXPECT_EQ(Open(folder.File("no/folder/missing.k4f")).status, -1);
    EXPECT_EQ(Open(folder.Path()).status, -1);
    EXPECT_EQ(Open(folder.File("missing.k4f")).fault, "|a result file|it cannot be opened");
    folder.Write("text", "[HEADER]\n1007 1.0\n");
    EXPECT_EQ(Open(folder.File("text")).status, -4);
    EXPECT_EQ(Open(folder.File("text")).fault, "none");
    folder.Write("empty", "");
    EXPECT_EQ(Open(folder.File("empty")).status, -4);
    Reader reader;
    EXPECT_EQ(reader.BeginReading(nullptr, nullptr), -1);
}

TEST(ResultReader, RejectsEveryTruncation) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    const std::string whole = folder.Read(path);
    for (std::size_t size = 8; size < whole.size(); size += 1 + size / 16) {
        folder.Write("cut", whole.substr(0, size));
        EXPECT_EQ(Open(folder.File("cut")).status, -2) << size;
    }
    folder.Write("cut", whole.substr(0, 7));
    EXPECT_EQ(Open(folder.File("cut")).status, -4);
}

struct Rejection {
    const char* name;
    void (*spoil)(const std::string& path);
    int status;
    const char* fault;
};

using hdf5_edit::DeleteAttribute;
using hdf5_edit::DeleteObject;
using hdf5_edit::PutFloats;
using hdf5_edit::PutInteger;
using hdf5_edit::PutIntegers;
using hdf5_edit::PutReal;
using hdf5_edit::PutText;

const std::vector<Rejection> kRejections = {
    {"FormatMissing", [](const std::string& p) { DeleteAttribute(p, "/", "format"); }, -2,
     "attribute format of /|a result file|missing"},
    {"FormatOfAnotherKind", [](const std::string& p) { PutText(p, "/", "format", "other"); }, -2,
     "format|\"qnl-result\"|\"other\""},
    {"FormatANumber", [](const std::string& p) { PutInteger(p, "/", "format", 1); }, -2,
     "attribute format of /|a result file|expected one text"},
    {"VersionMissing", [](const std::string& p) { DeleteAttribute(p, "/", "format_version"); }, -2,
     "attribute format_version of /|a result file|missing"},
    {"VersionNewer", [](const std::string& p) { PutInteger(p, "/", "format_version", 2); }, -3,
     "format_version|version 1|2"},
    {"VersionMuchNewer", [](const std::string& p) { PutInteger(p, "/", "format_version", 1LL << 40); }, -3,
     "format_version|version 1|1099511627776"},
    {"VersionZero", [](const std::string& p) { PutInteger(p, "/", "format_version", 0); }, -2,
     "format_version|version 1|0"},
    {"VersionAText", [](const std::string& p) { PutText(p, "/", "format_version", "1"); }, -2,
     "attribute format_version of /|a result file|expected an integer"},
    {"VersionAReal", [](const std::string& p) { PutReal(p, "/", "format_version", 1.0); }, -2,
     "attribute format_version of /|a result file|expected an integer"},
    {"ResultVersionMissing", [](const std::string& p) { DeleteAttribute(p, "/", "result_version"); }, -2,
     "attribute result_version of /|a result file|missing"},
    {"MaxNodeMissing", [](const std::string& p) { DeleteAttribute(p, "/", "max_node"); }, -2,
     "attribute max_node of /|a result file|missing"},
    {"MaxNodeNegative", [](const std::string& p) { PutInteger(p, "/", "max_node", -1); }, -2,
     "max_node|a number of stored entries|-1"},
    {"MaxNodeHuge", [](const std::string& p) { PutInteger(p, "/", "max_node", 16777217); }, -2,
     "max_node|a number of stored entries|16777217"},
    {"MaxNodeBeyondInt", [](const std::string& p) { PutInteger(p, "/", "max_node", 1LL << 32); }, -2,
     "attribute max_node of /|a result file|has a value that does not fit 32 bits"},
    {"MaxNodeHugeWithUnstoredArray",
     [](const std::string& p) {
         PutInteger(p, "/", "max_node", 2000000000);
         hdf5_edit::PutUnstored(p, "/items/7", 2000000000);
         hdf5_edit::CopyAttributes(p, "/items/6", "/items/7");
         PutInteger(p, "/head", "item_count", 4);
     },
     -2, "max_node|a number of stored entries|2000000000"},
    {"MaxElementMissing", [](const std::string& p) { DeleteAttribute(p, "/", "max_element"); }, -2,
     "attribute max_element of /|a result file|missing"},
    {"MaxElementNegative", [](const std::string& p) { PutInteger(p, "/", "max_element", -2); }, -2,
     "max_element|a number of stored entries|-2"},
    {"MaxElementHuge", [](const std::string& p) { PutInteger(p, "/", "max_element", 2147483647); }, -2,
     "max_element|a number of stored entries|2147483647"},
    {"HeadMissing", [](const std::string& p) { DeleteObject(p, "/head"); }, -2,
     "attribute code of /head|a result file|missing"},
    {"CodeMissing", [](const std::string& p) { DeleteAttribute(p, "/head", "code"); }, -2,
     "attribute code of /head|a result file|missing"},
    {"MeshANumber", [](const std::string& p) { PutInteger(p, "/head", "mesh", 1); }, -2,
     "attribute mesh of /head|a result file|expected one text"},
    {"MeshTooLong", [](const std::string& p) { PutText(p, "/head", "mesh", std::string(1024, 'm')); }, -2,
     "/head mesh|a text of at most 1023 bytes|1024 bytes"},
    {"ItemCountMissing", [](const std::string& p) { DeleteAttribute(p, "/head", "item_count"); }, -2,
     "attribute item_count of /head|a result file|missing"},
    {"ProducerWithoutProgram", [](const std::string& p) { DeleteAttribute(p, "/producer", "program"); }, -2,
     "attribute program of /producer|a result file|missing"},
    {"TimeValueAText", [](const std::string& p) { PutText(p, "/time", "value", "soon"); }, -2,
     "attribute value of /time|a result file|expected a number"},
    {"ItemsMissing", [](const std::string& p) { DeleteObject(p, "/items"); }, -2, nullptr},
    {"ItemNamedByWord", [](const std::string& p) { PutFloats(p, "/items/six", {1.0F}); }, -2,
     "/items|item numbers|\"six\""},
    {"ItemNamedWithZero", [](const std::string& p) { PutFloats(p, "/items/06", {1.0F}); }, -2,
     "/items|item numbers|\"06\""},
    {"ItemNegative", [](const std::string& p) { PutFloats(p, "/items/-1", {1.0F}); }, -2,
     "/items|item numbers|\"-1\""},
    {"ItemBeyondInt", [](const std::string& p) { PutFloats(p, "/items/4294967302", {1.0F}); }, -2,
     "/items|item numbers|\"4294967302\""},
    {"NameMissing", [](const std::string& p) { DeleteAttribute(p, "/items/6", "name"); }, -2,
     "attribute name of /items/6|a result file|missing"},
    {"NameTooLong", [](const std::string& p) { PutText(p, "/items/6", "name", std::string(260, 'n')); }, -2,
     "/items/6 name|a text of at most 259 bytes|260 bytes"},
    {"UnitMissing", [](const std::string& p) { DeleteAttribute(p, "/items/6", "unit"); }, -2,
     "attribute unit of /items/6|a result file|missing"},
    {"UnitTooLong", [](const std::string& p) { PutText(p, "/items/6", "unit", std::string(260, 'u')); }, -2,
     "/items/6 unit|a text of at most 259 bytes|260 bytes"},
    {"TypeMissing", [](const std::string& p) { DeleteAttribute(p, "/items/9", "data_type"); }, -2,
     "attribute data_type of /items/9|a result file|missing"},
    {"TypeUnknown", [](const std::string& p) { PutInteger(p, "/items/9", "data_type", 3); }, -2,
     "item 9 data_type|1 (node) or 2 (element)|3"},
    {"IdsTooShort",
     [](const std::string& p) {
         PutIntegers(p, "/node_ids", {1, 2, 3});
     },
     -2, "node_ids|4 integers|3 values"},
    {"IdsReal",
     [](const std::string& p) {
         PutFloats(p, "/node_ids", {1.0F, 2.0F, 3.0F, 4.0F});
     },
     -2, "node_ids|4 integers|4 values"},
    {"IdsWithTwoAxes",
     [](const std::string& p) {
         PutFloats(p, "/node_ids", {1.0F, 2.0F, 3.0F, 4.0F}, 2);
     },
     -2, "node_ids|4 integers|an array with 2 axes"},
};

class RejectedResult : public testing::TestWithParam<Rejection> {};

TEST_P(RejectedResult, GivesStatusAndReason) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    ASSERT_EQ(Open(path).status, 0);
    GetParam().spoil(path);
    const Opening opening = Open(path);
    EXPECT_EQ(opening.status, GetParam().status);
    if (GetParam().fault != nullptr) {
        EXPECT_EQ(opening.fault, GetParam().fault);
    }
}

INSTANTIATE_TEST_SUITE_P(OneField, RejectedResult, testing::ValuesIn(kRejections),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct ItemFault {
    const char* name;
    void (*spoil)(const std::string& path);
    const char* fault;
};

void ReplaceItem(const std::string& path, void (*put)(const std::string& path, const std::string& object)) {
    put(path, "/items/spare");
    hdf5_edit::CopyAttributes(path, "/items/6", "/items/spare");
    put(path, "/items/6");
    hdf5_edit::CopyAttributes(path, "/items/spare", "/items/6");
    DeleteObject(path, "/items/spare");
}

const std::vector<ItemFault> kItemFaults = {
    {"TooShort",
     [](const std::string& path) {
         ReplaceItem(path, [](const std::string& p, const std::string& o) { PutFloats(p, o, {1, 2, 3}); });
     },
     "item 6|4 values|3 values"},
    {"TooLong",
     [](const std::string& path) {
         ReplaceItem(path, [](const std::string& p, const std::string& o) {
             PutFloats(p, o, {1, 2, 3, 4, 5});
         });
     },
     "item 6|4 values|5 values"},
    {"LengthOfTheOtherType", [](const std::string& path) { PutInteger(path, "/items/6", "data_type", 2); },
     "item 6|2 values|4 values"},
    {"TwoAxes",
     [](const std::string& path) {
         ReplaceItem(path, [](const std::string& p, const std::string& o) {
             PutFloats(p, o, {1, 2, 3, 4}, 2);
         });
     },
     "item 6|4 values|an array with 2 axes"},
    {"Texts",
     [](const std::string& path) {
         ReplaceItem(path,
                     [](const std::string& p, const std::string& o) { hdf5_edit::PutStrings(p, o, 4); });
     },
     "/items/6|a result file|expected numbers"},
};

class FaultyItem : public testing::TestWithParam<ItemFault> {};

TEST_P(FaultyItem, IsRefusedAlone) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    GetParam().spoil(path);
    Reader reader;
    ASSERT_EQ(reader.BeginReading(path.c_str(), nullptr), 0);
    ASSERT_TRUE(qnl::TakeFaults().empty());
    std::vector<float> values(6, -7.0F);
    EXPECT_FALSE(reader.GetResultItem(6, values.data()));
    EXPECT_EQ(values, std::vector<float>(6, -7.0F));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].file, path);
    EXPECT_EQ(faults[0].object + "|" + faults[0].expected + "|" + faults[0].found, GetParam().fault);
    EXPECT_TRUE(reader.GetResultItem(14, values.data()));
    EXPECT_EQ(values[4], 4.0F);
}

INSTANTIATE_TEST_SUITE_P(OneItem, FaultyItem, testing::ValuesIn(kItemFaults),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ResultReader, RecordsValuesThatAreNotFiniteAndGivesThem) {
    const ScratchFolder folder;
    qnl::results::StageResult sample = DenseSample();
    sample.items[0].values = {1.0F, std::numeric_limits<float>::quiet_NaN(), 3.0F,
                              -std::numeric_limits<float>::infinity()};
    const std::string path = WriteSample(folder, sample);
    Reader reader;
    ASSERT_EQ(reader.BeginReading(path.c_str(), nullptr), 0);
    std::vector<float> values(5, 0.0F);
    EXPECT_TRUE(reader.GetResultItem(6, values.data()));
    EXPECT_EQ(values[1], 1.0F);
    EXPECT_TRUE(std::isnan(values[2]));
    EXPECT_EQ(values[4], -std::numeric_limits<float>::infinity());
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].object, "item 6");
    EXPECT_EQ(faults[0].found, "2 values that are not finite, the first at entry 2");
}

TEST(ResultReader, RefusesLabelsThatDoNotFit) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    PutIntegers(path, "/node_ids", {1, 2, 3, 1LL << 31});
    Reader reader;
    ASSERT_EQ(reader.BeginReading(path.c_str(), nullptr), 0);
    std::vector<int> ids(5, -1);
    EXPECT_TRUE(reader.GetResultDataIDMap(QNLRESULT_NODE));
    EXPECT_FALSE(reader.GetResultDataIDArray(QNLRESULT_NODE, ids.data()));
    EXPECT_EQ(ids, std::vector<int>(5, -1));
    EXPECT_EQ(qnl::TakeFaults().size(), 1u);
}

TEST(ResultReader, ReadsADenseFileThatCarriesLabels) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    PutIntegers(path, "/node_ids", {4, 3, 2, 1});
    Reader reader;
    ASSERT_EQ(reader.BeginReading(path.c_str(), nullptr), 0);
    std::vector<float> values(5, 0.0F);
    EXPECT_TRUE(reader.GetResultItem(6, values.data()));
    EXPECT_EQ(values[2], 230.5F);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(ResultReader, CountsTheItemsThatAreThere) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    PutInteger(path, "/head", "item_count", 2000000000);
    const Opening opening = Open(path);
    EXPECT_EQ(opening.status, 0);
    EXPECT_EQ(opening.fault, "item_count|2000000000 items|3 items");
    Reader reader;
    reader.BeginReading(path.c_str(), nullptr);
    int ignored = 0;
    int count = 0;
    std::array<char, 1024> text{};
    reader.GetHeadInfo(ignored, ignored, text.data(), text.data(), text.data(), ignored, count);
    EXPECT_EQ(count, 3);
    qnl::TakeFaults();
}

TEST(ResultReader, DoesWithoutProducerTimeAndRange) {
    const ScratchFolder folder;
    const std::string path = WriteSample(folder, DenseSample());
    DeleteObject(path, "/producer");
    DeleteObject(path, "/time");
    DeleteAttribute(path, "/items/6", "max");
    EXPECT_EQ(Open(path).fault, "none");
    const qnl::results::ResultFileContent content = qnl::results::ReadResultSummary(path);
    EXPECT_FALSE(content.producer);
    EXPECT_FALSE(content.time);
}

}  // namespace
