#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/support/module/Session.h"

namespace tolvane::test {
namespace {

constexpr int kRows = 100000;
constexpr int kName = 3;

// Counts what makes a window flicker, while it lives.
class TPaintCount {
public:
    explicit TPaintCount(HWND window) : window_(window) {
        SetWindowSubclass(window_, &Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    TPaintCount(const TPaintCount&) = delete;
    TPaintCount& operator=(const TPaintCount&) = delete;
    ~TPaintCount() { RemoveWindowSubclass(window_, &Procedure, 1); }

    int Paints() const { return paints_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR count) {
        if (id == WM_PAINT) ++reinterpret_cast<TPaintCount*>(count)->paints_;
        return DefSubclassProc(window, id, wParam, lParam);
    }

    HWND window_;
    int paints_ = 0;
};

// One load serves all: the list is opened once for the suite.
class BigListTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        session_ = new TSession("big.fdb");
        session_->Start();
    }
    static void TearDownTestSuite() {
        delete session_;
        session_ = nullptr;
    }

    static TGridReader Grid() { return session_->Grid(); }
    static void SetMark(int row, bool marked) {
        LVITEMW item{};
        item.state = marked ? LVIS_SELECTED : 0;
        item.stateMask = LVIS_SELECTED;
        SendMessageW(Grid().Handle(), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
    }
    static bool IsMarked(int row) {
        return SendMessageW(Grid().Handle(), LVM_GETITEMSTATE, static_cast<WPARAM>(row),
                            LVIS_SELECTED) != 0;
    }
    static LRESULT MarkCount() { return SendMessageW(Grid().Handle(), LVM_GETSELECTEDCOUNT, 0, 0); }

    static TSession* session_;
};

TSession* BigListTest::session_ = nullptr;

}  // namespace

TEST_F(BigListTest, LoadingDrawsTheGridAFewTimesOnly) {
    const TPaintCount count(Grid().Handle());
    session_->Click("RefreshBtn");
    ASSERT_EQ(Grid().RowCount(), kRows);
    EXPECT_EQ(Grid().Cell(0, 0), "1");
    EXPECT_EQ(Grid().Cell(kRows - 1, 0), "100000");
    EXPECT_LE(count.Paints(), 5);
}

TEST_F(BigListTest, SortingDrawsTheGridAFewTimesOnly) {
    const TPaintCount count(Grid().Handle());
    Grid().ClickTitle(kName);
    EXPECT_EQ(Grid().Cell(0, kName), "Артикул 000001");
    EXPECT_EQ(Grid().Cell(0, 0), "100000");
    EXPECT_EQ(Grid().Cell(kRows - 1, 0), "1");
    EXPECT_LE(count.Paints(), 5);
    Grid().ClickTitle(0);
    EXPECT_EQ(Grid().Cell(0, 0), "1");
}

TEST_F(BigListTest, ThousandsOfMarksFollowTheirRowsThroughSorting) {
    for (int row = 0; row < kRows; row += 100)
        SetMark(row, true);
    Grid().ClickTitle(kName);
    EXPECT_EQ(MarkCount(), kRows / 100);
    EXPECT_TRUE(IsMarked(99999));
    EXPECT_TRUE(IsMarked(99));
    EXPECT_FALSE(IsMarked(100));
    SetMark(-1, false);
    Grid().ClickTitle(0);
}

TEST_F(BigListTest, TheKeysReachBothEndsAndThePageBetween) {
    PressKey(Grid().Handle(), VK_END);
    EXPECT_EQ(Grid().FocusedRow(), kRows - 1);
    PressKey(Grid().Handle(), VK_HOME);
    EXPECT_EQ(Grid().FocusedRow(), 0);
    PressKey(Grid().Handle(), VK_NEXT);
    EXPECT_GT(Grid().FocusedRow(), 3);
}

}  // namespace tolvane::test
