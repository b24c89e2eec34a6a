#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "tests/support/database/CuttingProxy.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

// Starts with one argument spoiled and expects one error box, no window and the given number of
// completion messages.
class StartFailureTest : public testing::Test {
protected:
    explicit StartFailureTest(const std::string& database = "shop.fdb")
        : session_(database), database_(*session_.connection.Database()) {}

    void Start(HWND application, std::uint32_t* messageId, HWND mainForm,
               const THostDatabase* database) {
        const TBoxAnswerer answerer;
        session_.module.Start(application, 17, messageId, mainForm, database, nullptr,
                              {nullptr, nullptr});
        RunLoopDry();
        ASSERT_EQ(answerer.Seen().size(), 1U);
        box_ = answerer.Seen()[0];
        EXPECT_EQ(box_.icon, TBoxIcon::Error);
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_EQ(box_.buttons, std::vector<int>{IDOK});
        EXPECT_EQ(box_.text.rfind("Грешка :\r", 0), 0U) << box_.text;
        EXPECT_GT(box_.text.size(), std::string("Грешка :\r").size());
    }
    void StartWith(const THostDatabase* database) {
        Start(session_.host.Frame(), &session_.messageId, session_.host.Frame(), database);
    }
    bool BoxTells(const std::string& part) const {
        return box_.text.find(part) != std::string::npos;
    }
    int Completions() const { return session_.host.Received(RegisterWindowMessageA("DLL_17")); }

    TSession session_;
    THostDatabase database_;
    TSeenBox box_;
};

// A load that finds no article leaves its transaction active.
class StartBesideAnEmptyList : public StartFailureTest {
protected:
    StartBesideAnEmptyList() : StartFailureTest("bare.fdb") { session_.Start(); }
};

}  // namespace

TEST_F(StartFailureTest, NullDatabase) {
    StartWith(nullptr);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, DatabaseRecordOfAnotherSize) {
    database_.Size = 8;
    StartWith(&database_);
    EXPECT_TRUE(BoxTells("8"));
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, NullAttachmentCell) {
    database_.Handle = nullptr;
    StartWith(&database_);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, AttachmentThatIsNotOpen) {
    isc_db_handle closed{};
    database_.Handle = &closed;
    StartWith(&database_);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, ClientLibraryThatTheProcessHasNotLoaded) {
    database_.ClientLibrary = "no-such-client.dll";
    StartWith(&database_);
    EXPECT_TRUE(BoxTells("no-such-client.dll"));
    EXPECT_EQ(GetModuleHandleW(L"no-such-client.dll"), nullptr);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, LibraryThatIsNoClient) {
    database_.ClientLibrary = "kernel32.dll";
    StartWith(&database_);
    EXPECT_TRUE(BoxTells("kernel32.dll"));
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, NullMessageCell) {
    Start(session_.host.Frame(), nullptr, session_.host.Frame(), &database_);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, ApplicationThatIsNoWindow) {
    Start(reinterpret_cast<HWND>(0x12344), &session_.messageId, session_.host.Frame(), &database_);
}

TEST_F(StartFailureTest, NullApplication) {
    Start(nullptr, &session_.messageId, session_.host.Frame(), &database_);
}

TEST_F(StartFailureTest, MainFormThatIsNoWindow) {
    Start(session_.host.Frame(), &session_.messageId, reinterpret_cast<HWND>(0x12344), &database_);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, MainFormThatHasGone) {
    HWND gone = nullptr;
    {
        const THostFrame frame;
        gone = frame.Frame();
    }
    Start(gone, &session_.messageId, gone, &database_);
    EXPECT_TRUE(BoxTells("AppHandle"));
    Start(session_.host.Frame(), &session_.messageId, gone, &database_);
    EXPECT_TRUE(BoxTells("MainForm"));
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, NullMainForm) {
    Start(session_.host.Frame(), &session_.messageId, nullptr, &database_);
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, MainFormWithoutAnMdiClient) {
    const HWND plain = CreateWindowW(L"Static", L"plain", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100,
                                     nullptr, nullptr, nullptr, nullptr);
    Start(session_.host.Frame(), &session_.messageId, plain, &database_);
    DestroyWindow(plain);
    EXPECT_TRUE(BoxTells("MDI"));
    EXPECT_EQ(Completions(), 1);
}

TEST_F(StartFailureTest, DatabaseFailureClosesTheWindowAndCompletesTwice) {
    const TConnection empty("empty.fdb");
    StartWith(empty.Database());
    // The server's own message names the missing table.
    EXPECT_TRUE(BoxTells("N_CURRENCY"));
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartFailureTest, FailureOfASecondStartClosesTheOpenWindow) {
    session_.Start();
    ASSERT_NE(session_.List(), nullptr);
    const TConnection empty("empty.fdb");
    StartWith(empty.Database());
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartFailureTest, BadArgumentsOfASecondStartCloseTheOpenWindow) {
    session_.Start();
    database_.Size = 8;
    StartWith(&database_);
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartFailureTest, ABadApplicationOfASecondStartStillCompletesToTheFirst) {
    session_.Start();
    Start(nullptr, &session_.messageId, session_.host.Frame(), &database_);
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartFailureTest, ALostConnectionOfASecondStartClosesTheOpenWindow) {
    session_.Start();
    session_.connection.ShutDown();
    StartWith(&database_);
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartFailureTest, AConnectionThatDiesBeforeTheFirstQueryIsReportedOnce) {
    TCuttingProxy proxy(TConnection::Server());
    const TConnection dying("shop.fdb", proxy.Address());
    // The server's next answer is to the start of the transaction.
    proxy.CutAfterNextAnswer();
    StartWith(dying.Database());
    EXPECT_TRUE(proxy.HasCut());
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartBesideAnEmptyList, AConnectionThatTheServerHasEndedIsReportedOnce) {
    TConnection("bare.fdb").EndOthers();
    StartWith(&database_);
    EXPECT_EQ(Completions(), 2);
}

