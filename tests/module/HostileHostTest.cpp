// A host that does what no host should: wrong handles, huge texts, calls from other threads and
// from inside the module's own calls, windows that go at the worst moment.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/OtherProgram.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

constexpr std::size_t kHugeText = 10 * 1024 * 1024;
constexpr UINT kHostileMessage = WM_APP + 101;

// A text of the host: the record in front of it, then the characters.
class THostText {
public:
    THostText(std::int32_t length, const std::string& characters)
        : block_(sizeof(THostTextHeader) + characters.size() + 1) {
        const THostTextHeader header{1251, 1, 1, length};
        std::memcpy(block_.data(), &header, sizeof header);
        std::memcpy(block_.data() + sizeof header, characters.data(), characters.size());
    }
    const char* Characters() const { return block_.data() + sizeof(THostTextHeader); }

private:
    std::vector<char> block_;
};

// Two pages of memory, of which the second one can be neither read nor written.
class THalfMemory {
public:
    THalfMemory()
        : pages_(static_cast<char*>(
              VirtualAlloc(nullptr, std::size_t{2} * kPage, MEM_RESERVE, PAGE_NOACCESS))) {
        EXPECT_NE(VirtualAlloc(pages_, kPage, MEM_COMMIT, PAGE_READWRITE), nullptr);
        std::memset(pages_, 'x', kPage);
    }
    THalfMemory(const THalfMemory&) = delete;
    THalfMemory& operator=(const THalfMemory&) = delete;
    ~THalfMemory() { VirtualFree(pages_, 0, MEM_RELEASE); }

    // That many bytes of the first page, and then the second one.
    char* Before(std::size_t bytes) const { return pages_ + kPage - bytes; }
    // Nothing can be read there any more.
    void Forget() const { EXPECT_NE(VirtualFree(pages_, kPage, MEM_DECOMMIT), 0); }

private:
    static constexpr std::size_t kPage = 4096;
    char* pages_;
};

// Acts whenever the window gets a message.
class TOnMessage {
public:
    TOnMessage(HWND window, UINT message, std::function<void()> act)
        : window_(window), message_(message), act_(std::move(act)) {
        SetWindowSubclass(window_, &Procedure, message_, reinterpret_cast<DWORD_PTR>(&act_));
    }
    TOnMessage(const TOnMessage&) = delete;
    TOnMessage& operator=(const TOnMessage&) = delete;
    ~TOnMessage() { RemoveWindowSubclass(window_, &Procedure, message_); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR message, DWORD_PTR act) {
        if (id == message) (*reinterpret_cast<const std::function<void()>*>(act))();
        return DefSubclassProc(window, id, wParam, lParam);
    }

    HWND window_;
    UINT message_;
    std::function<void()> act_;
};

