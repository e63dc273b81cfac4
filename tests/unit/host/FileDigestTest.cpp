#include <gtest/gtest.h>

#include <string>

#include "platform/ResultOrigin.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::DigestOf;
using qnl::FileDigest;

TEST(FileDigest, IsTheXxh3OfAllBytes) {
    const ScratchFolder folder;
    // The reference implementation's value for no bytes.
    EXPECT_EQ(DigestOf(folder.Write("empty", "")), (FileDigest{0, 0x2d06800538d394c2}));
    EXPECT_EQ(DigestOf(folder.Write("a", "abc")).size, 3);
}

TEST(FileDigest, EveryByteOfALongFileCounts) {
    const ScratchFolder folder;
    constexpr std::size_t kBytes = 1000000;  // several blocks and a rest
    std::string content(kBytes, 'a');
    const FileDigest whole = DigestOf(folder.Write("a", content));
    EXPECT_EQ(whole, DigestOf(folder.Write("b", content)));
    EXPECT_EQ(whole.size, static_cast<std::int64_t>(kBytes));
    for (const std::size_t place : {std::size_t{0}, kBytes / 2, kBytes - 1}) {
        content[place] = 'b';
        EXPECT_NE(whole.hash, DigestOf(folder.Write("b", content)).hash) << place;
        content[place] = 'a';
    }
}

TEST(FileDigest, AMissingFileAndAFolderAreNoFile) {
    const ScratchFolder folder;
    EXPECT_FALSE(DigestOf(folder.File("missing")).IsThere());
    EXPECT_FALSE(DigestOf(folder.Path()).IsThere());
    EXPECT_TRUE(DigestOf(folder.Write("empty", "")).IsThere());
}

}  // namespace
