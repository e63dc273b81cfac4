#include "project/FileKind.h"

#include <gtest/gtest.h>

#include "info/FactReaders.h"
#include "project/ProjectPaths.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::project::FileKind;
using qnl::project::RecogniseFile;

const std::string kZero(1, '\0');

struct Sample {
    const char* what;
    std::string content;
    FileKind kind;
};

class RecogniseFileTest : public testing::TestWithParam<Sample> {};

TEST_P(RecogniseFileTest, TellsByContent) {
    const ScratchFolder folder;
    EXPECT_EQ(RecogniseFile(folder.Write("file.txt", GetParam().content)), GetParam().kind)
        << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RecogniseFileTest,
    testing::Values(Sample{"search file", "\xE9\x03" + kZero + kZero + kZero, FileKind::Search},
                    Sample{"other version", "\xEA\x03" + kZero + kZero, FileKind::Unknown},
                    Sample{"ASCII result", "1\n[HEADER]\n", FileKind::AsciiResult},
                    Sample{"run file", "[MESH]\nMeshCount = 1\n", FileKind::RunFile},
                    Sample{"material", "kind = \"thermoset\"\n", FileKind::Material},
                    Sample{"empty", "", FileKind::Unknown}, Sample{"text", "hello", FileKind::Unknown},
                    Sample{"bytes", "kind =" + kZero, FileKind::Unknown}));

TEST(RecogniseFile, FolderAndNothing) {
    EXPECT_EQ(RecogniseFile(ScratchFolder().Path() + "/.."), FileKind::Folder);
    EXPECT_THROW(RecogniseFile("/does/not/exist"), qnl::project::InputProblem);
}

std::string Integers(const std::vector<std::int32_t>& numbers) {
    std::string bytes;
    for (const std::int32_t number : numbers) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>((static_cast<std::uint32_t>(number) >> shift) & 0xFFU);
        }
    }
    return bytes;
}

std::int64_t Count(const qnl::info::FileFacts& facts, const std::string& key) {
    for (const qnl::info::Fact& fact : facts.facts) {
        if (fact.key == key) {
            return std::get<std::int64_t>(fact.value);
        }
    }
    return -1;
}

TEST(ReadSearchFacts, CountsRecordsAndIds) {
    const ScratchFolder folder;
    const qnl::info::FileFacts facts =
        qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers({1001, 3, 2, 7, 8, 0, 1, 9})));
    EXPECT_EQ(Count(facts, "surface_nodes"), 3);
    EXPECT_EQ(Count(facts, "pass_elements"), 3);
    EXPECT_EQ(Count(facts, "longest"), 2);
    EXPECT_EQ(Count(facts, "empty"), 1);
}

TEST(ReadSearchFacts, ReadsBeyondOneBuffer) {
    const ScratchFolder folder;
    std::vector<std::int32_t> numbers{1001, 2, 50000};
    numbers.resize(numbers.size() + 50000, 5);
    numbers.insert(numbers.end(), {1, 5});
    EXPECT_EQ(Count(qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers(numbers))), "pass_elements"),
              50001);
}

TEST(ReadSearchFacts, RefusesDamagedFiles) {
    const ScratchFolder folder;
    for (const std::vector<std::int32_t>& numbers :
         std::vector<std::vector<std::int32_t>>{{1001},
                                                {1001, -1},
                                                {1001, 1},
                                                {1001, 1, -1},
                                                {1001, 1, 2, 5},
                                                {1001, 2, 0},
                                                {1001, 1, 2147483647}}) {
        EXPECT_THROW(qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers(numbers))),
                     qnl::project::InputProblem);
    }
}

}  // namespace