// The MDI frame of a process, once it has its client.
HWND FrameOf(DWORD wanted) {
    HWND frame = nullptr;
    while ((frame = FindWindowExW(nullptr, frame, L"TestHostFrame", nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(frame, &process);
        if (process == wanted && FindWindowExW(frame, nullptr, L"MDIClient", nullptr) != nullptr)
            return frame;
    }
    return nullptr;
}

class HostileHostTest : public testing::Test {
protected:
    void StartWith(HWND application, HWND mainForm, const THostDatabase* database) {
        session_.module.Start(application, 17, &session_.messageId, mainForm, database, nullptr,
                              {nullptr, nullptr});
    }
    // Refreshes the list, and acts while the load shows its wait window.
    void ActDuringALoad(const std::function<void()>& act) {
        bool acted = false;
        const TOnMessage once(application_.Frame(), kHostileMessage, [&] {
            EXPECT_NE(IsWindowVisible(FindWindowW(L"TWaitForm", nullptr)), 0);
            act();
            acted = true;
        });
        std::thread([&] {
            SendNotifyMessageW(application_.Frame(), kHostileMessage, 0, 0);
        }).join();
        SendMessageW(session_.Control("RefreshBtn"), BM_CLICK, 0, 0);
        RunLoopDry();
        EXPECT_TRUE(acted);
    }
    // On a thread without any window, while this one handles its messages.
    static void OnAnotherThread(const std::function<void()>& work) {
        std::future<void> done = std::async(std::launch::async, work);
        EXPECT_TRUE(RunLoopUntil(
            [&] { return done.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        RunLoopDry();  // what it has posted
    }
    void ExpectGone() {
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_EQ(FindWindowW(L"TWaitForm", nullptr), nullptr);
        session_.module.Unload();
        EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
    }

    TSession session_;
    THostFrame application_;
};

struct TPrintAct {
    std::function<void()> act;
    int calls = 0;
};

void TOLVANE_STDCALL ActInsteadOfPrinting(void* object, const std::uint8_t*, const std::uint8_t*,
                                          void*) {
    auto& print = *static_cast<TPrintAct*>(object);
    ++print.calls;
    print.act();
}

// The list window, whose Print button calls back.
class HostilePrintTest : public HostileHostTest {
protected:
    void ClickPrintAnd(std::function<void()> act) {
        TPrintAct print{std::move(act)};
        session_.module.Start(application_.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              session_.connection.Database(), nullptr,
                              {&ActInsteadOfPrinting, &print});
        RunLoopDry();
        ASSERT_NE(session_.List(), nullptr);
        session_.Click("PrintBtn");
        EXPECT_EQ(print.calls, 1);
    }
};

}  // namespace

TEST_F(HostileHostTest, AHandleThatWasNeverAConnectionIsRefused) {
    isc_db_handle wrong{};
    const std::uint32_t number = 0x00DEAD00;
    static_assert(sizeof wrong == sizeof number);
    std::memcpy(&wrong, &number, sizeof wrong);
    THostDatabase database = *session_.connection.Database();
    database.Handle = &wrong;
    const TBoxAnswerer boxes;
    StartWith(application_.Frame(), session_.host.Frame(), &database);
    RunLoopDry();
    EXPECT_EQ(boxes.Seen().size(), 1U);
    ExpectGone();
}

TEST_F(HostileHostTest, AMainWindowOfAnotherProgramIsRefusedAndLeftAlone) {
    const HWND foreign = GetDesktopWindow();
    ASSERT_NE(GetWindowThreadProcessId(foreign, nullptr), GetCurrentThreadId());
    const TBoxAnswerer boxes;
    StartWith(foreign, foreign, session_.connection.Database());
    RunLoopDry();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_NE(boxes.Seen()[0].text.find("на друга нишка"), std::string::npos);
    ExpectGone();
}

TEST_F(HostileHostTest, AnMdiFrameOfAnotherProcessIsRefusedAndLeftAlone) {
    const TOtherProgram other(L"second_host", L"frame tolvane-foreign", L"tolvane-foreign",
                              std::filesystem::current_path());
    HWND foreign = nullptr;
    ASSERT_TRUE(RunLoopUntil([&] { return (foreign = FrameOf(other.Process())) != nullptr; }, 60));
    const TBoxAnswerer boxes;
    StartWith(application_.Frame(), foreign, session_.connection.Database());
    RunLoopDry();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Грешка :\rГлавният прозорец (MainForm) е на друга нишка.");
    EXPECT_NE(IsWindowEnabled(foreign), 0);
    const HWND client = FindWindowExW(foreign, nullptr, L"MDIClient", nullptr);
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(FindWindowExW(client, nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    ExpectGone();
}

TEST_F(HostileHostTest, AHandleOfAConnectionThatHasEndedIsRefused) {
    isc_db_handle ended{};
    {
        const TConnection connection("shop.fdb");
        std::memcpy(&ended, connection.Database()->Handle, sizeof ended);
    }
    ASSERT_NE(ended, isc_db_handle{});
    THostDatabase database = *session_.connection.Database();
    database.Handle = &ended;
    const TBoxAnswerer boxes;
    StartWith(application_.Frame(), session_.host.Frame(), &database);
    RunLoopDry();
    EXPECT_EQ(boxes.Seen().size(), 1U);
    ExpectGone();
}

TEST_F(HostileHostTest, ACellOfTheConnectionThatHasGoneIsToldByTheNextRefresh) {
    const THalfMemory memory;
    THostDatabase database = *session_.connection.Database();
    std::memcpy(memory.Before(sizeof(isc_db_handle)), database.Handle, sizeof(isc_db_handle));
    database.Handle = memory.Before(sizeof(isc_db_handle));
    StartWith(application_.Frame(), session_.host.Frame(), &database);
    RunLoopDry();
    ASSERT_EQ(session_.Grid().RowCount(), 6);
    memory.Forget();
    {
        const TBoxAnswerer boxes;
        session_.Click("RefreshBtn");
        ASSERT_EQ(boxes.Seen().size(), 1U);
        EXPECT_EQ(boxes.Seen()[0].text, "[REFRESH DATA]: Няма връзка с базата данни");
    }
    EXPECT_EQ(session_.Grid().RowCount(), 0);
    session_.CloseList();
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    ExpectGone();
}

TEST_F(HostileHostTest, APrintServiceThatHasGoneIsTold) {
    const THalfMemory memory;
    session_.module.Start(application_.Frame(), 17, &session_.messageId, session_.host.Frame(),
                          session_.connection.Database(), nullptr,
                          {reinterpret_cast<TPrintCode>(memory.Before(0)), nullptr});
    RunLoopDry();
    const TBoxAnswerer boxes;
    session_.Click("PrintBtn");
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text,
              "Печатът на търговската система не може да бъде извикан (PrintProc).");
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

// A box with a window of another thread as its owner would disable that window.
TEST_F(HostileHostTest, AStartOnAnotherThreadIsRefusedAndDisablesNoWindow) {
    session_.Start();
    bool wasShown = false;
    bool wasDisabled = false;
    OnAnotherThread([&] {
        const TRegularCall answer([&] {
            const HWND box = ThreadWindow(kMessageBoxClass);
            if (box == nullptr) return;
            wasShown = true;
            wasDisabled = wasDisabled || IsWindowEnabled(session_.host.Frame()) == 0 ||
                          IsWindowEnabled(application_.Frame()) == 0;
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        });
        StartWith(application_.Frame(), session_.host.Frame(), session_.connection.Database());
    });
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(wasDisabled);
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    EXPECT_EQ(session_.Grid().RowCount(), 6);
    session_.CloseList();
    ExpectGone();
}

TEST_F(HostileHostTest, TextsFromSeveralThreadsAtOnceDoNoHarm) {
    constexpr int kCalls = 200;
    OnAnotherThread([&] {
        std::vector<std::thread> threads;
        for (int number = 0; number < 4; ++number)
            threads.emplace_back([&, number] {
                const std::string characters(static_cast<std::size_t>(1000 * number), 'x');
                const THostText text(static_cast<std::int32_t>(characters.size()), characters);
                const char* title = nullptr;
                for (int i = 0; i < kCalls; ++i) {
                    session_.module.SetModuleString(text.Characters(), i);
                    session_.module.GetTitle(&title);
                }
            });
        for (std::thread& thread : threads)
            thread.join();
    });
    session_.Start();
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(HostileHostTest, HugeAndOddTextsAreTaken) {
    const std::string huge(kHugeText, 'x');
    session_.module.SetModuleString(
        THostText(static_cast<std::int32_t>(huge.size()), huge).Characters(), 1);
    session_.module.SetModuleString(THostText(-1, "abc").Characters(), 2);
    session_.module.SetModuleString(THostText(3, std::string("a\0b", 3)).Characters(), 3);
    // The text that the module does not use may point anywhere.
    session_.module.Start(application_.Frame(), 17, &session_.messageId, session_.host.Frame(),
                          session_.connection.Database(), reinterpret_cast<const char*>(1),
                          {nullptr, nullptr});
    RunLoopDry();
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(HostileHostTest, AHugeNameOfAClientLibraryIsReportedInAFewWords) {
    const std::string huge(kHugeText, 'x');
    THostDatabase database = *session_.connection.Database();
    database.ClientLibrary = huge.c_str();
    const TBoxAnswerer boxes;
    StartWith(application_.Frame(), session_.host.Frame(), &database);
    RunLoopDry();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    constexpr std::size_t kFewWords = 2500;
    EXPECT_LT(boxes.Seen()[0].text.size(), kFewWords);
    EXPECT_NE(boxes.Seen()[0].text.find("xxx"), std::string::npos);
    ExpectGone();
}

TEST_F(HostileHostTest, AddressesThatCannotBeReadAreRefused) {
    const THalfMemory memory;
    const THalfMemory endless;
    constexpr std::string_view kNoDatabase =
        "Грешка :\rНе е подадена връзка с базата данни (Database).";
    constexpr std::string_view kNotOpen = "Грешка :\rВръзката с базата данни не е отворена.";
    const THostDatabase good = *session_.connection.Database();
    THostDatabase cell = good;
    cell.Handle = memory.Before(2);
    THostDatabase library = good;
    library.ClientLibrary = endless.Before(100);
    std::memcpy(memory.Before(4), &good.Size, sizeof good.Size);
    const std::vector<std::pair<const THostDatabase*, std::string_view>> cases = {
        {reinterpret_cast<const THostDatabase*>(memory.Before(0)), kNoDatabase},
        {reinterpret_cast<const THostDatabase*>(memory.Before(4)), kNoDatabase},
        {&library, kNoDatabase},
        {&cell, kNotOpen}};
    for (const auto& [database, message] : cases) {
        const TBoxAnswerer boxes;
        StartWith(application_.Frame(), session_.host.Frame(), database);
        RunLoopDry();
        ASSERT_EQ(boxes.Seen().size(), 1U);
        EXPECT_EQ(boxes.Seen()[0].text, message);
    }
    ExpectGone();
}

TEST_F(HostileHostTest, AnAddressThatCannotBeWrittenIsRefused) {
    const THalfMemory memory;
    const TBoxAnswerer boxes;
    session_.module.Start(application_.Frame(), 17,
                          reinterpret_cast<std::uint32_t*>(memory.Before(2)), session_.host.Frame(),
                          session_.connection.Database(), nullptr, {nullptr, nullptr});
    session_.module.GetTitle(reinterpret_cast<const char**>(memory.Before(2)));
    RunLoopDry();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text,
              "Грешка :\rЛипсва място за номера на съобщението за край (MessageId).");
    EXPECT_EQ(std::string_view(memory.Before(2), 2), "xx");
    ExpectGone();
}

TEST_F(HostileHostTest, TextsThatCannotBeReadToTheirEndAreNotTaken) {
    const THalfMemory memory;
    const std::int32_t length = 3;
    std::memcpy(memory.Before(6), &length, sizeof length);
    session_.module.SetModuleString(memory.Before(2), 1);
    session_.module.SetModuleString(memory.Before(0) + 2, 1);
    session_.Start();
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

// The module's code is on the stack until the host's thread handles messages again.
TEST_F(HostileHostTest, UnloadedDuringARefusedStartTheModuleStaysUntilTheThreadIsBack) {
    constexpr DWORD kLongEnoughMs = 500;
    {
        const TUserScript script(kMessageBoxClass, [this](HWND box) {
            session_.module.Unload();
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        });
        StartWith(application_.Frame(), GetDesktopWindow(), session_.connection.Database());
        EXPECT_TRUE(script.IsDone());
    }
    const DWORD start = GetTickCount();
    while (TLoadedModule::IsInMemory() && GetTickCount() - start < kLongEnoughMs)
        Sleep(10);
    EXPECT_TRUE(TLoadedModule::IsInMemory());
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST_F(HostilePrintTest, TheListMayCloseInsideThePrintService) {
    ClickPrintAnd([this] { SendMessageW(session_.List(), WM_CLOSE, 0, 0); });
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    ExpectGone();
}

TEST_F(HostilePrintTest, TheModuleMayBeUnloadedInsideThePrintService) {
    ClickPrintAnd([this] {
        session_.module.Unload();
        DestroyWindow(session_.host.Frame());
    });
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST_F(HostilePrintTest, TheOperationMayStartInsideThePrintService) {
    ClickPrintAnd([this] { session_.Start(); });
    EXPECT_EQ(session_.host.ChildrenOfClass(L"TElicomPluScaleListForm"), 1);
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(HostileHostTest, TheOperationMayStartInsideItsCompletionMessage) {
    session_.Start();
    const TOnMessage again(session_.host.Frame(), session_.messageId, [this] { session_.Start(); });
    session_.CloseList();
    EXPECT_EQ(session_.Completions(), 1);
    EXPECT_EQ(session_.host.ChildrenOfClass(L"TElicomPluScaleListForm"), 1);
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(HostileHostTest, AStartWhileTheWindowIsBeingMadeMakesNoSecondOne) {
    int depth = 0;
    const TOnMessage again(session_.host.Client(), WM_PARENTNOTIFY, [&] {
        if (depth++ == 0) session_.Start();
    });
    session_.Start();
    EXPECT_GE(depth, 1);
    EXPECT_EQ(session_.host.ChildrenOfClass(L"TElicomPluScaleListForm"), 1);
    EXPECT_EQ(session_.Grid().RowCount(), 6);
}

TEST_F(HostileHostTest, TheMdiClientMayGoInTheMiddleOfALoad) {
    session_.Start();
    const TBoxAnswerer boxes;
    ActDuringALoad([this] { DestroyWindow(session_.host.Client()); });
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_EQ(session_.Completions(), 1);
    EXPECT_NE(IsWindowEnabled(session_.host.Frame()), 0);
    ExpectGone();
}

TEST_F(HostileHostTest, TheMainWindowMayGoInTheMiddleOfALoad) {
    StartWith(application_.Frame(), session_.host.Frame(), session_.connection.Database());
    const TBoxAnswerer boxes;
    ActDuringALoad([this] { DestroyWindow(session_.host.Frame()); });
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    ExpectGone();
}

TEST_F(HostileHostTest, TheModuleMayBeUnloadedInTheMiddleOfALoad) {
    session_.Start();
    ActDuringALoad([this] { session_.module.Unload(); });
    EXPECT_EQ(session_.Grid().RowCount(), 6);
    session_.CloseList();
    EXPECT_EQ(session_.Completions(), 1);
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

// Before the first load, the module lets the host handle what waits.
TEST_F(HostileHostTest, TheMdiClientMayGoBeforeTheFirstLoad) {
    const TOnMessage act(application_.Frame(), kHostileMessage,
                         [this] { DestroyWindow(session_.host.Client()); });
    PostMessageW(application_.Frame(), kHostileMessage, 0, 0);
    const TBoxAnswerer boxes;
    StartWith(application_.Frame(), session_.host.Frame(), session_.connection.Database());
    RunLoopDry();
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_EQ(application_.Received(session_.messageId), 1);
    ExpectGone();
}

}  // namespace tolvane::test
