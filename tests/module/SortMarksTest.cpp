#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

constexpr int kColumns = 32;
constexpr int kName = 3;

int MarkOf(const TSession& session, int column) {
    return session.Grid().ColumnFormat(column) & (HDF_SORTUP | HDF_SORTDOWN);
}

int MarkedTitles(const TSession& session) {
    int count = 0;
    for (int column = 0; column < kColumns; ++column)
        count += MarkOf(session, column) != 0 ? 1 : 0;
    return count;
}

}  // namespace

TEST(SortMarks, ARefreshThatFailsLeavesNoneAndForgetsTheSort) {
    TSession session;
    session.Start();
    session.Grid().ClickTitle(kName);
    EXPECT_EQ(MarkOf(session, kName), HDF_SORTUP);
    session.connection.ShutDown();
    {
        const TBoxAnswerer boxes;
        session.Click("RefreshBtn");
        EXPECT_EQ(boxes.Seen().size(), 1U);
    }
    EXPECT_EQ(MarkedTitles(session), 0);
    // This is not a second click on the same title.
    session.Grid().ClickTitle(kName);
    EXPECT_EQ(MarkOf(session, kName), HDF_SORTUP);
    EXPECT_EQ(MarkedTitles(session), 1);
}

TEST(SortMarks, AnEmptyListTurnsThemWithEveryClickAndReportsNothing) {
    TSession session("bare.fdb");
    session.Start();
    ASSERT_EQ(session.Grid().RowCount(), 0);
    const TBoxAnswerer boxes;
    for (const int expected : {HDF_SORTUP, HDF_SORTDOWN, HDF_SORTUP}) {
        session.Grid().ClickTitle(kName);
        EXPECT_EQ(MarkOf(session, kName), expected);
        EXPECT_EQ(MarkedTitles(session), 1);
    }
    EXPECT_TRUE(boxes.Seen().empty());
}

}  // namespace tolvane::test
