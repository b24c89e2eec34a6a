#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "ControlRecorder.h"
#include "RunWindowFixture.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

using RunWindowLife = TRunWindowTest;

// A system with another program in front, or this one, that records what is to flash.
class RunWindowEnd : public TRunWindowTest {
protected:
    RunWindowEnd() {
        front = nullptr;
        flashed.clear();
        context_.attention = {.getForegroundWindow = &Foreground, .flashWindowEx = &Flash};
        ShortenPauses();
    }
    // The flashes of a run that ends, before the window is closed.
    std::vector<FLASHWINFO> FlashesOfARun() {
        ThenStart("SaveBtn");
        ThenClose();
        Show(2);
        return flashed;
    }

    static inline HWND front = nullptr;
    static inline std::vector<FLASHWINFO> flashed;

private:
    static HWND WINAPI Foreground() { return front; }
    static BOOL WINAPI Flash(FLASHWINFO* flash) {
        flashed.push_back(*flash);
        return FALSE;
    }
};

TEST_F(RunWindowLife, TheWindowRepaintsMovesAndAnswersWhileAScaleIsSilent) {
    SetSilent(1);
    TControlRecorder form;
    TControlRecorder host;
    std::thread asker;
    int answers = 0;
    ThenStart("SaveBtn");
    script_.When([&] { return IsRunning() && Scale(1).State().requests.total == 1; },
                 [&] {
                     form.Watch(Form(), "form");
                     host.Watch(frame_, "host");
                     SetWindowPos(Form(), nullptr, 33, 44, 777, 555, SWP_NOZORDER);
                     for (const HWND window : {Form(), frame_})
                         InvalidateRect(window, nullptr, TRUE);
                     asker = std::thread([this, &answers] {
                         for (int i = 0; i < 20; ++i) {
                             DWORD_PTR result = 0;
                             answers += SendMessageTimeoutW(frame_, WM_NULL, 0, 0, SMTO_NORMAL,
                                                            2000, &result) != 0
                                            ? 1
                                            : 0;
                         }
                     });
                 });
    script_.When([&] { return form.paintings > 0 && host.paintings > 0; },
                 [&] {
                     RECT rect{};
                     GetWindowRect(Form(), &rect);
                     EXPECT_EQ(rect.left, 33);
                     EXPECT_EQ(rect.top, 44);
                     EXPECT_EQ(rect.right - rect.left, 777);
                     EXPECT_EQ(rect.bottom - rect.top, 555);
                     // All of that has happened within the first time-out.
                     EXPECT_EQ(Scale(1).State().requests.total, 1);
                     EXPECT_TRUE(IsRunning());
                     script_.Measure();
                 });
    int turns = 0;
    DWORD gap = 0;
    script_.When([&] { return Scale(1).State().requests.total == 2; },
                 [&] {
                     turns = script_.Turns();
                     gap = script_.LongestGap();
                 });
    ThenClose();
    Show(2);
    asker.join();
    EXPECT_EQ(answers, 20);
    std::printf("silent scale: %d turns of the message loop, longest gap %u ms\n", turns,
                static_cast<unsigned>(gap));
    // On a busy computer the turns are few; an interface thread that waits for the run makes none.
    EXPECT_GE(turns, 10);
    EXPECT_NE(log_.find("Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 1000, Fail set Weight mode: "
                        "[ReadResponce][TCP] Fail read data (127.0.0.1:" +
                        std::to_string(scales_[1].TCPPort) +
                        ") - Read timeout occured\r\n"
                        "Грешка при запис артикули във везна: Везна 1\r\n"),
              std::string::npos)
        << log_;
}

TEST_F(RunWindowEnd, TheHostsTaskBarButtonFlashesUntilTheHostIsInFront) {
    // Belongs to the system.
    front = GetDesktopWindow();
    const std::vector<FLASHWINFO> flashes = FlashesOfARun();
    ASSERT_EQ(flashes.size(), 1U);
    EXPECT_EQ(flashes[0].cbSize, sizeof(FLASHWINFO));
    EXPECT_EQ(flashes[0].hwnd, frame_);
    EXPECT_EQ(flashes[0].dwFlags, DWORD{FLASHW_TRAY | FLASHW_TIMERNOFG});
    EXPECT_EQ(flashes[0].dwTimeout, 0U);
}

