#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <stdexcept>

#include "platform/CQNLCom.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"
#include "support/ScratchFolder.h"

namespace {

using Tool = CQNLKNLogErrMsgTool;

TEST(LogTool, PrintsGeneralMessagesAsTheyAre) {
    std::ostringstream out;
    Tool::printGeneralMessage("a", "", out);
    Tool::printGeneralMessage("b\n", "c", out);
    EXPECT_EQ(out.str(), "ab\nc");
}

TEST(LogTool, EndsALineOnce) {
    std::ostringstream out;
    Tool::printLogStringContent("a", "", out);
    Tool::printLogStringContent("b\n", "", out);
    Tool::printLogStringContent("b\n ", "", out);
    Tool::printLogStringContent("", "", out);
    EXPECT_EQ(out.str(), "a\nb\nb\n \n\n");
}

TEST(LogTool, NamesTheErrorCode) {
    std::ostringstream out;
    Tool::printErrorMessageContent(3302, "no file", "", out);
    Tool::printErrorMessageContent(-1, "x\n", "", out);
    EXPECT_EQ(out.str(), "Error 3302: no file\nError -1: x\n");
}

std::string ReasonOf(void (*raise)()) {
    std::ostringstream out;
    try {
        raise();
    } catch (...) {
        Tool::printErrorOutofMemory("", out);
    }
    return out.str();
}

TEST(LogTool, SaysWhatTheExceptionInFlightSays) {
    EXPECT_EQ(ReasonOf([] { throw std::bad_alloc(); }), "out of memory\n");
    EXPECT_EQ(ReasonOf([] { throw std::out_of_range("invalid string position"); }),
              "invalid string position\n");
    EXPECT_EQ(ReasonOf([] { throw 7; }), "unknown exception\n");
    std::ostringstream out;
    Tool::printErrorOutofMemory("text", out);
    EXPECT_EQ(out.str(), "text\n");
}

TEST(LogTool, AppendsToTheLogFileUntilItIsDestroyed) {
    const ScratchFolder folder;
    const std::string path = folder.File("project.log");
    folder.Write(path, "before\n");
    std::ostringstream out;
    {
        Tool tool;
        Tool::printGeneralMessage("unattached\n", "", out);
        EXPECT_EQ(tool.setData_Append(path.c_str()), 1);
        Tool::printGeneralMessage("one\n", "", out);
        EXPECT_EQ(folder.Read(path), "before\none\n");
        Tool::printLogStringContent("two", "", out);
    }
    Tool::printGeneralMessage("after\n", "", out);
    EXPECT_EQ(folder.Read(path), "before\none\ntwo\n");
    EXPECT_EQ(out.str(), "unattached\none\ntwo\nafter\n");
}

TEST(LogTool, KeepsTheFileOfALaterTool) {
    const ScratchFolder folder;
    std::ostringstream out;
    Tool later;
    {
        Tool first;
        EXPECT_EQ(first.setData_Append(folder.File("first").c_str()), 1);
        EXPECT_EQ(later.setData_Append(folder.File("later").c_str()), 1);
    }
    Tool::printGeneralMessage("text", "", out);
    EXPECT_EQ(folder.Read("first"), "");
    EXPECT_EQ(folder.Read("later"), "text");
}

TEST(LogTool, GoesOnWithoutALogFileThatCannotBeOpened) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    std::ostringstream out;
    Tool tool;
    EXPECT_EQ(tool.setData_Append(folder.File("no/folder/log").c_str()), -1);
    EXPECT_EQ(tool.setData_Append(folder.Path().c_str()), -1);
    EXPECT_EQ(tool.setData_Append(nullptr), -1);
    Tool::printGeneralMessage("text", "", out);
    EXPECT_EQ(out.str(), "text");
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 3u);
    EXPECT_EQ(faults[0].file, folder.File("no/folder/log"));
    EXPECT_EQ(faults[0].found, "No such file or directory");
    EXPECT_EQ(faults[1].found, "Is a directory");
}

TEST(LogTool, RecordsAFullDiskOnce) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    qnl::TakeFaults();
    std::ostringstream out;
    Tool tool;
    EXPECT_EQ(tool.setData_Append("/dev/full"), 1);
    Tool::printGeneralMessage("one\n", "", out);
    Tool::printGeneralMessage("two\n", "", out);
    EXPECT_EQ(out.str(), "one\ntwo\n");
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].file, "/dev/full");
    EXPECT_EQ(faults[0].found, "No space left on device");
}

TEST(Environment, IsOneProcessWithAMonotonicClock) {
    CQNLCom environment;
    int rank = 9;
    int processes = 9;
    EXPECT_EQ(environment.Init(true, rank, processes, 0, nullptr, 0), 1);
    EXPECT_EQ(rank, 0);
    EXPECT_EQ(processes, 1);
    const double before = environment.Time();
    double after = environment.Time();
    for (int i = 0; i < 1000000 && after == before; ++i) {
        after = environment.Time();
    }
    EXPECT_GT(after, before);
    EXPECT_LT(after - before, 60.0);
}

}  // namespace
