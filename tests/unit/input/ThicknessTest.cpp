#include "input/Thickness.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

class ThicknessTest : public InputTest {
protected:
    ThicknessTest() {
        job_.m_szMeshFile.Set("D:\\P.x\\Mesh\\part.hdf");
        file_ = &BinaryFile("D:\\P.x\\Mesh\\part.thk");
        file_->maxNode = 17;
        file_->items[1].assign(17, 0.0F);
        file_->items[2].assign(17, 0.0F);
    }
    void SetItem(int item, int label, float value) {
        file_->items[item][static_cast<std::size_t>(label) - 1] = value;
    }
    std::vector<float> Thicknesses() const {
        return {job_.m_pNodeThickness.get() + 1, job_.m_pNodeThickness.get() + 6};
    }

    fake::ResultFile* file_ = nullptr;
};

TEST_F(ThicknessTest, Item1WinsWhereItIsPositive) {
    SetItem(1, 1, 0.0F);
    SetItem(2, 1, 2.5F);
    SetItem(1, 2, 3.0F);
    SetItem(2, 2, 2.5F);
    SetItem(1, 17, -1.0F);
    SetItem(2, 17, -2.0F);
    EXPECT_EQ(ReadThickness(job_), 1);
    EXPECT_EQ(Thicknesses(), (std::vector<float>{2.5F, 3.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(ThicknessTest, ThinWallsAndTheLastLabelCount) {
    SetItem(1, 1, 0.5F);
    SetItem(1, 17, 0.25F);
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses(), (std::vector<float>{0.5F, 0.0F, 0.0F, 0.0F, 0.25F}));
}

TEST_F(ThicknessTest, NodesOutsideThePartAreNotWritten) {
    SetItem(1, 3, 3.0F);
    SetItem(2, 12, 3.0F);
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses(), std::vector<float>(5, 0.0F));
}

TEST_F(ThicknessTest, CorrectedRunsStoreEveryKnownNode) {
    job_.m_options.mode = qnl::Mode::Corrected;
    SetItem(1, 3, 3.0F);
    SetItem(2, 12, 4.0F);
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses(), (std::vector<float>{0.0F, 0.0F, 3.0F, 4.0F, 0.0F}));
}

TEST_F(ThicknessTest, NotANumberIsNotTaken) {
    SetItem(1, 1, std::numeric_limits<float>::quiet_NaN());
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses()[0], 0.0F);
}

TEST_F(ThicknessTest, WithoutItem1TheValuesOfItem2Stay) {
    file_->items.erase(1);
    SetItem(2, 1, 2.5F);
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses()[0], 2.5F);
}

TEST_F(ThicknessTest, TheArrayStartsAtZeroEveryTime) {
    SetItem(1, 1, 3.0F);
    ReadThickness(job_);
    SetItem(1, 1, 0.0F);
    ReadThickness(job_);
    EXPECT_EQ(Thicknesses()[0], 0.0F);
}

TEST_F(ThicknessTest, GeneratesThenReads) {
    ReadThickness(job_);
    EXPECT_EQ(fake::ThePlatform().calls,
              (std::vector<std::string>{"CThickGen D:\\P.x\\Mesh\\part.hdf null", "construct",
                                        "BeginReading D:\\P.x\\Mesh\\part.thk null", "GetMaxCavityNode",
                                        "GetResultItem 2", "GetResultItem 1", "EndReading", "destroy"}));
}

TEST_F(ThicknessTest, AFailedGenerationIsPrintedAtAnyLogLevel) {
    fake::ThePlatform().thicknessStatus = 2;
    SetItem(1, 1, 3.0F);
    const CapturedOutput output;
    EXPECT_EQ(ReadThickness(job_), 1);
    EXPECT_EQ(output.Text(), "Fail to generate thickness value~!!!\nReason = 2\n");
    EXPECT_EQ(Thicknesses()[0], 3.0F);
}

TEST_F(ThicknessTest, AFileThatCannotBeOpenedLeavesTheArray) {
    SetItem(1, 1, 3.0F);
    ReadThickness(job_);
    job_.m_nLogLevel = 1;
    for (const int status : {-1, -2, -4}) {
        file_->status = status;
        const CapturedOutput output;
        EXPECT_EQ(ReadThickness(job_), -1);
        EXPECT_EQ(output.Text(),
                  "Can't open thickness form .thk \nFileError = " + std::to_string(status) + " \n");
        EXPECT_EQ(Thicknesses()[0], 3.0F);
    }
}

TEST_F(ThicknessTest, LogsItsProgress) {
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    ReadThickness(job_);
    EXPECT_EQ(output.Text(), "Read thickness by Binary \nnMaxNodes = 17 \nRead Thickness From RD2 end\n");
}

TEST_F(ThicknessTest, EntriesBeyondTheLabelsAreSkippedAndReported) {
    file_->maxNode = 18;
    file_->items[1].assign(18, 1.0F);
    EXPECT_EQ(ReadThickness(job_), 1);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(ThicknessTest, AMeshPathWithoutExtensionRaises) {
    job_.m_szMeshFile.Set("part");
    EXPECT_THROW(ReadThickness(job_), std::out_of_range);
}

}  // namespace
