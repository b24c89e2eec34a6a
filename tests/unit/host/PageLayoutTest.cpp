#include "host/PageLayout.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane::host {
namespace {

// 1000 wide with margins of 100: columns lie between 100 and 900. Of the height of 450, 200 are
// margins and 40 the head; the other 210 hold the column titles and 20 rows of 10.
constexpr TPaper kPaper{1000, 450, 100, 40, 10};

TEST(PageLayoutTest, ColumnsThatFitStandSideBySideOnOnePage) {
    const TPageLayout layout(kPaper, {300, 200, 300}, 5);
    ASSERT_EQ(layout.PageCount(), 1U);
    EXPECT_EQ(layout.Scale(), 100);
    const auto& columns = layout.Columns(0);
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[0].x, 100);
    EXPECT_EQ(columns[1].x, 400);
    EXPECT_EQ(columns[2].x, 600);
    EXPECT_EQ(columns[2].width, 300);
    EXPECT_EQ(layout.FirstRow(0), 0U);
    EXPECT_EQ(layout.EndRow(0), 5U);
}

TEST(PageLayoutTest, NarrowColumnsAreWidenedToThePage) {
    // 400 + 300 = 700 of 800: to 457 (400 * 800 / 700 = 457.1) and the rest.
    const TPageLayout layout(kPaper, {400, 300}, 1);
    const auto& columns = layout.Columns(0);
    EXPECT_EQ(columns[0].x, 100);
    EXPECT_EQ(columns[0].width, 457);
    EXPECT_EQ(columns[1].x, 557);
    EXPECT_EQ(columns[1].width, 343);
}

TEST(PageLayoutTest, WideningEndsAtThirtyPercent) {
    const TPageLayout layout(kPaper, {100, 100}, 1);
    const auto& columns = layout.Columns(0);
    EXPECT_EQ(columns[0].width, 130);
    EXPECT_EQ(columns[1].x, 230);
    EXPECT_EQ(columns[1].width, 130);
}

TEST(PageLayoutTest, ATableThatIsALittleTooWideIsDrawnSmaller) {
    // 1000 into 800 is 80 %; the rows become 8 high: 210 / 8 = 26, less the titles.
    const TPageLayout layout(kPaper, {500, 500}, 25);
    EXPECT_EQ(layout.Scale(), 80);
    EXPECT_EQ(layout.RowHeight(), 8);
    EXPECT_EQ(layout.RowsPerPage(), 25U);
    ASSERT_EQ(layout.PageCount(), 1U);
    ASSERT_EQ(layout.Columns(0).size(), 2U);
    EXPECT_EQ(layout.Columns(0)[0].width, 400);
    EXPECT_EQ(layout.Columns(0)[1].x, 500);
    EXPECT_EQ(layout.Columns(0)[1].width, 400);
}

TEST(PageLayoutTest, ATableIsNotDrawnSmallerThanSeventyPercent) {
    // 800 / 1142 = 70.05 %, 800 / 1143 = 69.99 %.
    EXPECT_EQ(TPageLayout(kPaper, {571, 571}, 1).Scale(), 70);
    EXPECT_EQ(TPageLayout(kPaper, {571, 571}, 1).PageCount(), 1U);
    EXPECT_EQ(TPageLayout(kPaper, {571, 572}, 1).Scale(), 85);
    EXPECT_EQ(TPageLayout(kPaper, {571, 572}, 1).PageCount(), 2U);
}

TEST(PageLayoutTest, ColumnsThatDoNotFitGoOnOnAFurtherStrip) {
    // At 85 % the columns are 680, 340 and 340 wide; the strips are widened to 800.
    const TPageLayout layout(kPaper, {800, 400, 400}, 1);
    ASSERT_EQ(layout.PageCount(), 2U);
    ASSERT_EQ(layout.Columns(0).size(), 1U);
    EXPECT_EQ(layout.Columns(0)[0].width, 800);
    ASSERT_EQ(layout.Columns(1).size(), 2U);
    EXPECT_EQ(layout.Columns(1)[0].column, 1U);
    EXPECT_EQ(layout.Columns(1)[0].x, 100);
    EXPECT_EQ(layout.Columns(1)[0].width, 400);
    EXPECT_EQ(layout.Columns(1)[1].x, 500);
    EXPECT_EQ(layout.Columns(1)[1].width, 400);
}

