#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>

#include "simulator/VirtualScale.h"
#include "tests/support/module/Commands.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

// The list window in one main window and the application in another; the only scale is silent, so
// that a run goes on for as long as a test needs.
class RunEndsTest : public testing::Test {
protected:
    RunEndsTest() {
        scale_.Start();
        simulator::TFault silent;
        silent.kind = simulator::TFaultKind::Silent;
        scale_.SetFaults({{silent}});
        TConfiguration::WriteScale(scale_.Port());
        session_.module.Start(application_.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              session_.connection.Database(), nullptr, {nullptr, nullptr});
        RunLoopDry();
    }

    // Opens the run window, starts a run, and acts while the run waits for the scale. Returns when
    // the run window has gone.
    void During(const std::function<void(HWND window)>& act) {
        const TDialogScript script(
            L"TSetPluForm",
            {[](HWND window) { PostMessageW(ControlOf(window, "SaveBtn"), BM_CLICK, 0, 0); },
             [&](HWND window) {
                 acted_ = RunLoopUntil([&] {
                     return scale_.State().requests.total > 0 && IsEnabledIn(window, "StopReadBtn");
                 });
                 act(window);
             }});
        SendMessageW(session_.List(), WM_COMMAND, kWriteAll, 0);
        RunLoopDry();
    }
    // Expects that nothing of the module works any more, so that it leaves the memory.
    void ExpectNothingLeft(int completions = 1) {
        EXPECT_TRUE(acted_);
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_EQ(application_.Received(session_.messageId), completions);
        session_.module.Unload();
        EXPECT_TRUE(RunLoopUntil(&TLoadedModule::IsGone));
    }

    simulator::TVirtualScale scale_;
    TSession session_{"scales.fdb"};
    THostFrame application_;
    bool acted_ = false;
};

using RunEndsDeathTest = RunEndsTest;

}  // namespace

TEST_F(RunEndsTest, TheHostsMainWindowMayGo) {
    During([this](HWND) { DestroyWindow(session_.host.Frame()); });
    ExpectNothingLeft();
}

TEST_F(RunEndsTest, TheListWindowMayGo) {
    During([this](HWND) {
        SendMessageW(session_.host.Client(), WM_MDIDESTROY,
                     reinterpret_cast<WPARAM>(session_.List()), 0);
    });
    ExpectNothingLeft();
}

TEST_F(RunEndsTest, ASecondStartMayFail) {
    During([this](HWND) {
        const TBoxAnswerer boxes;
        session_.module.Start(application_.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              nullptr, nullptr, {nullptr, nullptr});
        EXPECT_EQ(boxes.Seen().size(), 1U);
    });
    ExpectNothingLeft(2);
}

TEST_F(RunEndsTest, TheHostMayUnloadTheModule) {
    During([this](HWND window) {
        session_.module.Unload();
        EXPECT_FALSE(TLoadedModule::IsGone());
        // The run goes on to its end.
        EXPECT_TRUE(RunLoopUntil([&] { return IsEnabledIn(window, "OkBtn"); }));
        Press(window, "OkBtn");
    });
    EXPECT_TRUE(acted_);
    ASSERT_NE(session_.List(), nullptr);
    session_.CloseList();
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    EXPECT_TRUE(RunLoopUntil(&TLoadedModule::IsGone));
}

TEST_F(RunEndsDeathTest, TheHostsProgramMayEnd) {
    constexpr int kCode = 7;
    EXPECT_EXIT(During([](HWND) { ExitProcess(kCode); }), testing::ExitedWithCode(kCode), "");
}

}  // namespace tolvane::test
