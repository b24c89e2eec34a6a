#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "tests/module/Session.h"

namespace tolvane::test {
namespace {

// An entry of the process's table of GDI objects (32-bit system).
struct TGdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t userPointer;
};
constexpr std::size_t kGdiTableOffset = 0x94;  // in the process environment block
constexpr std::size_t kGdiEntries = 0x4000;

int GdiObjects() {
    const std::uint8_t* block = nullptr;
    asm("movl %%fs:0x30, %0" : "=r"(block));
    const auto* table = *reinterpret_cast<const TGdiEntry* const*>(block + kGdiTableOffset);
    int count = 0;
    for (std::size_t i = 0; i < kGdiEntries; ++i)
        count += table[i].type != 0 ? 1 : 0;
    return count;
}

// The system gives the lowest free handle: a leak pushes the next one up.
std::uintptr_t NextHandle() {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<std::uintptr_t>(event);
}

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
