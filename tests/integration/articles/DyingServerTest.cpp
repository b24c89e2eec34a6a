// A real server that is killed, or that a network hides, at each moment of a load. The server is
// the test's own.

#include <gtest/gtest.h>
#include <ibase.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>

#include "articles/ArticleSession.h"
#include "database/DatabaseError.h"
#include "tests/integration/articles/LoadFixture.h"
#include "tests/support/database/CuttingProxy.h"
#include "tests/support/database/OwnServer.h"

namespace tolvane::test {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestFailure{10};
constexpr std::size_t kArticles = 1000;
// A load sends at least: transaction, statement, fetch, commit, and the same for the promotions.
constexpr int kFewestPieces = 8;

// Fails the test when `action` takes longer than a failure may.
template <class Action>
void ExpectToEndSoon(Action action) {
    const auto begin = steady_clock::now();
    action();
    EXPECT_LT(steady_clock::now() - begin, kLongestFailure);
}

TOwnServer& DyingServer() {
    static TOwnServer server;
    return server;
}

class DyingServerTest : public LoadTest {
protected:
    DyingServerTest() {
        AddArticle(1);
        AddManyArticles();
        AddPromotion(10, 1);
        DyingServer().Start();
    }
    void ConnectTo(const std::string& address) {
        TLogin login;
        login.address = address;
        database_->Reconnect(login);
        Connect();
    }
    // The texts of the errors that have been shown.
    std::vector<std::string> Errors() const {
        std::vector<std::string> errors;
        for (const std::string& event : view_.events)
            if (event.starts_with("error ")) errors.push_back(event);
        return errors;
    }
    // Loads, and checks what must hold whatever has happened; whether an error was shown.
    bool LoadFails() {
        ExpectToEndSoon([this] { LoadEvents(); });
        EXPECT_FALSE(transaction_->IsActive());
        EXPECT_FALSE(query_->IsOpen());
        const std::vector<std::string> errors = Errors();
        EXPECT_LE(errors.size(), 1U);
        for (const std::string& error : errors)
            EXPECT_TRUE(error.starts_with("error [REFRESH DATA]: ")) << error;
        const std::size_t rows = articles_.RowCount();
        if (errors.empty()) {
            EXPECT_EQ(rows, kArticles);
            EXPECT_EQ(Promoted(), 1);
        } else {
            EXPECT_TRUE(rows == 0 || rows == kArticles) << rows;
        }
        return !errors.empty();
    }
    std::ptrdiff_t Promoted() const {
        return std::ranges::count_if(articles_.Order(), [this](TRowId row) {
            return articles_.Boolean(row, TField::HasActivePromotion);
        });
    }
    void ExpectThatALoadWorksAgain() {
        DyingServer().Start();
        ConnectTo(DyingServer().Address());
        EXPECT_FALSE(LoadFails());
    }
    void OpenAllArticles() {
        transaction_->Start();
        query_->SetText("select PLU_NUMB from PLUES order by PLU_NUMB");
        query_->Open();
    }
    // Fetches up to so many rows, the opened one included; how many there were.
    std::size_t FetchUpTo(std::size_t rows) {
        std::size_t count = 1;
        while (count < rows && query_->FetchLatest())
            ++count;
        return count;
    }
};

TEST_F(DyingServerTest, KilledBeforeAnyPieceOfALoadItIsToldAndNoPartOfTheListIsLeft) {
    int piece = 0;
    int told = 0;
    do {
        DyingServer().Start();
        TCuttingProxy proxy(DyingServer().Address());
        ConnectTo(proxy.Address());
        proxy.BeforePiece(++piece, [] { DyingServer().Kill(); });
        if (LoadFails()) ++told;
    } while (!DyingServer().IsRunning() && !HasFailure());
    RecordProperty("pieces", piece - 1);
    EXPECT_GE(told, kFewestPieces);
    EXPECT_LE(piece - 1 - told, 2) << "only what nobody waits for is not told";
    ExpectThatALoadWorksAgain();
}

TEST_F(DyingServerTest, KilledAfterARowTheEndOfTheRowsIsNeverReportedTooEarly) {
    for (const std::size_t rows :
         {std::size_t{1}, std::size_t{2}, kArticles / 2, kArticles - 1, kArticles}) {
        DyingServer().Start();
        ConnectTo(DyingServer().Address());
        OpenAllArticles();
        std::size_t count = FetchUpTo(rows);
        ASSERT_EQ(count, rows);
        DyingServer().Kill();
        ExpectToEndSoon([&] {
            try {
                while (query_->FetchLatest())
                    ++count;
                EXPECT_EQ(count, kArticles);
            } catch (const TDatabaseError& error) {
                EXPECT_NE(error.ErrorCode(), 0) << error.what();
            }
            EXPECT_THROW(transaction_->Commit(), TDatabaseError) << rows;
        });
        query_->Close();
    }
    ExpectThatALoadWorksAgain();
}

TEST_F(DyingServerTest, KilledBeforeAStatementItAndTheCommitSayIt) {
    ConnectTo(DyingServer().Address());
    transaction_->Start();
    DyingServer().Kill();
    query_->SetText("select PLU_NUMB from PLUES");
    ExpectToEndSoon([this] {
        EXPECT_THROW(query_->Open(), TDatabaseError);
        EXPECT_THROW(transaction_->Commit(), TDatabaseError);
        // What is gone is rolled back, so the library may call it done.
        try {
            transaction_->Rollback();
        } catch (const TDatabaseError&) {
        }
        EXPECT_FALSE(transaction_->IsActive());
        EXPECT_THROW(transaction_->Start(), TDatabaseError);
    });
    ExpectThatALoadWorksAgain();
}

TEST_F(DyingServerTest, KilledWithAnOpenQueryEverythingCanBeClosed) {
    ConnectTo(DyingServer().Address());
    OpenAllArticles();
    DyingServer().Kill();
    ExpectToEndSoon([this] {
        loader_.reset();
        query_.reset();
        transaction_.reset();
    });
    DyingServer().Start();
    ExpectToEndSoon([this] { ConnectTo(DyingServer().Address()); });
    EXPECT_FALSE(LoadFails());
}

// A host may connect again without starting the operation anew.
TEST_F(DyingServerTest, ARefreshWorksWhenTheHostHasConnectedAgain) {
    ConnectTo(DyingServer().Address());
    TArticleSession session(view_, clock_, [this] { return regional_; });
    session.Connect(nullptr, database_->Host().Handle(), view_);
    session.LoadArticles();
    ASSERT_EQ(session.Articles().RowCount(), kArticles);
    DyingServer().Kill();
    view_.events.clear();
    ExpectToEndSoon([&] { session.Refresh(); });
    EXPECT_EQ(Errors().size(), 1U);
    EXPECT_EQ(session.Articles().RowCount(), 0U);
    DyingServer().Start();
    // The connection is dead for good.
    session.Refresh();
    EXPECT_EQ(Errors().size(), 2U);
    database_->Host().Renew();
    view_.events.clear();
    session.Refresh();
    EXPECT_TRUE(Errors().empty());
    EXPECT_EQ(session.Articles().RowCount(), kArticles);
    session.End();
}

// The module sets no bound to a connection that is the host's. A host may end the wait.
class SilentServerTest : public DyingServerTest {
protected:
    // Aborts the host's connection as soon as nothing is passed on any more.
    std::jthread AbortWhen(std::function<bool()> silent) {
        return std::jthread([silent = std::move(silent), handle = database_->Host().Handle()] {
            while (!silent())
                std::this_thread::yield();
            ISC_STATUS_ARRAY status{};
            fb_cancel_operation(status, static_cast<isc_db_handle*>(handle), fb_cancel_abort);
        });
    }
};

TEST_F(SilentServerTest, ALoadWhoseAnswersAreLostEndsWhenTheHostAbortsItsConnection) {
    for (const int piece : {1, 3, kFewestPieces}) {
        TCuttingProxy proxy(DyingServer().Address());
        ConnectTo(proxy.Address());
        proxy.SwallowFromPiece(piece);
        const std::jthread host = AbortWhen([&] { return proxy.Swallows(); });
        EXPECT_TRUE(LoadFails()) << piece;
    }
    ExpectThatALoadWorksAgain();
}

}  // namespace
}  // namespace tolvane::test
