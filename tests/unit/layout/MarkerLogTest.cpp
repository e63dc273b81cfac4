#include "layout/MarkerLog.h"

#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

using qnl::layout::MarkerLog;

MarkerLog Look(const std::string& text) {
    const ScratchFolder folder;
    return qnl::layout::LookAtMarkerLog(folder.Write("log", text));
}

}  // namespace

TEST(MarkerLog, IsCompleteWithTheMarkAnywhereInALine) {
    EXPECT_EQ(Look("1 1.0\n[EOF]\n"), MarkerLog::Complete);
    EXPECT_EQ(Look("[EOF]"), MarkerLog::Complete);
    EXPECT_EQ(Look("text [EOF] text\n2 2.0\n"), MarkerLog::Complete);
    EXPECT_EQ(Look("1 1.0\n"), MarkerLog::Incomplete);
    EXPECT_EQ(Look("[EO\nF]\n"), MarkerLog::Incomplete);
    EXPECT_EQ(Look(""), MarkerLog::Incomplete);
}

TEST(MarkerLog, AMarkAcrossTheEndOfALineOf254BytesDoesNotCount) {
    EXPECT_EQ(Look(std::string(254, 'x') + "[EOF]\n"), MarkerLog::Complete);
    for (std::size_t cut = 1; cut < 5; ++cut) {
        EXPECT_EQ(Look(std::string(254 - cut, 'x') + "[EOF]\n"), MarkerLog::Incomplete) << cut;
    }
    EXPECT_EQ(Look(std::string(254 - 5, 'x') + "[EOF]\n"), MarkerLog::Complete);
}

TEST(MarkerLog, IsMissingWhereThereIsNoFile) {
    const ScratchFolder folder;
    EXPECT_EQ(qnl::layout::LookAtMarkerLog(folder.File("log")), MarkerLog::Missing);
}

TEST(MarkerLog, WhatIsWrittenIsComplete) {
    EXPECT_EQ(qnl::layout::MarkerLogText({"0.5", "1.25"}), "1 0.5\n2 1.25\n[EOF]\n");
    EXPECT_EQ(Look(qnl::layout::MarkerLogText({})), MarkerLog::Complete);
}
