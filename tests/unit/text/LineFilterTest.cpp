#include "text/LineFilter.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using qnl::text::LineFilter;

TEST(LineFilter, RewritesLineByLine) {
    std::ostringstream out;
    {
        LineFilter filter(out,
                          [](const std::string& line) { return line == "drop" ? "" : "<" + line + ">\n"; });
        std::ostream in(&filter);
        in << "one\ndr";
        EXPECT_EQ(out.str(), "<one>\n");
        in << "op\n\nrest";
        EXPECT_EQ(out.str(), "<one>\n<>\n");
    }
    EXPECT_EQ(out.str(), "<one>\n<>\nrest");
}

}  // namespace
