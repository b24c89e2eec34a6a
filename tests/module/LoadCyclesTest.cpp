#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

#include "tests/support/Environment.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/ObjectCounts.h"

namespace tolvane::test {
namespace {

// What one loading and unloading leaves behind, on average.
struct TLeft {
    double handles;
    double heapBytes;
    double threadPlaces;
};

// Two texts that a host may keep, and blocks that the thread library never frees.
constexpr double kKeptBytes = 1024;

int Loads() {
    return CountFromEnvironment("TOLVANE_CYCLES", 25);
}

TLeft LeftBy(const char* what, int cycles, const std::function<void()>& cycle) {
    constexpr int kFirst = 10;
    for (int i = 0; i < kFirst; ++i)
        cycle();
    const int handles = OpenHandles();
    const std::size_t heap = HeapBytes();
    const int places = FreeThreadPlaces();
    for (int i = 0; i < cycles; ++i)
        cycle();
    const TLeft left{static_cast<double>(OpenHandles() - handles) / cycles,
                     (static_cast<double>(HeapBytes()) - static_cast<double>(heap)) / cycles,
                     static_cast<double>(places - FreeThreadPlaces()) / cycles};
    std::printf("%s, %d cycles: each leaves %.2f handles, %.0f bytes and %.2f places of threads\n",
                what, cycles, left.handles, left.heapBytes, left.threadPlaces);
    return left;
}

void LoadAndUse(const std::wstring& name) {
    const HMODULE module = LoadLibraryW(BesideProgram(name).c_str());
    const auto use =
        reinterpret_cast<int (*)()>(reinterpret_cast<void*>(GetProcAddress(module, "Use")));
    if (use == nullptr || use() == 0) throw std::runtime_error("a module cannot be used");
    FreeLibrary(module);
}

void LoadAndAsk() {
    const char* text = nullptr;
    TLoadedModule module;
    module.GetTitle(&text);
    module.GetType(&text);
    module.SetModuleString(nullptr, 1);
}

}  // namespace

TEST(LoadCycles, TheModuleLeavesNoHandleAndLessThanAnEmptyOne) {
    const TLeft plain =
        LeftBy("without a C++ library", Loads(), [] { LoadAndUse(L"PlainModule.dll"); });
    // The system's own threads open and close a handle now and then; a load that leaves one leaves
    // one each time.
    EXPECT_LT(std::abs(plain.handles), 0.5);
    EXPECT_EQ(plain.threadPlaces, 0);
    // Each load takes one of the process's 1,088 places for values of threads.
    constexpr int kMostOfTheEmpty = 200;
    const TLeft empty =
        LeftBy("empty", std::min(Loads(), kMostOfTheEmpty), [] { LoadAndUse(L"EmptyModule.dll"); });
    EXPECT_GT(empty.handles, 0.5) << "what this test is about is not seen";
    EXPECT_EQ(empty.threadPlaces, 1) << "what this test is about is not seen";
    const TLeft module = LeftBy("the module", Loads(), [] { LoadAndAsk(); });
    EXPECT_LT(module.handles, 0.5);
    EXPECT_LT(module.heapBytes, empty.heapBytes);
    EXPECT_LT(module.heapBytes, kKeptBytes);
    EXPECT_EQ(module.threadPlaces, 0);
}

// The thread that unloads the module then is not the one that has used it.
TEST(LoadCycles, AnOperationLeavesNoHandle) {
    TSession session;
    session.module.Unload();
    ASSERT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    const TLeft module = LeftBy("an operation", Loads(), [&] {
        TLoadedModule loaded;
        loaded.Start(session.host.Frame(), 17, &session.messageId, session.host.Frame(),
                     session.connection.Database(), nullptr, {});
        RunLoopDry();
        EXPECT_EQ(session.Grid().RowCount(), 6);
        session.CloseList();
        loaded.Unload();
        ASSERT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    });
    EXPECT_LT(module.handles, 0.5);
    EXPECT_LT(module.heapBytes, 2 * kKeptBytes);
    EXPECT_EQ(module.threadPlaces, 0);
}

}  // namespace tolvane::test
