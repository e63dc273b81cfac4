#include "project/WrittenFiles.h"

#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

using qnl::project::WrittenFiles;

TEST(WrittenFiles, AreTheNewAndChangedOnes) {
    const ScratchFolder folder;
    folder.Write("a/same.txt", "1");
    folder.Write("a/changed.txt", "1");
    const WrittenFiles written({folder.Path() + "\\a", folder.Path() + "\\missing"});
    folder.Write("a/changed.txt", "12");
    folder.Write("a/new.txt", "");
    EXPECT_EQ(written.List(),
              (std::vector<std::string>{folder.Path() + "/a/changed.txt", folder.Path() + "/a/new.txt"}));
}

}  // namespace
