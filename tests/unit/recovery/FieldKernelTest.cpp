#include "platform/FieldKernel.h"

#include <gtest/gtest.h>

#include "kernel/mesh/MeshFile.h"
#include "platform/CQNLOptKer.h"
#include "support/MeshBuilder.h"
#include "support/ScratchFolder.h"

namespace {

TEST(FieldKernel, IsThereOnceAMeshWasRead) {
    CQNLOptKer kernel;
    EXPECT_EQ(qnl::MakeFieldKernel(kernel), nullptr);

    const ScratchFolder folder;
    std::string path = folder.File("cell.hdf");
    qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(qnl::kernel::CellType::Hexa), path);
    ASSERT_EQ(kernel.ReadMeshData(path.data(), 0), 1);
    kernel.InitialzeSearch(1);
    const std::unique_ptr<qnl::FieldKernel> fields = qnl::MakeFieldKernel(kernel);
    ASSERT_NE(fields, nullptr);

    std::vector<double> values(static_cast<std::size_t>(kernel.m_nNodes) + 1, 0.0);
    for (int node = 1; node <= kernel.m_nNodes; ++node) {
        values[static_cast<std::size_t>(node)] = 2.0 * kernel.p_Node[node].x - kernel.p_Node[node].z;
    }
    std::vector<double> gradients(3 * values.size());
    const double* field = values.data();
    EXPECT_EQ(fields->RecoverGradients(&field, 1, gradients.data()).nodes, 8);
    EXPECT_NEAR(gradients[3], 2.0, 1e-9);
    EXPECT_NEAR(gradients[4], 0.0, 1e-9);
    EXPECT_NEAR(gradients[5], -1.0, 1e-9);

    int count = 0;
    const int* ids = kernel.FindPassElemByAnyRay(count, 0.3, 0.4, 0.0, 0.0, 0.0, 1.0, 0);
    fields->PrepareSlots(1);
    const qnl::RayPieces pieces = fields->FindPieces({0.3, 0.4, 0.0}, {0.0, 0.0, 1.0}, ids, count, 0);
    ASSERT_GT(pieces.count, 0);
    EXPECT_EQ(pieces.first[0].cell, 1);
    EXPECT_NEAR(pieces.first[pieces.count - 1].to, 1.0, 1e-6);
}

}  // namespace
