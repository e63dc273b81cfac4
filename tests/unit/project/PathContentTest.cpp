#include "project/PathContent.h"

#include <gtest/gtest.h>

#include "project/ProjectPaths.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::project::PathContent;
using qnl::project::RecognisePath;

const std::string kZero(1, '\0');

struct Sample {
    const char* what;
    std::string content;
    PathContent kind;
};

class RecognisePathTest : public testing::TestWithParam<Sample> {};

TEST_P(RecognisePathTest, TellsByContent) {
    const ScratchFolder folder;
    EXPECT_EQ(RecognisePath(folder.Write("file.txt", GetParam().content)), GetParam().kind)
        << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RecognisePathTest,
    testing::Values(Sample{"search file", "\xE9\x03" + kZero + kZero + kZero, PathContent::Search},
                    Sample{"other version", "\xEA\x03" + kZero + kZero, PathContent::Unknown},
                    Sample{"ASCII result", "1\n[HEADER]\n", PathContent::AsciiResult},
                    Sample{"run file", "[MESH]\nMeshCount = 1\n", PathContent::RunFile},
                    Sample{"material", "kind = \"thermoset\"\n", PathContent::Material},
                    Sample{"empty", "", PathContent::Unknown}, Sample{"text", "hello", PathContent::Unknown},
                    Sample{"bytes", "kind =" + kZero, PathContent::Unknown}));

TEST(RecognisePath, FolderAndNothing) {
    EXPECT_EQ(RecognisePath(ScratchFolder().Path() + "/.."), PathContent::Folder);
    EXPECT_THROW(RecognisePath("/does/not/exist"), qnl::project::InputProblem);
}

}  // namespace
