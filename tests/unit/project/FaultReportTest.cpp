#include "project/FaultReport.h"

#include <gtest/gtest.h>

#include <sstream>

#include "project/ProjectPaths.h"

namespace {

using qnl::project::FaultSentence;
using qnl::project::PrintFaults;

TEST(FaultSentence, JoinsWhatIsKnown) {
    EXPECT_EQ(FaultSentence({"a\\b.k4f", "item 6", "10 values", "9 values", "write it again"}),
              qnl::project::NativePath("a\\b.k4f") +
                  ": item 6: 10 values expected, 9 values found; write it again.");
    EXPECT_EQ(FaultSentence({"", "item 6", "", "a gap", ""}), "item 6: a gap.");
    EXPECT_EQ(FaultSentence({"", "", "a binary result file", "a file of another kind", ""}),
              "a binary result file expected, a file of another kind found.");
    EXPECT_EQ(FaultSentence({"f", "", "a text", "", ""}), "f: a text expected.");
}

TEST(FaultSentence, WhatWentWrongSpeaksForItself) {
    EXPECT_EQ(FaultSentence({"f", "", "a result file", "it cannot be opened", "check its name"}),
              "f: it cannot be opened; check its name.");
    EXPECT_EQ(FaultSentence({"f", "line 3", "a material file", "kind is missing", "correct the file"}),
              "f: line 3: kind is missing; correct the file.");
}

TEST(FaultSentence, AFileIsNamedOnce) {
    EXPECT_EQ(FaultSentence(
                  {"m.hdf", "mesh", "a mesh that can be read", "Mesh file m.hdf: no cells", "correct it"}),
              "Mesh file m.hdf: no cells; correct it.");
}

TEST(PrintFaults, TellsEqualOnesOnce) {
    std::ostringstream out;
    PrintFaults({}, out);
    EXPECT_EQ(out.str(), "");
    PrintFaults({{"f", "", "x", "", ""}, {"g", "", "x", "", ""}, {"f", "", "x", "", ""}}, out);
    EXPECT_EQ(out.str(), "2 faults:\n  f: x expected.\n  g: x expected.\n");
}

}  // namespace
