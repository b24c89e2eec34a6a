#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "tests/module/ObjectCounts.h"
#include "tests/module/Session.h"

namespace tolvane::test {
namespace {

void OpenAndClose(TSession& session) {
    session.Start();
    session.CloseList();
}

}  // namespace

TEST(Cycles, OpeningAndClosingLeavesNoGdiObjectsAndHandles) {
    constexpr int kWarmUp = 3;
    constexpr int kCycles = 10;
    TSession session;
    for (int i = 0; i < kWarmUp; ++i)
        OpenAndClose(session);
    // Helper threads of the last cycle end by themselves.
    std::uintptr_t handle = 0;
    RunLoopUntil([&] { return std::exchange(handle, NextHandle()) == NextHandle(); });
    const int objects = GdiObjects();
    for (int i = 0; i < kCycles; ++i)
        OpenAndClose(session);
    EXPECT_TRUE(RunLoopUntil([&] { return GdiObjects() <= objects; }))
        << objects << " before, " << GdiObjects() << " after";
    EXPECT_TRUE(RunLoopUntil([&] { return NextHandle() <= handle; }))
        << handle << " before, " << NextHandle() << " after";
}

TEST(Cycles, CountsSeeAPlantedLeak) {
    // Many, as threads of earlier tests may still be giving some of theirs back.
    constexpr std::size_t kPlanted = 50;
    constexpr std::size_t kEnough = 30;
    constexpr std::uintptr_t kHandleStep = 4;
    const int objects = GdiObjects();
    const std::uintptr_t handle = NextHandle();
    std::vector<HBRUSH> brushes;
    std::vector<HANDLE> events;
    brushes.reserve(kPlanted);
    events.reserve(kPlanted);
    for (std::size_t i = 0; i < kPlanted; ++i) {
        brushes.push_back(CreateSolidBrush(RGB(1, 2, i)));
        events.push_back(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    }
    EXPECT_GE(GdiObjects(), objects + static_cast<int>(kEnough));
    EXPECT_GE(NextHandle(), handle + kEnough * kHandleStep);
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    for (const HANDLE event : events)
        CloseHandle(event);
}

}  // namespace tolvane::test
