#include "platform/HostFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "platform/Faults.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

void WriteText(ReplacedFile& file, const char* text) {
    std::fputs(text, file.Get());
}

#ifndef _WIN32
TEST(HostPath, TurnsEveryBackslash) {
    EXPECT_EQ(HostPath("C:\\a\\b.txt"), "C:/a/b.txt");
    EXPECT_EQ(HostPath(""), "");
    EXPECT_EQ(HostPath("a/b"), "a/b");
}

TEST(HostFile, OpensWindowsStylePaths) {
    const TempFolder folder;
    WriteBytes(folder.Path("data.txt"), "x");
    EXPECT_TRUE(HostFile(folder.Folder() + "\\data.txt", "rb"));
}
#endif

TEST(HostFile, StaysEmptyForAMissingFileAFolderAndATextWithNul) {
    const TempFolder folder;
    WriteBytes(folder.Path("data"), "x");
    EXPECT_FALSE(HostFile(folder.Path("missing"), "rb"));
    EXPECT_FALSE(HostFile(folder.Folder(), "rb"));
    EXPECT_FALSE(HostFile(folder.Path("data") + std::string("\0.txt", 5), "rb"));
}

TEST(HostFile, MovesItsStream) {
    const TempFolder folder;
    WriteBytes(folder.Path("data"), "x");
    HostFile first(folder.Path("data"), "rb");
    HostFile second(std::move(first));
    EXPECT_TRUE(second);
    HostFile third;
    third = std::move(second);
    EXPECT_TRUE(third);
    EXPECT_TRUE(third.Close());
    EXPECT_FALSE(third);
    EXPECT_TRUE(third.Close());
}

TEST(ReadAll, GivesEveryByte) {
    const TempFolder folder;
    for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 300000u}) {
        std::string content(size, 'a');
        for (std::size_t i = 0; i < size; ++i) {
            content[i] = static_cast<char>(i * 31);
        }
        WriteBytes(folder.Path("data"), content);
        const HostFile file(folder.Path("data"), "rb");
        std::string read = "old";
        ASSERT_TRUE(ReadAll(file.Get(), read));
        EXPECT_EQ(read, content);
    }
}

TEST(IsOlder, ComparesTimesOfExistingFilesOnly) {
    const TempFolder folder;
    const std::string a = folder.Path("a");
    const std::string b = folder.Path("b");
    WriteBytes(a, "a");
    EXPECT_FALSE(IsOlder(a, b));
    EXPECT_FALSE(IsOlder(b, a));
    WriteBytes(b, "b");
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(a, now);
    fs::last_write_time(b, now);
    EXPECT_FALSE(IsOlder(a, b));
    EXPECT_FALSE(IsOlder(b, a));
    fs::last_write_time(b, now + std::chrono::seconds(1));
    EXPECT_TRUE(IsOlder(a, b));
    EXPECT_FALSE(IsOlder(b, a));
}

TEST(ReplacedFile, AppearsAtCommitAndNotBefore) {
    const TempFolder folder;
    const std::string target = folder.Path("result.pro");
    {
        ReplacedFile file(target, "wb");
        ASSERT_TRUE(file);
        WriteText(file, "new");
        EXPECT_FALSE(fs::exists(target));
        EXPECT_TRUE(file.Commit());
    }
    EXPECT_EQ(ReadBytes(target), "new");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, WithoutCommitLeavesTheOldFileAndNothingElse) {
    const TempFolder folder;
    const std::string target = folder.Path("result.pro");
    WriteBytes(target, "old");
    {
        ReplacedFile file(target, "wb");
        WriteText(file, "new");
        EXPECT_EQ(ReadBytes(target), "old");
    }
    EXPECT_EQ(ReadBytes(target), "old");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, TakesTheLongestFileName) {
    const TempFolder folder;
    const std::string target = folder.Path(std::string(255, 'n'));
    ReplacedFile file(target, "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(ReadBytes(target), "new");
}

TEST(ReplacedFile, TakesAPathOf511Bytes) {
    const TempFolder folder;
    std::string path = folder.Folder();
    while (path.size() + 201 < 511 - 2) {
        path += "/" + std::string(200, 'd');
        fs::create_directory(path);
    }
    path += "/" + std::string(511 - path.size() - 1, 'f');
    ASSERT_EQ(path.size(), 511u);
    ReplacedFile file(path, "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(ReadBytes(path), "new");
}

TEST(ReplacedFile, KeepsTwoWritersOfOneTargetApart) {
    const TempFolder folder;
    const std::string target = folder.Path("result.pro");
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&target, t] {
            for (int i = 0; i < 50; ++i) {
                ReplacedFile file(target, "wb");
                const std::string content(5000, static_cast<char>('a' + t));
                std::fwrite(content.data(), 1, content.size(), file.Get());
                EXPECT_TRUE(file.Commit());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string content = ReadBytes(target);
    EXPECT_EQ(content.size(), 5000u);
    EXPECT_EQ(content, std::string(5000, content.at(0)));
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplacedFile, RecordsWhyItCannotBeOpened) {
    const TempFolder folder;
    TakeFaults();
    ReplacedFile missing(folder.Path("no/such/folder/file"), "wb");
    EXPECT_FALSE(missing);
    EXPECT_FALSE(missing.Commit());
    ReplacedFile directory(folder.Folder(), "wb");
    EXPECT_FALSE(directory);
    EXPECT_FALSE(directory.Commit());
    const std::vector<Fault> faults = TakeFaults();
    ASSERT_EQ(faults.size(), 2u);
    EXPECT_EQ(faults[0].file, folder.Path("no/such/folder/file"));
    EXPECT_EQ(faults[0].found, "No such file or directory");
    EXPECT_EQ(faults[1].found, "a folder of that name");
    EXPECT_TRUE(TakeFaults().empty());
}

#ifndef _WIN32
TEST(ReplacedFile, WritesThroughALinkToAFile) {
    const TempFolder folder;
    WriteBytes(folder.Path("real"), "old");
    fs::create_symlink(folder.Path("real"), folder.Path("link"));
    ReplacedFile file(folder.Path("link"), "wb");
    WriteText(file, "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_TRUE(fs::is_symlink(folder.Path("link")));
    EXPECT_EQ(ReadBytes(folder.Path("real")), "new");
}

TEST(ReplacedFile, RecordsAFullDisk) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    const TempFolder folder;
    fs::create_symlink("/dev/full", folder.Path("full"));
    for (const std::string& target : {folder.Path("full"), std::string("/dev/full")}) {
        TakeFaults();
        ReplacedFile file(target, "wb");
        ASSERT_TRUE(file);
        WriteText(file, "new");
        EXPECT_FALSE(file.Commit());
        const std::vector<Fault> faults = TakeFaults();
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
    TakeFaults();
    ReplacedFile file("/dev/full", "wb");
    const std::string content(1 << 20, 'a');
    std::fwrite(content.data(), 1, content.size(), file.Get());
    std::fflush(file.Get());
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(TakeFaults().size(), 1u);
}
#endif

TEST(Faults, KeepTheirOrderFromAllThreads) {
    TakeFaults();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 100; ++i) {
                RecordFault({std::to_string(t), std::to_string(i), "", "", ""});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<Fault> faults = TakeFaults();
    ASSERT_EQ(faults.size(), 400u);
    std::vector<int> next(4, 0);
    for (const Fault& fault : faults) {
        EXPECT_EQ(fault.object, std::to_string(next[static_cast<std::size_t>(std::stoi(fault.file))]++));
    }
}

}  // namespace
