#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

bool ClassExists(HMODULE module, const wchar_t* name) {
    WNDCLASSEXW info{};
    info.cbSize = sizeof info;
    return GetClassInfoExW(module, name, &info) != 0;
}

}  // namespace

TEST(Unload, AfterTheWindowWasClosedLeavesNothing) {
    TSession session;
    const HMODULE module = session.module.Handle();
    session.Start();
    EXPECT_TRUE(ClassExists(module, L"TElicomPluScaleListForm"));
    session.CloseList();
    session.module.Unload();
    ASSERT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    EXPECT_FALSE(ClassExists(module, L"TElicomPluScaleListForm"));
    EXPECT_FALSE(ClassExists(module, L"TWaitForm"));
    // A hook that stayed would run code that is no longer there.
    PressKey(session.host.AddChild(nullptr), VK_F3);
    EXPECT_EQ(session.Completions(), 1);
}

TEST(Unload, AfterAFailedStartLeavesNothing) {
    TSession session("empty.fdb");
    {
        const TBoxAnswerer answerer;
        session.Start();
        EXPECT_EQ(answerer.Seen().size(), 1U);
    }
    session.module.Unload();
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST(Unload, WithTheWindowOpenKeepsItAlive) {
    TSession session;
    session.Start();
    session.module.Unload();
    RunLoopDry();
    ASSERT_NE(session.List(), nullptr);
    session.Grid().ClickTitle(3);
    PressKey(session.Control("aDBGrid"), VK_F5);
    EXPECT_EQ(session.Grid().RowCount(), 6);
    session.CloseList();
    EXPECT_EQ(session.Completions(), 1);
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST(Unload, OnTheCompletionMessageAsHostsDo) {
    TSession session;
    session.Start();
    PostMessageW(session.List(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(RunLoopUntil([&] { return session.Completions() == 1; }));
    session.module.Unload();
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST(Unload, ModuleLoadsAndStartsAgain) {
    for (int round = 0; round < 5; ++round) {
        TSession session;
        session.Start();
        EXPECT_EQ(session.Grid().RowCount(), 6);
        session.CloseList();
        session.module.Unload();
        ASSERT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    }
}

}  // namespace tolvane::test
