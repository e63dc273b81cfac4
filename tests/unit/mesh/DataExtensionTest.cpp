#include "mesh/DataExtension.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "mesh/CornerMean.h"
#include "mesh/FieldStorage.h"
#include "support/CapturedOutput.h"

namespace {

/// Entities over shared node lists; record 0 is all zero.
class Entities {
public:
    explicit Entities(const std::vector<std::vector<int>>& corners) : lists_(corners), records_(1) {
        for (std::vector<int>& list : lists_) {
            EntityRecord record = {};
            record.nNode = static_cast<int>(list.size());
            list.insert(list.begin(), -1);
            record.nodes = list.data();
            records_.push_back(record);
        }
    }
    const EntityRecord* Records() const { return records_.data(); }
    EntityRecord& operator[](std::size_t i) { return records_[i]; }
    int Count() const { return static_cast<int>(records_.size()) - 1; }

private:
    std::vector<std::vector<int>> lists_;
    std::vector<EntityRecord> records_;
};

template <typename Value>
std::vector<qnl::mesh::NodeRow<Value, 1>> Rows(const std::vector<Value>& values) {
    return qnl::mesh::JoinFields<Value, 1>(static_cast<int>(values.size()) - 1, {values.data()});
}

double Mean(const std::vector<int>& corners, const std::vector<double>& values) {
    const Entities entities({corners});
    return qnl::mesh::CornerMean(entities.Records()[1], Rows(values).data())[0];
}

TEST(CornerMean, OfTrianglesAndQuadrilaterals) {
    EXPECT_EQ(Mean({1, 2, 3}, {0.0, 1.0, 2.0, 6.0}), 3.0);
    EXPECT_EQ(Mean({4, 1, 2, 3}, {0.0, 1.0, 1.0, 1.0, 5.0}), 2.0);
}

TEST(CornerMean, SumsInCornerOrder) {
    const std::vector<double> values{0.0, 1e16, 1.0, -1e16, 1.0, 0.5};
    EXPECT_EQ(Mean({1, 2, 3, 4, 5}, values), ((((1e16 + 1.0) - 1e16) + 1.0) + 0.5) / 5.0);
    EXPECT_EQ(Mean({1, 3, 2, 4, 5}, values), 2.5 / 5.0);
}

TEST(CornerMean, OfSinglePrecisionValuesIsFormedInSinglePrecision) {
    const Entities entities({{1, 1, 1, 1}, {2, 3, 3}});
    const auto rows = Rows(std::vector<float>{0.0F, 0.1F, 16777216.0F, 1.0F});
    EXPECT_EQ(qnl::mesh::CornerMean(entities.Records()[1], rows.data())[0],
              (0.1F + 0.1F + 0.1F + 0.1F) / 4.0F);
    // In double precision the sum would be 16777218.
    EXPECT_EQ(qnl::mesh::CornerMean(entities.Records()[2], rows.data())[0], 16777216.0F / 3.0F);
}

TEST(CornerMean, WithoutCornersIsNotANumber) {
    EXPECT_TRUE(std::isnan(Mean({}, {0.0})));
}

TEST(MeansOverEntities, KeepsFieldsApartAndPassesOverThoseThatAreMissing) {
    const Entities entities({{1, 2}, {2, 2, 3}});
    const std::vector<double> ones{-1.0, 1.0, 2.0, 5.0};
    const std::vector<double> tens{-1.0, 10.0, 30.0, 90.0};
    std::vector<double> meansOfOnes(3, -7.0);
    std::vector<double> meansOfTens(3, -7.0);
    qnl::mesh::MeansOverEntities<double, 4>(
        entities.Records(), 2,
        qnl::mesh::JoinFields<double, 4>(3, {ones.data(), nullptr, tens.data(), ones.data()}),
        {meansOfOnes.data(), nullptr, meansOfTens.data(), nullptr});
    EXPECT_EQ(meansOfOnes, (std::vector<double>{-7.0, 1.5, 3.0}));
    EXPECT_EQ(meansOfTens, (std::vector<double>{-7.0, 20.0, 50.0}));
}

TEST(MeanBoxDiagonal, OfTwoFaces) {
    Entities faces({{}, {}});
    faces[1].boxMax[0] = 3.0;
    faces[1].boxMax[1] = 4.0;
    faces[2].boxMin[0] = -1.0;
    faces[2].boxMin[1] = -2.0;
    faces[2].boxMin[2] = -2.0;
    EXPECT_EQ(qnl::mesh::MeanBoxDiagonal(faces.Records(), 2), 4.0);
}

TEST(MeanBoxDiagonal, OfFacesWithoutExtentIsNotZero) {
    Entities faces({{}, {}, {}, {}});
    EXPECT_DOUBLE_EQ(qnl::mesh::MeanBoxDiagonal(faces.Records(), 4), 1e-15);
}

TEST(MeanBoxDiagonal, WithoutFacesIsNotANumber) {
    Entities faces({});
    EXPECT_TRUE(std::isnan(qnl::mesh::MeanBoxDiagonal(faces.Records(), 0)));
}

class DataExtensionTest : public ::testing::Test {
protected:
    DataExtensionTest() : faces_({{1, 2, 3}, {2, 3, 4}}), cells_({{1, 2, 3, 4}}) {
        job_.p_Surfce = faces_.Records();
        job_.p_Cell = cells_.Records();
        job_.m_nNodes = 4;
        job_.m_nSurfaces = 2;
        job_.m_nCells = 1;
        job_.m_bHasFlow = 1;
        qnl::mesh::NewDataStorage(job_);
        for (int slot = 0; slot < qnl::kFieldSlots; ++slot) {
            for (int n = 1; n <= 4; ++n) {
                job_.m_pNodeData[slot].get()[n] = 3.0 * n + 100.0 * slot;
            }
        }
        for (int k = 0; k < 3; ++k) {
            for (int n = 1; n <= 4; ++n) {
                job_.m_pNodeVector[k].get()[n] = 0.1F;
            }
        }
    }

