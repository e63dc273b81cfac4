#include "text/ProgressBar.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using qnl::text::ProgressBar;

TEST(ProgressBar, IsRedrawnInPlaceOnATerminal) {
    std::ostringstream out;
    ProgressBar bar(out, true);
    bar.Show(0.5, "now");
    EXPECT_EQ(out.str(), "\r[###############...............]  50 %  now");
}

TEST(ProgressBar, IsNotRedrawnUnchanged) {
    std::ostringstream out;
    ProgressBar bar(out, true);
    bar.Show(0.5, "now");
    const std::string once = out.str();
    bar.Show(0.5001, "now");
    EXPECT_EQ(out.str(), once);
}

TEST(ProgressBar, LinesTakeItsPlace) {
    std::ostringstream out;
    ProgressBar bar(out, true);
    bar.Show(0.0, "x");
    const std::string shown = out.str();
    bar.Line("done");
    EXPECT_EQ(out.str(), shown + "\r" + std::string(shown.size() - 1, ' ') + "\rdone\n");
}

TEST(ProgressBar, SharesStayWithinTheBar) {
    std::ostringstream out;
    ProgressBar bar(out, true);
    bar.Show(7.0, "");
    EXPECT_NE(out.str().find("100 %"), std::string::npos);
    bar.Show(-7.0, "");
    EXPECT_NE(out.str().find("  0 %"), std::string::npos);
}

TEST(ProgressBar, ElsewhereOnlyLinesAppearAtFirst) {
    std::ostringstream out;
    ProgressBar bar(out, false);
    bar.Show(0.5, "now");
    bar.Line("done");
    EXPECT_EQ(out.str(), "done\n");
}

}  // namespace
