#include "host/PageLayout.h"

#include <gtest/gtest.h>

namespace tolvane::host {
namespace {

// 1000 wide with margins of 100: columns lie between 100 and 900. Of the height of 450, 200 are
// margins and 40 the head; the other 210 hold the column titles and 20 rows.
constexpr TPaper kPaper{1000, 450, 100, 40, 10};

TEST(PageLayoutTest, ColumnsThatFitStandSideBySideOnOnePage) {
    const TPageLayout layout(kPaper, {300, 200, 300}, 5);
    ASSERT_EQ(layout.PageCount(), 1U);
    const auto& columns = layout.Columns(0);
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[0].x, 100);
    EXPECT_EQ(columns[1].x, 400);
    EXPECT_EQ(columns[2].x, 600);
    EXPECT_EQ(columns[2].width, 300);
    EXPECT_EQ(layout.FirstRow(0), 0U);
    EXPECT_EQ(layout.EndRow(0), 5U);
}

TEST(PageLayoutTest, AColumnThatDoesNotFitGoesOnOnAFurtherStrip) {
    const TPageLayout layout(kPaper, {500, 400, 100}, 1);
    ASSERT_EQ(layout.PageCount(), 2U);
    ASSERT_EQ(layout.Columns(0).size(), 1U);
    ASSERT_EQ(layout.Columns(1).size(), 2U);
    EXPECT_EQ(layout.Columns(1)[0].column, 1U);
    EXPECT_EQ(layout.Columns(1)[0].x, 100);
    EXPECT_EQ(layout.Columns(1)[1].x, 500);
}

TEST(PageLayoutTest, RowsFollowOnFurtherPagesStripByStrip) {
    const TPageLayout layout(kPaper, {800, 800}, 45);
    ASSERT_EQ(layout.RowsPerPage(), 20U);  // (450 - 200 - 40) / 10 - 1
    ASSERT_EQ(layout.PageCount(), 6U);
    EXPECT_EQ(layout.FirstRow(2), 40U);
    EXPECT_EQ(layout.EndRow(2), 45U);
    EXPECT_EQ(layout.Columns(2)[0].column, 0U);
    EXPECT_EQ(layout.FirstRow(3), 0U);
    EXPECT_EQ(layout.Columns(3)[0].column, 1U);
}

TEST(PageLayoutTest, AColumnWiderThanThePageIsCutToIt) {
    const TPageLayout layout(kPaper, {5000}, 1);
    EXPECT_EQ(layout.PageCount(), 1U);
    EXPECT_EQ(layout.Columns(0)[0].width, 800);
}

TEST(PageLayoutTest, AHiddenColumnIsLeftOut) {
    const TPageLayout layout(kPaper, {0, 100}, 1);
    ASSERT_EQ(layout.Columns(0).size(), 1U);
    EXPECT_EQ(layout.Columns(0)[0].column, 1U);
}

TEST(PageLayoutTest, AnEmptyTableHasOnePage) {
    const TPageLayout layout(kPaper, {}, 0);
    EXPECT_EQ(layout.PageCount(), 1U);
    EXPECT_TRUE(layout.Columns(0).empty());
    EXPECT_EQ(layout.EndRow(0), 0U);
}

}  // namespace
}  // namespace tolvane::host
