// A database that does not answer: the host's thread waits, and the module asks the user on
// another.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/support/database/CuttingProxy.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

constexpr ULONGLONG kPromisedMs = 10'000;
constexpr ULONGLONG kBusyMachineMs = 20'000;

struct TForeignBox {
    DWORD hostThread;
    HWND box = nullptr;
};

BOOL CALLBACK TakeForeignBox(HWND window, LPARAM parameter) {
    auto& found = *reinterpret_cast<TForeignBox*>(parameter);
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || thread == found.hostThread ||
        ClassOf(window) != kMessageBoxClass || IsWindowVisible(window) == 0)
        return TRUE;
    found.box = window;
    return FALSE;
}

// A list over a connection of which a proxy loses or delays the answers.
class SilentDatabase : public testing::Test {
protected:
    SilentDatabase() {
        session_.module.Start(session_.host.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              silent_.Database(), nullptr, {nullptr, nullptr});
        RunLoopDry();
    }
    // The question's box, of a thread that is not the host's.
    HWND Question() const {
        TForeignBox found{hostThread_};
        EnumWindows(&TakeForeignBox, reinterpret_cast<LPARAM>(&found));
        return found.box;
    }
    HWND WaitForQuestion() const {
        const ULONGLONG begin = GetTickCount64();
        while (Question() == nullptr && GetTickCount64() - begin < kBusyMachineMs)
            Sleep(20);
        std::printf("asked after %u ms, %u are promised\n",
                    static_cast<unsigned>(GetTickCount64() - begin),
                    static_cast<unsigned>(kPromisedMs));
        return Question();
    }

    const DWORD hostThread_ = GetCurrentThreadId();
    TCuttingProxy proxy_{TConnection::Server()};
    TConnection silent_{"shop.fdb", proxy_.Address()};
    TSession session_;
};

}  // namespace

TEST_F(SilentDatabase, IsGivenUpWhenTheUserSaysSo) {
    ASSERT_EQ(session_.Grid().RowCount(), 6);
    TSeenBox question;
    proxy_.SwallowFromPiece(2);
    std::jthread user([&] {
        while (!proxy_.Swallows())
            Sleep(1);
        const HWND box = WaitForQuestion();
        if (box == nullptr) return silent_.Abort();
        question = ReadBox(box);
        PostMessageW(box, WM_COMMAND, IDYES, 0);
    });
    {
        const TBoxAnswerer errors;
        session_.Click("RefreshBtn");
        user.join();
        ASSERT_EQ(errors.Seen().size(), 1U);
        EXPECT_EQ(errors.Seen()[0].text.rfind("[REFRESH DATA]: ", 0), 0U) << errors.Seen()[0].text;
    }
    EXPECT_EQ(question.caption, "Внимание");
    EXPECT_EQ(question.icon, TBoxIcon::Warning);
    EXPECT_EQ(question.buttons, (std::vector<int>{IDYES, IDNO}));
    EXPECT_EQ(question.text,
              "Базата данни не отговаря. Ако връзката с нея бъде прекъсната, списъкът остава "
              "празен и търговската система трябва да се свърже отново.\nДа бъде ли прекъсната?");
    EXPECT_EQ(Question(), nullptr);
    EXPECT_EQ(session_.Grid().RowCount(), 0);
    silent_.Renew();
    session_.Click("RefreshBtn");
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(SilentDatabase, IsNotAskedAboutAnyMoreWhenItAnswers) {
    ASSERT_EQ(session_.Grid().RowCount(), 6);
    std::atomic<bool> asked = false;
    proxy_.BeforePiece(2, [&] { asked = WaitForQuestion() != nullptr; });
    const TBoxAnswerer errors;
    session_.Click("RefreshBtn");
    EXPECT_TRUE(asked);
    EXPECT_EQ(Question(), nullptr);
    EXPECT_TRUE(errors.Seen().empty());
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

}  // namespace tolvane::test
