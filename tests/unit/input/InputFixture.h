#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "context/FrozenLayerJob.h"
#include "platform/Faults.h"
#include "unit/input/FakePlatform.h"

/// A job over five nodes with the labels 1, 2, 3, 12 and 17. Nodes 1, 2 and 5 belong to the part, node 3
/// is a runner node, node 4 a special one. Three cells and faces are only counted.
class InputTest : public ::testing::Test {
protected:
    InputTest();
    ~InputTest() override;

    /// Flags and storage are to be settled before: makes the arrays and fills the node input with `value`.
    void MakeStorage(double value = -7.0);

    /// Writes a text file and gives its path. The result library is told that it is not binary.
    std::string TextFile(const std::string& name, const std::string& content);
    /// Path inside the folder of this test, which is made.
    std::string PathTo(const std::string& name);
    /// A binary file in memory.
    fake::ResultFile& BinaryFile(const std::string& path);

    double Data(int slot, int node) const { return job_.m_pNodeData[slot].get()[node]; }
    std::vector<double> Slot(int slot) const;
    float Vector(int k, int node) const { return job_.m_pNodeVector[k].get()[node]; }

    FrozenLayerJob job_;
    std::vector<NodeRecord> nodes_;
    std::vector<int> isPart_;
    std::vector<int> runnerClass_;
    std::vector<int> toLocal_;
};
