#include "host/Interrupts.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "platform/HostFiles.h"
#include "support/ScratchFolder.h"

namespace {

TEST(Interrupts, AreNotedUntilNotingBeginsAnew) {
    qnl::host::NoteInterrupts();
    EXPECT_NO_THROW(qnl::host::RaiseIfInterrupted());
    std::raise(SIGINT);
    EXPECT_EQ(qnl::host::NotedInterrupt(), SIGINT);
    EXPECT_THROW(qnl::host::RaiseIfInterrupted(), qnl::host::Interrupted);
    qnl::host::NoteInterrupts();
    EXPECT_EQ(qnl::host::NotedInterrupt(), 0);
}

TEST(Interrupts, AFileThatIsBeingWrittenIsGivenUp) {
    const ScratchFolder folder;
    qnl::host::NoteInterrupts();
    {
        qnl::ReplacedFile file(folder.File("page"), "wb");
        file.Append("first");
        std::raise(SIGTERM);
        EXPECT_THROW(file.Append("second"), qnl::host::Interrupted);
    }
    qnl::host::NoteInterrupts();
    EXPECT_EQ(folder.FileCount(), 0U);
}

}  // namespace
