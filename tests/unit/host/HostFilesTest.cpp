#include "platform/HostFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

namespace fs = std::filesystem;

void WriteText(qnl::ReplacedFile& file, const char* text) {
    std::fputs(text, file.Get());
}

#ifndef _WIN32
TEST(HostPath, TurnsEveryBackslash) {
    EXPECT_EQ(HostPath("C:\\a\\b.txt"), "C:/a/b.txt");
    EXPECT_EQ(HostPath(""), "");
    EXPECT_EQ(HostPath("a/b"), "a/b");
}

TEST(HostFile, OpensWindowsStylePaths) {
    const ScratchFolder folder;
    folder.Write("data.txt", "x");
    EXPECT_TRUE(qnl::HostFile(folder.Path() + "\\data.txt", "rb"));
}
#endif

TEST(HostFile, StaysEmptyForAMissingFileAFolderAndATextWithNul) {
    const ScratchFolder folder;
    folder.Write("data", "x");
    EXPECT_FALSE(qnl::HostFile(folder.File("missing"), "rb"));
    EXPECT_FALSE(qnl::HostFile(folder.Path(), "rb"));
    EXPECT_FALSE(qnl::HostFile(folder.File("data") + std::string("\0.txt", 5), "rb"));
}

TEST(HostFile, MovesItsStream) {
    const ScratchFolder folder;
    folder.Write("data", "x");
    qnl::HostFile first(folder.File("data"), "rb");
    qnl::HostFile second(std::move(first));
    EXPECT_TRUE(second);
    qnl::HostFile third;
    third = std::move(second);
    EXPECT_TRUE(third);
    EXPECT_TRUE(third.Close());
    EXPECT_FALSE(third);
    EXPECT_TRUE(third.Close());
}

TEST(ReadAll, GivesEveryByte) {
    const ScratchFolder folder;
    for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 300000u}) {
        std::string content(size, 'a');
        for (std::size_t i = 0; i < size; ++i) {
            content[i] = static_cast<char>(i * 31);
        }
        folder.Write("data", content);
        const qnl::HostFile file(folder.File("data"), "rb");
        std::string read = "old";
        ASSERT_TRUE(qnl::ReadAll(file.Get(), read));
        EXPECT_EQ(read, content);
    }
}

TEST(IsOlder, ComparesTimesOfExistingFilesOnly) {
    const ScratchFolder folder;
    const std::string a = folder.File("a");
    const std::string b = folder.File("b");
    folder.Write(a, "a");
    EXPECT_FALSE(qnl::IsOlder(a, b));
    EXPECT_FALSE(qnl::IsOlder(b, a));
    folder.Write(b, "b");
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(a, now);
    fs::last_write_time(b, now);
    EXPECT_FALSE(qnl::IsOlder(a, b));
    EXPECT_FALSE(qnl::IsOlder(b, a));
    fs::last_write_time(b, now + std::chrono::seconds(1));
    EXPECT_TRUE(qnl::IsOlder(a, b));
    EXPECT_FALSE(qnl::IsOlder(b, a));
}

