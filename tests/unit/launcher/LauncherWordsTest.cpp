#include "LauncherWords.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Words = std::vector<std::string>;

qnl::launcher::LauncherWords Parse(std::vector<const char*> arguments) {
    return qnl::launcher::ParseLauncherWords(static_cast<int>(arguments.size()), arguments.data());
}

TEST(LauncherWords, ArgumentZeroThatNamesAStageResultIsWordZero) {
    const qnl::launcher::LauncherWords parsed =
        Parse({"D:\\P\\Analysis\\Run2\\part2.k4f", "D:\\P", "part", "4", "2"});
    EXPECT_EQ(parsed.words, (Words{"D:\\P\\Analysis\\Run2\\part2.k4f", "D:\\P", "part", "4", "2"}));
    EXPECT_EQ(parsed.usageError, "");
}

TEST(LauncherWords, EveryStageAndFibreExtensionMarksArgumentZero) {
    for (const char* result : {"x.k4f", "x.k4p", "x.k4c", "x.k4hc", "x.k4w", "x.k4o"}) {
        EXPECT_EQ(Parse({result}).words, Words{result});
    }
}

TEST(LauncherWords, OtherwiseTheWordsBeginAtArgumentOne) {
    EXPECT_EQ(Parse({"/usr/bin/QNL3DFrozenLayer", "x.k4f", "dir", "x", "4", "1", "w"}).words,
              (Words{"x.k4f", "dir", "x", "4", "1", "w"}));
}

TEST(LauncherWords, APatternInTheMiddleOfArgumentZeroCounts) {
    EXPECT_EQ(Parse({"/old.k4w/program", "x"}).words, (Words{"/old.k4w/program", "x"}));
}

TEST(LauncherWords, OptionsMayStandAnywhereAndAreTakenOut) {
    const qnl::launcher::LauncherWords parsed =
        Parse({"program", "--log-level=1", "x.k4f", "--threads=3", "dir", "--corrected",
               "--intermediate-times=7", "--fibre-probe"});
    EXPECT_EQ(parsed.words, (Words{"x.k4f", "dir"}));
    EXPECT_EQ(parsed.options.logLevel, 1);
    EXPECT_EQ(parsed.options.threads, 3);
    EXPECT_EQ(parsed.options.intermediateTimes, 7);
    EXPECT_EQ(parsed.options.mode, qnl::Mode::Corrected);
    EXPECT_TRUE(parsed.options.fibreProbe);
    EXPECT_EQ(parsed.usageError, "");
}

TEST(LauncherWords, TheLastModeNamedIsTaken) {
    EXPECT_EQ(Parse({"program", "x.k4f", "--resolved"}).options.mode, qnl::Mode::Resolved);
    EXPECT_EQ(Parse({"program", "x.k4f", "--resolved", "--corrected"}).options.mode, qnl::Mode::Corrected);
}

TEST(LauncherWords, WithoutOptionsTheRunKeepsItsDefaults) {
    const qnl::RunOptions options = Parse({"program", "x.k4f"}).options;
    EXPECT_EQ(options.logLevel, 0);
    EXPECT_EQ(options.threads, 0);
    EXPECT_FALSE(options.intermediateTimes.has_value());
    EXPECT_EQ(options.mode, qnl::Mode::Classic);
    EXPECT_FALSE(options.fibreProbe);
}

TEST(LauncherWords, BothSpellingsOfTheProbeAreTaken) {
    EXPECT_TRUE(Parse({"program", "x.k4o", "--fiber-probe"}).options.fibreProbe);
}

TEST(LauncherWords, ZeroIntermediateTimesAreANumberOfTheirOwn) {
    EXPECT_EQ(Parse({"program", "x.k4f", "--intermediate-times=0"}).options.intermediateTimes, 0);
}

TEST(LauncherWords, WrongOptionsAreUsageErrors) {
    for (const char* option :
         {"--unknown", "--", "--log-level", "--log-level=", "--log-level=x", "--log-level=1x",
          "--log-level=-1", "--threads=0", "--threads=-2", "--threads=4097", "--threads=99999999999",
          "--intermediate-times=-1", "--corrected=1", "--fibre-probe=yes", "--help=1", "--Corrected"}) {
        EXPECT_NE(Parse({"program", "x.k4f", option}).usageError.find(option), std::string::npos) << option;
    }
}

TEST(LauncherWords, AWrongValueNamesTheValuesThatAreTaken) {
    EXPECT_EQ(Parse({"program", "x.k4f", "--threads=4097"}).usageError,
              "option \"--threads=4097\": a whole number from 1 to 4096 is expected after \"--threads=\"");
    EXPECT_EQ(Parse({"program", "x.k4f", "--threads=4096"}).options.threads, 4096);
    EXPECT_EQ(Parse({"program", "x.k4f", "--log-level=-1"}).usageError,
              "option \"--log-level=-1\": a whole number of at least 0 is expected after \"--log-level=\"");
    EXPECT_EQ(Parse({"program", "x.k4f", "--corrected=1"}).usageError,
              "option \"--corrected=1\": it takes no value");
}

TEST(LauncherWords, TheFirstWrongOptionIsTheOneNamed) {
    EXPECT_EQ(Parse({"program", "x.k4f", "--one", "--two"}).usageError, "unknown option \"--one\"");
}

TEST(LauncherWords, NoWordIsAUsageError) {
    EXPECT_EQ(Parse({"program"}).usageError, "no stage result file is named");
    EXPECT_EQ(Parse({"program", "--log-level=1"}).usageError, "no stage result file is named");
}

TEST(LauncherWords, AtLogLevelTwoASingleWordIsNotEnough) {
    EXPECT_NE(Parse({"program", "x.k4f", "--log-level=2"}).usageError, "");
    EXPECT_EQ(Parse({"program", "x.k4f", "y.k4f", "--log-level=2"}).usageError, "");
    EXPECT_EQ(Parse({"program", "x.k4f", "--log-level=1"}).usageError, "");
}

TEST(LauncherWords, HelpAndVersionNeedNoWord) {
    EXPECT_TRUE(Parse({"program", "--help"}).help);
    EXPECT_EQ(Parse({"program", "--help"}).usageError, "");
    EXPECT_TRUE(Parse({"program", "--version"}).version);
    EXPECT_EQ(Parse({"program", "--version"}).usageError, "");
}

TEST(LauncherWords, AWordThatBeginsWithOneDashIsAWord) {
    EXPECT_EQ(Parse({"program", "x.k4f", "-1"}).words, (Words{"x.k4f", "-1"}));
}

}  // namespace
