#include "input/FiberResults.h"

#include <gtest/gtest.h>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

class FiberTest : public InputTest {
protected:
    FiberTest() {
        job_.m_bKernelFlag = 1;
        file_ = &BinaryFile("p.k4o");
        file_->maxNode = 17;
        file_->maxElem = 3;
        file_->itemType = 2;
        for (const int item : {4, 5, 6, 9, 10, 11}) {
            file_->itemIds.push_back(item);
            const auto value = static_cast<float>(item);
            file_->items[item] = {value + 0.25F, value + 0.5F, value + 0.75F};
        }
        MakeStorage();
    }
    std::vector<double> Fiber(int slot) const {
        const double* values = job_.m_pCellFiber[slot].get();
        return {values + 1, values + 4};
    }

    fake::ResultFile* file_ = nullptr;
};

TEST_F(FiberTest, StoresTheSixComponentsByCell) {
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    const double items[] = {4.0, 5.0, 6.0, 9.0, 11.0, 10.0};
    for (int slot = 0; slot < 6; ++slot) {
        const double item = items[slot];
        EXPECT_EQ(Fiber(slot), (std::vector<double>{item + 0.25, item + 0.5, item + 0.75})) << slot;
    }
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(FiberTest, CallsTheLibraryInOrder) {
    ReadFiberResults(job_, "p.k4o");
    EXPECT_EQ(
        fake::ThePlatform().calls,
        (std::vector<std::string>{"construct", "BeginReading p.k4o null", "GetResultVersion", "GetHeadInfo",
                                  "GetResultItemInfo", "GetMaxCavityNode", "GetMaxCavityElem",
                                  "GetResultItem 4", "GetResultItem 5", "GetResultItem 6", "GetResultItem 9",
                                  "GetResultItem 10", "GetResultItem 11", "EndReading", "destroy"}));
}

TEST_F(FiberTest, ElementsBeyondTheCellsAreSkippedAndReported) {
    file_->maxElem = 4;
    for (auto& item : file_->items) {
        item.second.push_back(99.0F);
    }
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(Fiber(0), (std::vector<double>{4.25, 4.5, 4.75}));
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].object, "cell entries");
}

TEST_F(FiberTest, FewerElementsThanCellsLeaveTheOthersAlone) {
    file_->maxElem = 1;
    for (auto& item : file_->items) {
        item.second.resize(1);
    }
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(Fiber(0), (std::vector<double>{4.25, 0.0, 0.0}));
}

TEST_F(FiberTest, AnItemByNodeHasRoom) {
    // An access beyond the room made for it is for the address sanitizer to find.
    file_->items[6].assign(17, 99.0F);
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(Fiber(2), (std::vector<double>{99.0, 99.0, 99.0}));
}

TEST_F(FiberTest, AMissingItemLeavesItsSlotAtZero) {
    ReadFiberResults(job_, "p.k4o");
    file_->items.erase(10);
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(Fiber(5), (std::vector<double>{0.0, 0.0, 0.0}));
    EXPECT_EQ(Fiber(4), (std::vector<double>{11.25, 11.5, 11.75}));
}

TEST_F(FiberTest, ItemsByNodeUnderTheSameIdsAreNoTensor) {
    file_->itemType = 1;
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    const std::vector<qnl::Fault> own = qnl::TakeFaults();
    ASSERT_EQ(own.size(), 1U);
    EXPECT_EQ(own[0].object, "items 4, 5, 6, 9, 10, 11");
    EXPECT_EQ(own[0].found, "values by node");
    EXPECT_EQ(own[0].remedy, "export the fibre result again with its items by cell");
    BinaryFile("p.k4f").itemIds = {6, 14};
    EXPECT_EQ(ReadFiberResults(job_, "p.k4f"), 1);
    const std::vector<qnl::Fault> flow = qnl::TakeFaults();
    ASSERT_EQ(flow.size(), 1U);
    EXPECT_EQ(flow[0].file, "p.k4f");
    EXPECT_EQ(flow[0].remedy, "name the fibre result of the same run, p.k4o");
}

TEST_F(FiberTest, OtherItemsByElementAreNoTensor) {
    file_->itemIds = {1, 2};
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(FiberTest, AnArrayThatDoesNotExistStaysSo) {
    job_.m_pCellFiber[3].reset();
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(job_.m_pCellFiber[3], nullptr);
    EXPECT_EQ(Fiber(4)[0], 11.25);
}

TEST_F(FiberTest, NegativeCountsStoreNothing) {
    file_->maxElem = -1;
    file_->items.clear();
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), 1);
    EXPECT_EQ(Fiber(0), (std::vector<double>{0.0, 0.0, 0.0}));
}

TEST_F(FiberTest, LogsItsProgress) {
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    ReadFiberResults(job_, "p.k4o");
    EXPECT_EQ(
        output.Text(),
        "Read FiberResults by Binary \nK4Overson =7 \nnItemCount = 6 \nnMaxNodes = 17 \nnMaxElems = 3 \n");
}

TEST_F(FiberTest, AFileThatCannotBeOpenedFails) {
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadFiberResults(job_, "none.k4o"), -1);
    EXPECT_EQ(output.Text(), "Can't open FlowResults \nFileError = -1 \n");
}

TEST_F(FiberTest, ATextFileFails) {
    job_.m_nLogLevel = 1;
    file_->status = -4;
    const CapturedOutput output;
    EXPECT_EQ(ReadFiberResults(job_, "p.k4o"), -1);
    EXPECT_EQ(output.Text(), " ASCII \n");
}

}  // namespace
