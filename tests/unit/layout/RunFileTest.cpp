#include "layout/RunFile.h"

#include <gtest/gtest.h>

namespace {

std::string Value(std::string line) {
    qnl::layout::ExtractLineValue(line);
    return line;
}

qnl::layout::RunFileNames Names(const std::string& text) {
    qnl::TokenReader file(text);
    return qnl::layout::ReadRunFileNames(file);
}

}  // namespace

TEST(LineValue, IsTheTextAfterTheEqualsSign) {
    EXPECT_EQ(Value("Mesh1=a.hdf\n"), "a.hdf");
    EXPECT_EQ(Value("Mesh1 = a.hdf\n"), "a.hdf");
    EXPECT_EQ(Value("Mesh1 =  a.hdf\n"), " a.hdf");
    EXPECT_EQ(Value("a.hdf\nrest"), "a.hdf");
    EXPECT_EQ(Value("k=a=b\n"), "a=b");
    EXPECT_EQ(Value("k="), "");
    EXPECT_EQ(Value("Mesh1 = a.hdf\r\n"), "a.hdf");
    EXPECT_EQ(Value("Mesh1 = a.hdf\r"), "a.hdf");
    EXPECT_EQ(Value(""), "");
}

TEST(RunFile, WhatIsWrittenIsReadAgain) {
    const qnl::layout::RunFileNames names = Names(qnl::layout::RunFileText("part.hdf", "pp.toml"));
    EXPECT_EQ(names.mesh, "part.hdf");
    EXPECT_EQ(names.material, "pp.toml");
}

TEST(RunFile, GivesNoNameForASectionThatIsNotThere) {
    EXPECT_FALSE(Names("").mesh.has_value());
    EXPECT_FALSE(Names("[MESH]\nMeshCount = 1\nMesh1 = a.hdf\n").material.has_value());
    EXPECT_EQ(Names("[MESH]\nMeshCount = 1\nMesh1 =\n").mesh, "");
}

TEST(RunFile, ALineCountsUpTo254BytesAndItsRestIsTheNextLine) {
    // The rest of the long line is "[MESH]": the header of a section only because it begins a line.
    const std::string filler(254, 'x');
    EXPECT_EQ(Names(filler + "[MESH]\nMeshCount = 1\nM = a.hdf\n").mesh, "a.hdf");
    EXPECT_FALSE(Names(filler.substr(3) + "[MESH]\nMeshCount = 1\nM = a.hdf\n").mesh.has_value())
        << "the mark is cut in two";
    // The first entry ends with its line's 254th byte; the rest stands for the second one.
    const std::string value(254 - 2, 'm');
    EXPECT_EQ(
        Names("[MESH]\nMeshCount = 2\nM=" + value + ".hdf\n[MATERIAL]\nMaterialCount = 1\nM=a.toml\n").mesh,
        value);
}
