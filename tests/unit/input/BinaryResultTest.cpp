#include "input/BinaryResult.h"

#include <gtest/gtest.h>

#include "unit/input/InputFixture.h"

namespace {

class OpenFile : public InputTest {
protected:
    std::vector<qnl::input::ListedItem> Items(int count) {
        fake::ResultFile& file = BinaryFile("p.k4f");
        for (int item = 1; item <= count; ++item) {
            file.itemIds.push_back(item);
        }
        file.itemCount = count;
        reader_.BeginReading("p.k4f", nullptr);
        return qnl::input::ListItems(job_, reader_);
    }

    CQNL3DResultReader_Manipulator reader_;
};

TEST(ItemEntries, AreOneMoreThanTheCount) {
    EXPECT_EQ(qnl::input::ItemEntries(7), 8U);
    EXPECT_EQ(qnl::input::ItemEntries(1), 2U);
    EXPECT_EQ(qnl::input::ItemEntries(0), 1U);
    EXPECT_EQ(qnl::input::ItemEntries(-5), 1U);
}

TEST_F(OpenFile, ListsAsManyItemsAsTheHeadTells) {
    EXPECT_TRUE(Items(-3).empty());
    EXPECT_TRUE(Items(0).empty());
    EXPECT_EQ(Items(1).size(), 1U);
}

TEST_F(OpenFile, AnyStatusFromZeroOnIsOpen) {
    BinaryFile("p.k4f").status = 1;
    EXPECT_EQ(qnl::input::OpenResult(job_, reader_, "p.k4f", {"", nullptr, ""}),
              qnl::input::OpenedAs::Binary);
}

}  // namespace
