#include "upload/RunScales.h"

#include <gtest/gtest.h>

#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"
#include "upload/RunKind.h"

namespace tolvane {
namespace {

TScaleRec Scale(int number, bool checked) {
    TScaleRec rec = NetworkScale(number, "Scale " + std::to_string(number));
    rec.Checked = checked;
    return rec;
}

TEST(RunScales, TheListHoldsTheSlotsWithAddressAndPortInOrder) {
    TScaleTable table;
    table[2] = Scale(7, true);
    table[5] = Scale(8, false);
    table[5].ScaleName = "";  // a name is not needed
    table[6] = Scale(9, true);
    table[6].TCPPort = 0;
    table[7] = Scale(10, true);
    table[7].TCPAddress = "";
    table[20] = Scale(11, true);
    const std::vector<TScaleObj> items = RunItems(table);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].Rec.ScaleNumb, 7);
    EXPECT_TRUE(items[0].Rec.Checked);
    EXPECT_EQ(items[1].Rec.ScaleNumb, 8);
    EXPECT_FALSE(items[1].Rec.Checked);
    EXPECT_EQ(items[2].Rec.ScaleNumb, 11);
}

TEST(RunScales, ClosingAfterUncheckingAScaleStoresCheckedFalseForIt) {
    TScaleTable table;
    table[1] = Scale(1, true);
    table[2] = Scale(2, true);
    std::vector<TScaleObj> items = RunItems(table);
    items[1].Rec.Checked = false;
    StoreRunItems(items, table);
    EXPECT_TRUE(table[1].Checked);
    EXPECT_FALSE(table[2].Checked);
}

TEST(RunScales, StoringMovesTheItemsToTheFirstSlotsAndEmptiesTheRest) {
    TScaleTable table;
    table[3] = Scale(3, true);
    table[9] = Scale(9, false);
    StoreRunItems(RunItems(table), table);
    EXPECT_EQ(table[1].ScaleNumb, 3);
    EXPECT_EQ(table[1].TCPAddress.View(), "10.0.0.3");
    EXPECT_EQ(table[2].ScaleNumb, 9);
    for (int slot = 3; slot <= kScaleSlots; ++slot) {
        EXPECT_TRUE(table[slot].ScaleName.Empty()) << slot;
        EXPECT_TRUE(table[slot].TCPAddress.Empty()) << slot;
        EXPECT_EQ(table[slot].TCPPort, 0) << slot;
    }
}

TEST(RunScales, WithoutAnyItemTheTableStaysAsItIs) {
    TScaleTable table;
    table[4] = Scale(4, true);
    table[4].TCPPort = 0;
    StoreRunItems(RunItems(table), table);
    EXPECT_EQ(table[4].TCPAddress.View(), "10.0.0.4");
}

TEST(RunScales, MoreItemsThanSlotsFillTheTableOnly) {
    TScaleTable table;
    std::vector<TScaleObj> items(kScaleSlots + 1);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].Rec.ScaleNumb = static_cast<std::int32_t>(i + 1);
    StoreRunItems(items, table);
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        EXPECT_EQ(table[slot].ScaleNumb, slot);
}

TEST(RunKinds, EachNumberHasItsCaptionFlagsAndButton) {
    ASSERT_NE(RunKind(TRunNumber{1}), nullptr);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{1})->caption), "Запис на избраните артикули във везните");
    EXPECT_TRUE(RunKind(TRunNumber{1})->markedOnly);
    EXPECT_TRUE(RunKind(TRunNumber{1})->write);
    EXPECT_TRUE(RunKind(TRunNumber{1})->saveVisible);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{1})->saveCaption), "Запис");
    ASSERT_NE(RunKind(TRunNumber{2}), nullptr);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{2})->caption), "Запис на всички артикули във везните");
    EXPECT_FALSE(RunKind(TRunNumber{2})->markedOnly);
    EXPECT_TRUE(RunKind(TRunNumber{2})->write);
    EXPECT_TRUE(RunKind(TRunNumber{2})->saveVisible);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{2})->saveCaption), "Запис");
    ASSERT_NE(RunKind(TRunNumber{3}), nullptr);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{3})->caption),
              "Изтриване на избраните артикули от везните");
    EXPECT_TRUE(RunKind(TRunNumber{3})->markedOnly);
    EXPECT_FALSE(RunKind(TRunNumber{3})->write);
    EXPECT_TRUE(RunKind(TRunNumber{3})->saveVisible);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{3})->saveCaption), "Изтрий");
    ASSERT_NE(RunKind(TRunNumber{4}), nullptr);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{4})->caption), "Изтриване на всички артикули от везните");
    EXPECT_FALSE(RunKind(TRunNumber{4})->markedOnly);
    EXPECT_FALSE(RunKind(TRunNumber{4})->write);
    EXPECT_FALSE(RunKind(TRunNumber{4})->saveVisible);
    EXPECT_EQ(ToUtf8(RunKind(TRunNumber{4})->saveCaption), "Изтрий");
    EXPECT_EQ(RunKind(TRunNumber{0}), nullptr);
    EXPECT_EQ(RunKind(TRunNumber{5}), nullptr);
}

}  // namespace
}  // namespace tolvane
