#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Environment.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/ObjectCounts.h"

namespace tolvane::test {
namespace {

// A heap takes whole steps of this size from the system.
constexpr std::size_t kMemoryStep = 1024 * 1024;
// By how much the system's own caches may differ: less than a small block per cycle.
constexpr std::size_t kHeapNoise = 4096;

int Cycles() {
    return CountFromEnvironment("TOLVANE_CYCLES", 25);
}

void OpenAndClose(TSession& session) {
    session.Start();
    session.CloseList();
}

struct TCounts {
    std::uintptr_t handle = NextHandle();
    int gdi = GdiObjects();
    int user = UserObjects();
    int atom = NextAtom();
    int windows = ThreadWindows();
    std::size_t memory = PrivateBytes();
    std::size_t heap = HeapBytes();

    std::string Text() const {
        return "handle " + std::to_string(handle) + ", GDI " + std::to_string(gdi) + ", user " +
               std::to_string(user) + ", atom " + std::to_string(atom) + ", windows " +
               std::to_string(windows) + ", memory " + std::to_string(memory / 1024) +
               " KiB, heap " + std::to_string(heap);
    }
    bool IsWithin(const TCounts& limit) const {
        return handle <= limit.handle && gdi <= limit.gdi && user <= limit.user &&
               atom <= limit.atom && windows <= limit.windows &&
               memory <= limit.memory + kMemoryStep && heap <= limit.heap + kHeapNoise;
    }
};

// Helper threads of the last cycle end by themselves, and give back what they had.
TCounts AtRest() {
    std::uintptr_t handle = 0;
    RunLoopUntil([&] { return std::exchange(handle, NextHandle()) == NextHandle(); });
    return {};
}

LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// The helper thread of the last closing ends a little later, with a stack and some handles of its
// own; a leak stays.
bool ComesDownTo(const TCounts& limit) {
    return RunLoopUntil([&] { return TCounts().IsWithin(limit); }, 40);
}

}  // namespace

TEST(Cycles, OpeningAndClosingLeavesEverythingAsItWas) {
    constexpr int kWarmUp = 10;
    TSession session;
    for (int i = 0; i < kWarmUp; ++i)
        OpenAndClose(session);
    const TCounts before = AtRest();
    const int cycles = Cycles();
    for (int i = 0; i < cycles; ++i)
        OpenAndClose(session);
    EXPECT_TRUE(ComesDownTo(before))
        << "before: " << before.Text() << "; after: " << TCounts().Text();
    std::printf("%d cycles. before: %s; after: %s\n", cycles, before.Text().c_str(),
                TCounts().Text().c_str());
}

// A leak of one object per cycle shows, whatever its kind.
TEST(Cycles, APlantedLeakIsSeen) {
    constexpr std::size_t kPlanted = 20;
    const auto isSeen = [](auto plant, auto remove) {
        const TCounts before = AtRest();
        std::vector<decltype(plant(0))> planted;
        for (std::size_t i = 0; i < kPlanted; ++i)
            planted.push_back(plant(static_cast<int>(i)));
        const bool seen = !TCounts().IsWithin(before);
        for (const auto& object : planted)
            remove(object);
        return seen;
    };
    EXPECT_TRUE(isSeen([](int i) { return CreateSolidBrush(RGB(1, 2, i)); },
                       [](HBRUSH brush) { DeleteObject(brush); }));
    EXPECT_TRUE(isSeen([](int) { return CreateEventW(nullptr, FALSE, FALSE, nullptr); },
                       [](HANDLE event) { CloseHandle(event); }));
    EXPECT_TRUE(isSeen([](int) { return CreateMenu(); }, [](HMENU menu) { DestroyMenu(menu); }));
    EXPECT_TRUE(isSeen(
        [](int) {
            return SetWindowsHookExW(WH_GETMESSAGE, &PassOn, nullptr, GetCurrentThreadId());
        },
        [](HHOOK hook) { UnhookWindowsHookEx(hook); }));
    EXPECT_TRUE(
        isSeen([](int i) { return GlobalAddAtomW((L"leak " + std::to_wstring(i)).c_str()); },
               [](ATOM atom) { GlobalDeleteAtom(atom); }));
    constexpr std::size_t kBytes = 256;
    EXPECT_TRUE(isSeen(
        [](int) {
            void* memory = std::malloc(kBytes);
            std::memset(memory, 1, kBytes);
            return memory;
        },
        [](void* memory) { std::free(memory); }));
}

}  // namespace tolvane::test