TEST_F(RunWindowEnd, TheButtonFlashesAlsoWhenNoWindowIsInFront) {
    EXPECT_EQ(FlashesOfARun().size(), 1U);
}

TEST_F(RunWindowEnd, NothingFlashesWhileTheHostIsInFront) {
    front = frame_;
    EXPECT_TRUE(FlashesOfARun().empty());
}

TEST_F(RunWindowEnd, TheButtonFlashesForAnError) {
    TArticle article = Goods(1, "A");
    article.bestBefore = "x";
    SetArticles({article});
    ThenStart("SaveBtn");
    std::size_t underTheBox = 0;
    script_.When([] { return Box() != nullptr; }, [&] { underTheBox = flashed.size(); });
    ThenAnswer(IDOK);
    script_.When([] { return Box() == nullptr; }, [] { PostKey(VK_ESCAPE); });
    Show(2);
    EXPECT_EQ(underTheBox, 1U);
    EXPECT_EQ(flashed.size(), 1U);
}

TEST_F(RunWindowEnd, NothingFlashesWhenTheUserHasClosedTheWindow) {
    SetArticles(ManyGoods(200));
    ThenStart("SaveBtn");
    script_.When([&] { return PriceWrites(1) > 0; }, [] { PostKey(VK_ESCAPE); });
    Show(2);
    EXPECT_TRUE(flashed.empty());
}

TEST_F(RunWindowLife, EscDuringARunEndsItAndThenClosesTheWindow) {
    SetArticles(ManyGoods(200));
    ThenStart("SaveBtn");
    script_.When([&] { return PriceWrites(1) > 0; },
                 [this] {
                     NoteThreads();
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    ExpectThreadGone();
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
    EXPECT_TRUE(scales_[1].Checked);
    EXPECT_LT(PriceWrites(1), 200);
}

TEST_F(RunWindowLife, TheCloseBoxDuringARunEndsItAndThenClosesTheWindow) {
    SetArticles(ManyGoods(200));
    scales_[2].Checked = true;
    ThenStart("SaveBtn");
    // An impatient user clicks twice.
    script_.When([&] { return PriceWrites(1) > 0; },
                 [this] {
                     NoteThreads();
                     for (int i = 0; i < 2; ++i)
                         PostMessageW(Form(), WM_SYSCOMMAND, SC_CLOSE, 0);
                 });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    ExpectThreadGone();
    EXPECT_LT(PriceWrites(1), 200);
    EXPECT_TRUE(Scale(2).Requests().empty());
    EXPECT_TRUE(scales_[2].Checked);
}

TEST_F(RunWindowLife, TheListWindowMayGoDuringARun) {
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); },
                 [this] {
                     NoteThreads();
                     DestroyWindow(owner_);
                 });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    ExpectThreadGone();
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
}

TEST_F(RunWindowLife, TheMainWindowMayGoDuringARun) {
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); },
                 [this] {
                     NoteThreads();
                     DestroyWindow(frame_);
                 });
    Show(2);
    ExpectThreadGone();
}

TEST_F(RunWindowLife, TheProgramMayEndDuringARun) {
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); },
                 [this] {
                     NoteThreads();
                     PostQuitMessage(5);
                 });
    Show(2);
    ExpectThreadGone();
    MSG message{};
    EXPECT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), 0);
    EXPECT_EQ(message.wParam, 5U);
}

TEST_F(RunWindowLife, AWindowClosedUnderTheQuestionStartsNoRun) {
    asio::io_context io;
    asio::ip::tcp::acceptor listener(io, {asio::ip::make_address("127.0.0.1"), 0});
    listener.non_blocking(true);
    scales_[1].TCPPort = listener.local_endpoint().port();
    ThenStart("DeleteBtn");
    script_.When([] { return Box() != nullptr; },
                 [] {
                     SendMessageW(Form(), WM_CLOSE, 0, 0);
                     Click(GetDlgItem(Box(), IDYES));
                 });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    // Not even a connection was made.
    std::error_code error;
    listener.accept(error);
    EXPECT_EQ(error, asio::error::would_block);
}

TEST_F(RunWindowLife, TheListWindowMayGoUnderTheQuestionAndNothingIsDeleted) {
    ThenStart("DeleteBtn");
    script_.When([] { return Box() != nullptr; }, [this] { DestroyWindow(owner_); });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_TRUE(Scale(1).Requests().empty());
}

}  // namespace
}  // namespace tolvane::test