TEST(PageLayoutTest, RowsFollowOnFurtherPagesStripByStrip) {
    // Rows are 8 high at 85 % (8.5 cut): 210 / 8 - 1 = 25 rows a page.
    const TPageLayout layout(kPaper, {800, 800}, 60);
    ASSERT_EQ(layout.RowsPerPage(), 25U);
    ASSERT_EQ(layout.PageCount(), 6U);
    EXPECT_EQ(layout.FirstRow(2), 50U);
    EXPECT_EQ(layout.EndRow(2), 60U);
    EXPECT_EQ(layout.Columns(2)[0].column, 0U);
    EXPECT_EQ(layout.FirstRow(3), 0U);
    EXPECT_EQ(layout.EndRow(3), 25U);
    EXPECT_EQ(layout.Columns(3)[0].column, 1U);
}

TEST(PageLayoutTest, AFullLastPageIsNotFollowedByAnEmptyOne) {
    EXPECT_EQ(TPageLayout(kPaper, {800}, 20).PageCount(), 1U);
    EXPECT_EQ(TPageLayout(kPaper, {800}, 21).PageCount(), 2U);
}

TEST(PageLayoutTest, AColumnWiderThanThePageIsCutToIt) {
    const TPageLayout layout(kPaper, {5000}, 1);
    EXPECT_EQ(layout.PageCount(), 1U);
    EXPECT_EQ(layout.Columns(0)[0].width, 800);
}

TEST(PageLayoutTest, AHiddenColumnIsLeftOut) {
    const TPageLayout layout(kPaper, {0, 100, -5}, 1);
    ASSERT_EQ(layout.Columns(0).size(), 1U);
    EXPECT_EQ(layout.Columns(0)[0].column, 1U);
}

TEST(PageLayoutTest, AnEmptyTableHasOnePage) {
    const TPageLayout layout(kPaper, {}, 0);
    EXPECT_EQ(layout.PageCount(), 1U);
    EXPECT_TRUE(layout.Columns(0).empty());
    EXPECT_EQ(layout.EndRow(0), 0U);
}

TEST(PageLayoutTest, AHundredThousandRowsFillFiveThousandPages) {
    const TPageLayout layout(kPaper, {800}, 100000);
    ASSERT_EQ(layout.PageCount(), 5000U);
    EXPECT_EQ(layout.FirstRow(4999), 99980U);
    EXPECT_EQ(layout.EndRow(4999), 100000U);
}

TEST(PageLayoutTest, ThePortraitPaperIsTheLandscapeOneTurned) {
    EXPECT_EQ(LandscapePaper().width, 2970);
    EXPECT_EQ(LandscapePaper().height, 2100);
    EXPECT_EQ(PortraitPaper().width, 2100);
    EXPECT_EQ(PortraitPaper().height, 2970);
    EXPECT_EQ(PortraitPaper().margin, LandscapePaper().margin);
}

// A landscape A4 sheet at 254 dots per inch, one dot a tenth of a millimetre, of which 5 mm at the
// left and 4 mm at the top cannot be printed on.
constexpr TSheet kSheet{2970, 2100, 50, 40, 254, 254};

TEST(PlaceOnSheetTest, APageThatFitsIsPrintedInTrueSize) {
    const TSheetPlace place = PlaceOnSheet(LandscapePaper(), kSheet);
    EXPECT_EQ(place.x, -50);
    EXPECT_EQ(place.y, -40);
    EXPECT_EQ(place.width, 2970);
    EXPECT_EQ(place.height, 2100);
}

TEST(PlaceOnSheetTest, APageOnALargerSheetStandsInTheMiddle) {
    constexpr TSheet kLarger{4200, 2970, 0, 0, 254, 254};
    const TSheetPlace place = PlaceOnSheet(LandscapePaper(), kLarger);
    EXPECT_EQ(place.width, 2970);
    EXPECT_EQ(place.x, 615);
    EXPECT_EQ(place.y, 435);
}

TEST(PlaceOnSheetTest, APageOnASmallerSheetKeepsItsShape) {
    constexpr TSheet kHalf{1485, 2100, 0, 0, 254, 254};
    const TSheetPlace place = PlaceOnSheet(LandscapePaper(), kHalf);
    EXPECT_EQ(place.width, 1485);
    EXPECT_EQ(place.height, 1050);
    EXPECT_EQ(place.x, 0);
    EXPECT_EQ(place.y, 525);
}

TEST(PlaceOnSheetTest, DotsMayDifferAcrossAndDown) {
    constexpr TSheet kUneven{5940, 2100, 0, 0, 508, 254};
    const TSheetPlace place = PlaceOnSheet(LandscapePaper(), kUneven);
    EXPECT_EQ(place.width, 5940);
    EXPECT_EQ(place.height, 2100);
}

}  // namespace
}  // namespace tolvane::host
