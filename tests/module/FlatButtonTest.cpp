#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "tests/support/module/Session.h"
#include "tests/support/window/HintText.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

class FlatButtonTest : public testing::Test {
protected:
    FlatButtonTest() {
        GetCursorPos(&before_);
        SetCursorPos(0, 0);
        session_.Start();
        RunLoopDry();
    }
    ~FlatButtonTest() override { SetCursorPos(before_.x, before_.y); }

    HWND Button(const std::string& name) const { return session_.Control(name); }
    // The corner of the button is the bright end of its raised edge.
    bool LooksRaised(const std::string& name) const {
        UpdateWindow(Button(name));
        return PixelAt(Button(name), {0, 0}) == GetSysColor(COLOR_BTNHIGHLIGHT);
    }
    void MoveMouseTo(const std::string& name) const {
        POINT middle{10, 10};
        ClientToScreen(Button(name), &middle);
        SetCursorPos(middle.x, middle.y);
        SendMessageW(Button(name), WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
    }

    TSession session_;

private:
    POINT before_{};
};

BOOL CALLBACK CountHints(HWND window, LPARAM count) {
    *reinterpret_cast<int*>(count) += ClassOf(window) == L"tooltips_class32" ? 1 : 0;
    return TRUE;
}

}  // namespace

TEST_F(FlatButtonTest, IsRaisedWhileTheMouseIsOverIt) {
    for (const std::string name : {"SearchButton", "SearchMenuButton", "SaveButton"}) {
        ASSERT_NE(GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNFACE));
        EXPECT_FALSE(LooksRaised(name)) << name;
        MoveMouseTo(name);
        EXPECT_TRUE(RunLoopUntil([&] { return LooksRaised(name); })) << name;
        SaveScreenshot(session_.host.Frame(), "list-over-" + name);
        SetCursorPos(0, 0);
        EXPECT_TRUE(RunLoopUntil([&] { return !LooksRaised(name); })) << name;
    }
}

TEST_F(FlatButtonTest, SaysWhatItIsFor) {
    EXPECT_EQ(HintText(session_.List(), "SearchButton"),
              "Търсене в избраната колона (Ctrl+F); следващо: F3");
    EXPECT_EQ(HintText(session_.List(), "SearchMenuButton"), "Избор на колоната, в която се търси");
    EXPECT_EQ(HintText(session_.List(), "SaveButton"),
              "Запис и изтриване на артикули, настройка на везните");
    EXPECT_EQ(HintText(session_.List(), "RefreshBtn"), "");
}

// The hints of an MDI child belong to the host's main window.
TEST_F(FlatButtonTest, NoHintOutlivesTheListWindow) {
    session_.CloseList();
    RunLoopDry();
    int left = 0;
    EnumThreadWindows(GetCurrentThreadId(), &CountHints, reinterpret_cast<LPARAM>(&left));
    EXPECT_EQ(left, 0);
}

}  // namespace tolvane::test
