#include "layout/ProjectFolders.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace layout = qnl::layout;

TEST(ProjectFolders, OfOneProject) {
    EXPECT_EQ(layout::MeshPath("D:\\P", "a.hdf"), "D:\\P\\Mesh\\a.hdf");
    EXPECT_EQ(layout::MaterialPath("D:\\P", "pp.toml"), "D:\\P\\Material\\pp.toml");
    EXPECT_EQ(layout::RunFolder("D:\\P", "2"), "D:\\P\\Analysis\\Run2");
    EXPECT_EQ(layout::RunPath("D:\\P", "part", "2", ".fzr"), "D:\\P\\Analysis\\Run2\\part2.fzr");
}

TEST(ProjectFolders, SearchFilesStandBesideTheMesh) {
    EXPECT_EQ(layout::SearchPath("D:\\P\\Mesh\\a.hdf"), "D:\\P\\Mesh\\a.sur");
    EXPECT_EQ(layout::SmoothedSearchPath("D:\\P\\Mesh\\a.hdf"), "D:\\P\\Mesh\\a_s.sur");
    EXPECT_THROW(layout::SearchPath("mesh"), std::out_of_range);
}
