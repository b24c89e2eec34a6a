// A load during which a second start fails: the window closes, and the load ends later without it.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <thread>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

constexpr UINT kActMessage = WM_APP + 100;

LRESULT CALLBACK ActProcedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR act) {
    if (id != kActMessage) return DefSubclassProc(window, id, wParam, lParam);
    (*reinterpret_cast<const std::function<void()>*>(act))();
    return 0;
}

class LoadEndsTest : public testing::Test {
protected:
    LoadEndsTest() { session_.Start(); }

    void StartWithoutADatabase() {
        session_.module.Start(session_.host.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              nullptr, nullptr, {nullptr, nullptr});
    }
    void ExpectNothingLeft() {
        RunLoopDry();
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_EQ(FindWindowW(L"TWaitForm", nullptr), nullptr);
        EXPECT_NE(IsWindowEnabled(session_.host.Frame()), 0);
        EXPECT_EQ(session_.Completions(), 2);
        session_.module.Unload();
        EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    }

    TSession session_;
};

}  // namespace

TEST_F(LoadEndsTest, TheWindowGoesUnderTheBoxOfAFailedLoad) {
    session_.connection.ShutDown();
    bool acted = false;
    {
        const TUserScript actor(kMessageBoxClass, [&](HWND) {
            const TBoxAnswerer boxes;
            StartWithoutADatabase();
            EXPECT_EQ(boxes.Seen().size(), 2U);
            EXPECT_EQ(session_.List(), nullptr);
            acted = true;
        });
        session_.Click("RefreshBtn");
    }
    EXPECT_TRUE(acted);
    ExpectNothingLeft();
}

// A message from another thread comes in while the load shows its wait window, which the load still
// uses after the list window has gone.
TEST_F(LoadEndsTest, TheWindowGoesInTheMiddleOfALoad) {
    bool acted = false;
    const TBoxAnswerer boxes;
    const std::function<void()> act = [&] {
        EXPECT_NE(IsWindowVisible(FindWindowW(L"TWaitForm", nullptr)), 0);
        StartWithoutADatabase();
        EXPECT_EQ(boxes.Seen().size(), 1U);
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_NE(FindWindowW(L"TWaitForm", nullptr), nullptr);
        acted = true;
    };
    const HWND frame = session_.host.Frame();
    SetWindowSubclass(frame, &ActProcedure, 1, reinterpret_cast<DWORD_PTR>(&act));
    std::thread([&] { SendNotifyMessageW(frame, kActMessage, 0, 0); }).join();
    session_.Click("RefreshBtn");
    RemoveWindowSubclass(frame, &ActProcedure, 1);
    EXPECT_TRUE(acted);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    ExpectNothingLeft();
}

}  // namespace tolvane::test
