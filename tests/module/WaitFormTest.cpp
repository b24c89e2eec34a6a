#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <chrono>

#include "articles/forms/uWaitForm.h"
#include "tests/module/MessageCount.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

constexpr int kManySteps = 10000000;
constexpr std::chrono::milliseconds kBetweenMoves{40};

class WaitFormTest : public testing::Test {
protected:
    HWND Bar() const { return form_.Control("ProgressBar"); }
    LRESULT Ask(UINT message, WPARAM wParam = 0) const {
        return SendMessageW(Bar(), message, wParam, 0);
    }
    LRESULT Maximum() const { return Ask(PBM_GETRANGE, FALSE); }
    // The number of steps that the first move took; 0 when there was none.
    int StepUntilItMoves() {
        for (int steps = 1; steps <= kManySteps; ++steps) {
            form_.Step();
            if (Ask(PBM_GETPOS) != 0) return steps;
        }
        return 0;
    }
    bool IsBarShown() const { return (GetWindowLongW(Bar(), GWL_STYLE) & WS_VISIBLE) != 0; }

    THostFrame host_;
    TWaitForm form_{host_.Frame()};
};

}  // namespace

TEST_F(WaitFormTest, IsMadeOnFirstUse) {
    EXPECT_EQ(form_.Handle(), nullptr);
    form_.Step();
    form_.Hide();
    EXPECT_EQ(form_.Handle(), nullptr);
    form_.Show(3);
    EXPECT_NE(IsWindowVisible(form_.Handle()), 0);
}

TEST_F(WaitFormTest, IsBorderlessWithABarOfTenPixelsAlongItsBottom) {
    form_.Show(3);
    RECT window{};
    RECT client{};
    GetWindowRect(form_.Handle(), &window);
    GetClientRect(form_.Handle(), &client);
    EXPECT_EQ(client.right, 393);
    EXPECT_EQ(client.bottom, 73);
    EXPECT_EQ(window.right - window.left, 393);
    RECT bar{};
    GetWindowRect(Bar(), &bar);
    MapWindowPoints(nullptr, form_.Handle(), reinterpret_cast<POINT*>(&bar), 2);
    EXPECT_EQ(bar.left, 0);
    EXPECT_EQ(bar.right, 393);
    EXPECT_EQ(bar.top, 63);
    EXPECT_EQ(bar.bottom, 73);
    SaveScreenshot(form_.Handle(), "wait-window");
}

TEST_F(WaitFormTest, ShowsItsTextInBoldNavyOnItsColour) {
    form_.Show(0);
    EXPECT_EQ(Utf8TextOf(form_.Handle()), "Моля, изчакайте...");
    EXPECT_EQ(PixelAt(form_.Handle(), {2, 2}), RGB(240, 202, 166));
    bool navy = false;
    for (int x = 100; x < 290 && !navy; ++x)
        navy = PixelAt(form_.Handle(), {x, 36}) == RGB(0, 0, 128);
    EXPECT_TRUE(navy);
}

TEST_F(WaitFormTest, BarIsVisibleFromOneOn) {
    form_.Show(1);
    EXPECT_TRUE(IsBarShown());
    EXPECT_EQ(Maximum(), 1);
    form_.Show(0);
    EXPECT_FALSE(IsBarShown());
    EXPECT_EQ(Maximum(), 1);
    form_.Show(-1);
    EXPECT_FALSE(IsBarShown());
    EXPECT_EQ(Maximum(), 1);
    form_.Show(250);
    EXPECT_TRUE(IsBarShown());
    EXPECT_EQ(Maximum(), 250);
    EXPECT_EQ(Ask(PBM_GETRANGE, TRUE), 0);
}

TEST_F(WaitFormTest, MovesToTheStepsTakenAndStartsAgainAtZero) {
    form_.Show(kManySteps);
    EXPECT_EQ(Ask(PBM_GETPOS), 0);
    const int steps = StepUntilItMoves();
    EXPECT_GT(steps, 0);
    EXPECT_EQ(Ask(PBM_GETPOS), steps);
    form_.Show(9);
    EXPECT_EQ(Ask(PBM_GETPOS), 0);
}

TEST_F(WaitFormTest, MovesNoMoreOftenThanAnEyeCanFollow) {
    form_.Show(1000);
    const TMessageCount moves(Bar(), PBM_SETPOS);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1000; ++i)
        form_.Step();
    EXPECT_LE(moves.Count(), 1 + (std::chrono::steady_clock::now() - start) / kBetweenMoves);
}

TEST_F(WaitFormTest, StepsBeyondTheLastMoveNothing) {
    form_.Show(2);
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < 3 * kBetweenMoves)
        form_.Step();
    EXPECT_LE(Ask(PBM_GETPOS), 2);
}

TEST_F(WaitFormTest, HideKeepsItForTheNextUse) {
    form_.Show(5);
    const HWND window = form_.Handle();
    form_.Hide();
    EXPECT_EQ(IsWindowVisible(window), 0);
    form_.Show(2);
    EXPECT_EQ(form_.Handle(), window);
    EXPECT_NE(IsWindowVisible(window), 0);
}

TEST(WaitFormOfTheList, GoesWithTheList) {
    TSession session;
    session.Start();
    const HWND wait = FindWindowW(L"TWaitForm", nullptr);
    ASSERT_NE(wait, nullptr);
    EXPECT_EQ(IsWindowVisible(wait), 0);
    session.CloseList();
    EXPECT_EQ(IsWindow(wait), 0);
}

}  // namespace tolvane::test