    Entities faces_;
    Entities cells_;
    FrozenLayerJob job_;
};

TEST_F(DataExtensionTest, FacesTakeEverySlot) {
    EXPECT_EQ(qnl::mesh::ExtendNodeToSurface(job_), 1);
    for (int slot = 0; slot < qnl::kFieldSlots; ++slot) {
        EXPECT_EQ(job_.m_pSurfData[slot].get()[1], 6.0 + 100.0 * slot);
        EXPECT_EQ(job_.m_pSurfData[slot].get()[2], 9.0 + 100.0 * slot);
        EXPECT_EQ(job_.m_pSurfData[slot].get()[0], 0.0);
        EXPECT_EQ(job_.m_pCellData[slot].get()[1], 0.0);
    }
}

TEST_F(DataExtensionTest, CellsTakeEverySlotAndTheVelocity) {
    EXPECT_EQ(qnl::mesh::ExtendNodeToInnerCell(job_), 1);
    for (int slot = 0; slot < qnl::kFieldSlots; ++slot) {
        EXPECT_EQ(job_.m_pCellData[slot].get()[1], 7.5 + 100.0 * slot);
        EXPECT_EQ(job_.m_pSurfData[slot].get()[1], 0.0);
    }
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(job_.m_pCellVector[k].get()[1], (0.1F + 0.1F + 0.1F + 0.1F) / 4.0F);
    }
}

