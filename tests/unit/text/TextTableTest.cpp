#include "text/TextTable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using qnl::text::CharacterCount;
using qnl::text::TextTable;

TEST(TextTable, AlignsByCharactersAndLeavesNoBlankAtLineEnds) {
    TextTable table({{"Name"}, {"Unit"}, {"Value", TextTable::Align::Right}});
    table.AddRow({"Temperature", "°C", "1"});
    table.AddRow({"x", "-", "12345.6"});
    std::ostringstream out;
    table.Print(out);
    EXPECT_EQ(out.str(),
              "  Name         Unit    Value\n"
              "  Temperature  °C          1\n"
              "  x            -     12345.6\n");
}

TEST(TextTable, CharactersAreNotBytes) {
    EXPECT_EQ(CharacterCount("°C"), 2U);
    EXPECT_EQ(CharacterCount(""), 0U);
}

}  // namespace
