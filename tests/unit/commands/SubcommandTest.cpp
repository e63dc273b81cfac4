#include "commands/Subcommand.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "platform/Faults.h"
#include "support/CapturedOutput.h"

namespace {

/// What a subcommand "try" that does `work` ends with.
struct Ending {
    explicit Ending(const std::function<bool()>& work) {
        const CapturedOutput output;
        std::ostringstream errors;
        std::streambuf* const old = std::cerr.rdbuf(errors.rdbuf());
        qnl::commands::Program program;
        program.AddSubcommand({"try", "try it", "Tries it.", {}}, work);
        const char* const words[] = {"frozenlayer", "try"};
        EXPECT_FALSE(program.Choose(2, words));
        code = program.Perform();
        std::cerr.rdbuf(old);
        told = errors.str();
    }
    int code = 0;
    std::string told;
};

TEST(Subcommand, EndsWithZeroWhenAllWentWell) {
    const Ending ending([] { return true; });
    EXPECT_EQ(ending.code, 0);
    EXPECT_EQ(ending.told, "");
    EXPECT_EQ(Ending([] { return false; }).code, 1);
}

TEST(Subcommand, FaultsAreToldAndMakeItFail) {
    const Ending ending([] {
        qnl::RecordFault({"f", "item 6", "10 values", "9 values", ""});
        return true;
    });
    EXPECT_EQ(ending.code, 1);
    EXPECT_EQ(ending.told, "1 fault:\n  f: item 6: 10 values expected, 9 values found.\n");
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(Subcommand, AnExceptionIsOneSentenceWithTheFaultsThatItDoesNotTell) {
    const Ending ending([]() -> bool {
        qnl::RecordFault({"f", "", "a mesh", "cell 3 has zero volume", ""});
        qnl::RecordFault({"g", "", "", "a gap", ""});
        throw std::runtime_error("f: cell 3 has zero volume");
    });
    EXPECT_EQ(ending.code, 1);
    EXPECT_EQ(ending.told, "frozenlayer: f: cell 3 has zero volume\n1 fault:\n  g: a gap.\n");
}

TEST(Subcommand, OutputThatCannotBeWrittenMakesItFail) {
    const Ending ending([] {
        std::cout.setstate(std::ios::badbit);
        return true;
    });
    std::cout.clear();
    EXPECT_EQ(ending.code, 1);
    EXPECT_EQ(ending.told,
              "frozenlayer: standard output cannot be written: free space, or send it elsewhere\n");
}

}  // namespace