TEST_F(DataExtensionTest, ASlotWithoutSourceLeavesItsTarget) {
    job_.m_pNodeData[2].reset();
    job_.m_pNodeVector[1].reset();
    job_.m_pSurfData[2].get()[1] = -1.0;
    job_.m_pCellData[2].get()[1] = -2.0;
    job_.m_pCellVector[1].get()[1] = -3.0F;
    EXPECT_EQ(qnl::mesh::ExtendNodeToSurface(job_), 1);
    EXPECT_EQ(qnl::mesh::ExtendNodeToInnerCell(job_), 1);
    EXPECT_EQ(job_.m_pSurfData[2].get()[1], -1.0);
    EXPECT_EQ(job_.m_pCellData[2].get()[1], -2.0);
    EXPECT_EQ(job_.m_pCellVector[1].get()[1], -3.0F);
    EXPECT_EQ(job_.m_pSurfData[3].get()[1], 306.0);
}

TEST_F(DataExtensionTest, WithoutAnyFieldTheElementsAreNotVisited) {
    for (auto& slot : job_.m_pNodeData) {
        slot.reset();
    }
    for (auto& component : job_.m_pNodeVector) {
        component.reset();
    }
    job_.p_Surfce = nullptr;
    job_.p_Cell = nullptr;
    EXPECT_EQ(qnl::mesh::ExtendNodeToSurface(job_), 1);
    EXPECT_EQ(qnl::mesh::ExtendNodeToInnerCell(job_), 1);
}

TEST_F(DataExtensionTest, MeshSizeIsStored) {
    faces_[1].boxMax[0] = 3.0;
    faces_[2].boxMax[1] = 1.0;
    EXPECT_EQ(qnl::mesh::AverageSurfaceMeshSize(job_), 1);
    EXPECT_EQ(job_.m_dSurAvgMeshSize, 2.0);
}

TEST_F(DataExtensionTest, EveryStepIsLogged) {
    faces_[1].boxMax[0] = faces_[2].boxMax[0] = 1.0;
    const CapturedOutput output;
    qnl::mesh::ExtendNodeToSurface(job_);
    qnl::mesh::ExtendNodeToInnerCell(job_);
    qnl::mesh::AverageSurfaceMeshSize(job_);
    EXPECT_EQ(output.Text(), "");
    job_.m_nLogLevel = 1;
    qnl::mesh::ExtendNodeToSurface(job_);
    qnl::mesh::ExtendNodeToInnerCell(job_);
    qnl::mesh::AverageSurfaceMeshSize(job_);
    EXPECT_EQ(output.Text(),
              "Data extend from Node to surface end\nData from node to InnerCell end\nSurAvgMeshSize = "
              "1.000000 \n");
}

TEST(DataExtensionThreads, ValuesDoNotDependOnTheThreadCount) {
    constexpr int nodes = 500;
    constexpr int count = 4000;
    std::mt19937 random(5);
    std::vector<std::vector<int>> lists;
    for (int e = 0; e < count; ++e) {
        std::vector<int> list(3 + random() % 6);
        for (int& node : list) {
            node = 1 + static_cast<int>(random() % nodes);
        }
        lists.push_back(list);
    }
    const Entities entities(lists);
    std::vector<double> values(nodes + 1);
    for (double& value : values) {
        value = std::uniform_real_distribution<double>(-1e3, 1e3)(random);
    }
    std::vector<double> first;
    for (const int threads : {1, 2, 8}) {
        omp_set_num_threads(threads);
        std::vector<double> means(count + 1);
        qnl::mesh::MeansOverEntities<double, 1>(entities.Records(), count, Rows(values), {means.data()});
        for (int e = 1; threads == 1 && e <= count; ++e) {
            const std::vector<int>& list = lists[static_cast<std::size_t>(e) - 1];
            double sum = values[static_cast<std::size_t>(list[0])];
            for (std::size_t c = 1; c < list.size(); ++c) {
                sum += values[static_cast<std::size_t>(list[c])];
            }
            ASSERT_EQ(means[static_cast<std::size_t>(e)], sum / static_cast<double>(list.size()));
        }
        first = first.empty() ? means : first;
        EXPECT_EQ(std::memcmp(first.data(), means.data(), means.size() * sizeof(double)), 0) << threads;
    }
}

}  // namespace