TEST_F(StartBesideAnEmptyList, BadArgumentsAreReportedOnceWhenTheConnectionHasEndedToo) {
    TConnection("bare.fdb").EndOthers();
    database_.Size = 8;
    StartWith(&database_);
    EXPECT_TRUE(BoxTells("8"));
    EXPECT_EQ(Completions(), 2);
}

// Nothing failed to start here, so the module reports what the user's click could not do.
TEST_F(StartBesideAnEmptyList, ClosingTheListReportsThatTheConnectionHasEnded) {
    TConnection("bare.fdb").EndOthers();
    const TBoxAnswerer answerer;
    session_.CloseList();
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].icon, TBoxIcon::Error);
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(Completions(), 1);
}

TEST(StartWithADefaultLibrary, TakesTheLoadedFbclient) {
    TSession session;
    THostDatabase database = *session.connection.Database();
    database.ClientLibrary = nullptr;
    session.module.Start(session.host.Frame(), 17, &session.messageId, session.host.Frame(),
                         &database, nullptr, {nullptr, nullptr});
    EXPECT_EQ(session.Grid().RowCount(), 6);
}

TEST(LoadFailure, ShowsTheErrorAndKeepsTheRowsBeforeIt) {
    TSession session("broken.fdb");
    const TBoxAnswerer answerer;
    session.Start();
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].text.rfind("[REFRESH DATA]: ", 0), 0U) << answerer.Seen()[0].text;
    ASSERT_NE(session.List(), nullptr);
    EXPECT_EQ(session.Grid().RowCount(), 1);
    EXPECT_EQ(session.Completions(), 0);
}

// A list over a connection that dies in its next load, and works once the host has connected again.
class DyingConnection : public testing::Test {
protected:
    DyingConnection() {
        session_.module.Start(session_.host.Frame(), 17, &session_.messageId, session_.host.Frame(),
                              dying_.Database(), nullptr, {nullptr, nullptr});
    }
    void ExpectThatARefreshFails() {
        const TBoxAnswerer answerer;
        const ULONGLONG begin = GetTickCount64();
        session_.Click("RefreshBtn");
        EXPECT_LT(GetTickCount64() - begin, 10000U);
        ASSERT_EQ(answerer.Seen().size(), 1U);
        EXPECT_EQ(answerer.Seen()[0].text.rfind("[REFRESH DATA]: ", 0), 0U)
            << answerer.Seen()[0].text;
        EXPECT_EQ(session_.Grid().RowCount(), 0);
    }
    void ExpectThatARefreshWorksAfterReconnecting() {
        const TBoxAnswerer answerer;
        dying_.Renew();
        session_.Click("RefreshBtn");
        EXPECT_TRUE(answerer.Seen().empty());
        EXPECT_EQ(session_.Grid().RowCount(), 6);
    }

    TCuttingProxy proxy_{TConnection::Server()};
    TConnection dying_{"shop.fdb", proxy_.Address()};
    TSession session_;
};

TEST_F(DyingConnection, ThatIsCutInTheMiddleOfARefresh) {
    ASSERT_EQ(session_.Grid().RowCount(), 6);
    proxy_.BeforePiece(2, [this] { proxy_.CutNow(); });
    ExpectThatARefreshFails();
    ExpectThatARefreshWorksAfterReconnecting();
}

TEST_F(DyingConnection, WhoseAnswersAreLostUntilTheHostAbortsIt) {
    ASSERT_EQ(session_.Grid().RowCount(), 6);
    proxy_.SwallowFromPiece(2);
    std::jthread host([this] {
        while (!proxy_.Swallows())
            std::this_thread::yield();
        dying_.Abort();
    });
    ExpectThatARefreshFails();
    host.join();
    ExpectThatARefreshWorksAfterReconnecting();
}

TEST(IndexFailure, IsReportedAndTheLoadGoesOn) {
    TSession session("noindex.fdb");
    const TBoxAnswerer answerer;
    session.Start();
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].text.rfind("[FCheckDB failed]: ", 0), 0U)
        << answerer.Seen()[0].text;
    EXPECT_EQ(session.Grid().RowCount(), 6);
}

TEST(EmptyDatabase, OpensAnEmptyListWithoutAnyMessage) {
    TSession session("bare.fdb");
    const TBoxAnswerer answerer;
    session.Start();
    EXPECT_TRUE(answerer.Seen().empty());
    EXPECT_EQ(session.Grid().RowCount(), 0);
    session.Click("RefreshBtn");
    session.CloseList();
    EXPECT_TRUE(answerer.Seen().empty());
    EXPECT_EQ(session.Completions(), 1);
}

// An empty load leaves its transaction open; the connection may be gone when a host ends.
TEST(EmptyDatabase, FrameThatGoesAfterTheConnectionIsSilent) {
    TSession session("bare.fdb");
    const TBoxAnswerer answerer;
    session.Start();
    TConnection("bare.fdb").EndOthers();
    DestroyWindow(session.host.Frame());
    RunLoopDry();
    EXPECT_TRUE(answerer.Seen().empty());
}

}  // namespace tolvane::test