TEST(ReplacedFile, AppearsAtCommitAndNotBefore) {
    const ScratchFolder folder;
    const std::string target = folder.File("result.pro");
    {
        qnl::ReplacedFile file(target, "wb");
        ASSERT_TRUE(file);
        WriteText(file, "new");
        EXPECT_FALSE(fs::exists(target));
        EXPECT_TRUE(file.Commit());
    }
    EXPECT_EQ(folder.Read(target), "new");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, WithoutCommitLeavesTheOldFileAndNothingElse) {
    const ScratchFolder folder;
    const std::string target = folder.File("result.pro");
    folder.Write(target, "old");
    {
        qnl::ReplacedFile file(target, "wb");
        WriteText(file, "new");
        EXPECT_EQ(folder.Read(target), "old");
    }
    EXPECT_EQ(folder.Read(target), "old");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, TakesTheLongestFileName) {
    const ScratchFolder folder;
    const std::string target = folder.File(std::string(255, 'n'));
    qnl::ReplacedFile file(target, "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(folder.Read(target), "new");
}

TEST(ReplacedFile, TakesAPathOf511Bytes) {
    const ScratchFolder folder;
    std::string path = folder.Path();
    while (path.size() + 201 < 511 - 2) {
        path += "/" + std::string(200, 'd');
        fs::create_directory(path);
    }
    path += "/" + std::string(511 - path.size() - 1, 'f');
    ASSERT_EQ(path.size(), 511u);
    qnl::ReplacedFile file(path, "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(folder.Read(path), "new");
}

TEST(ReplacedFile, KeepsTwoWritersOfOneTargetApart) {
    const ScratchFolder folder;
    const std::string target = folder.File("result.pro");
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&target, t] {
            for (int i = 0; i < 50; ++i) {
                qnl::ReplacedFile file(target, "wb");
                const std::string content(5000, static_cast<char>('a' + t));
                std::fwrite(content.data(), 1, content.size(), file.Get());
                EXPECT_TRUE(file.Commit());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string content = folder.Read(target);
    EXPECT_EQ(content.size(), 5000u);
    EXPECT_EQ(content, std::string(5000, content.at(0)));
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, RecordsWhyItCannotBeOpened) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    qnl::ReplacedFile missing(folder.File("no/such/folder/file"), "wb");
    EXPECT_FALSE(missing);
    EXPECT_FALSE(missing.Commit());
    qnl::ReplacedFile directory(folder.Path(), "wb");
    EXPECT_FALSE(directory);
    EXPECT_FALSE(directory.Commit());
    qnl::ReplacedFile nameless("", "wb");
    EXPECT_FALSE(nameless);
    EXPECT_FALSE(nameless.Commit());
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 3u);
    EXPECT_EQ(faults[0].file, folder.File("no/such/folder/file"));
    EXPECT_EQ(faults[0].found, "No such file or directory");
    EXPECT_EQ(faults[1].found, "a folder of that name");
    EXPECT_EQ(faults[1].remedy, "move the folder away, or give it another name, and run again");
    EXPECT_EQ(faults[2].found, "no name");
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

#ifndef _WIN32
TEST(ReplacedFile, WritesThroughALinkToAFile) {
    const ScratchFolder folder;
    folder.Write("real", "old");
    fs::create_symlink(folder.File("real"), folder.File("link"));
    qnl::ReplacedFile file(folder.File("link"), "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_TRUE(fs::is_symlink(folder.File("link")));
    EXPECT_EQ(folder.Read("real"), "new");
}

TEST(ReplacedFile, RecordsAFullDisk) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    const ScratchFolder folder;
    fs::create_symlink("/dev/full", folder.File("full"));
    for (const std::string& target : {folder.File("full"), std::string("/dev/full")}) {
        qnl::TakeFaults();
        qnl::ReplacedFile file(target, "wb");
        ASSERT_TRUE(file);
        WriteText(file, "new");
        EXPECT_FALSE(file.Commit());
        const std::vector<qnl::Fault> faults = qnl::TakeFaults();
        ASSERT_EQ(faults.size(), 1u);
        EXPECT_EQ(faults[0].file, "/dev/full");
        EXPECT_EQ(faults[0].found, "No space left on device");
    }
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(ReplacedFile, RecordsAFullDiskMetBeforeTheEnd) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    qnl::TakeFaults();
    qnl::ReplacedFile file("/dev/full", "wb");
    const std::string content(1 << 20, 'a');
    std::fwrite(content.data(), 1, content.size(), file.Get());
    std::fflush(file.Get());
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(qnl::TakeFaults().size(), 1u);
}
#endif

TEST(Faults, KeepTheirOrderFromAllThreads) {
    qnl::TakeFaults();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 100; ++i) {
                qnl::RecordFault({std::to_string(t), std::to_string(i), "", "", ""});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 400u);
    std::vector<int> next(4, 0);
    for (const qnl::Fault& fault : faults) {
        EXPECT_EQ(fault.object, std::to_string(next[static_cast<std::size_t>(std::stoi(fault.file))]++));
    }
}

}  // namespace
