#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>

#include "articles/ArticleSession.h"
#include "tests/integration/articles/LoadFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using TEvents = std::vector<std::string>;
using TIntegers = std::vector<int>;

// A session on the host's connection, with three articles that are sold at 5.
class ArticleSessionLoadTest : public LoadTest {
protected:
    ArticleSessionLoadTest() { ConnectSession(); }

    void ConnectSession() { session_.Connect(nullptr, database_->Host().Handle(), view_); }
    void AddThree() {
        AddArticle(1, {{"PLU_NAME", "'Ябълки'"}});
        AddArticle(2, {{"PLU_NAME", "'Круши'"}});
        AddArticle(3, {{"PLU_NAME", "'Сок от ябълки'"}});
    }
    TIntegers Numbers() const {
        TIntegers numbers;
        for (const TRowId row : session_.Articles().Order())
            numbers.push_back(session_.Articles().Integer(row, TField::PLU_NUMB));
        return numbers;
    }
    std::optional<int> NumberOf(std::optional<TRowId> row) const {
        if (!row) return std::nullopt;
        return session_.Articles().Integer(*row, TField::PLU_NUMB);
    }
    std::string ShownPrice() const {
        return ToUtf8(
            session_.DisplayText(session_.Articles().RowAt(0), TField::PLU_SELL_PRICE_LV));
    }
    // The host's connection counts its own transactions, the one that asks included.
    std::string Active() {
        return database_->Host().Ask(
            "select count(*) - 1 from MON$TRANSACTIONS where MON$ATTACHMENT_ID = "
            "current_connection");
    }
    // The server ends the host's connection.
    void KillConnection() {
        const std::string id = database_->Host().Ask("select current_connection from RDB$DATABASE");
        database_->Attach()->Run("delete from MON$ATTACHMENTS where MON$ATTACHMENT_ID = " + id);
    }

    TArticleSession session_{view_, clock_, [this] { return regional_; }};
};

TEST_F(ArticleSessionLoadTest, ShowsNoRowsUntilAllAreThere) {
    AddThree();
    std::vector<std::size_t> shown;
    view_.onEvent = [&](const std::string& event) {
        shown.push_back(session_.ShownRowCount());
        EXPECT_TRUE(session_.IsLoading()) << event;
        EXPECT_TRUE(session_.IsBusy()) << event;
        EXPECT_FALSE(session_.MayEnd()) << event;
    };
    session_.LoadArticles();
    EXPECT_EQ(view_.events,
              (TEvents{"suspend", "show 2", "step", "step", "step", "show -1", "resume", "hide"}));
    EXPECT_EQ(shown, (std::vector<std::size_t>{0, 0, 0, 0, 0, 0, 3, 3}));
    EXPECT_FALSE(session_.IsBusy());
    EXPECT_TRUE(session_.MayEnd());
}

TEST_F(ArticleSessionLoadTest, AFailedLoadShowsTheRowsThatAreThereAndNoSort) {
    Use(Schema({{"PLU_SCALE_NUMB integer", "PLU_SCALE_NUMB varchar(10)"}}));
    ConnectSession();
    AddArticle(1, {{"PLU_SCALE_NUMB", "'11'"}});
    AddArticle(2, {{"PLU_SCALE_NUMB", "'x'"}});
    session_.ClickTitle(TField::PLU_NAME);
    session_.Refresh();
    EXPECT_EQ(view_.events.back(),
              "error [REFRESH DATA]: Колона \"PLU_SCALE_NUMB\": \"x\" не е цяло число");
    EXPECT_EQ(session_.ShownRowCount(), 1U);
    EXPECT_EQ(session_.Sort().field, std::nullopt);
    EXPECT_FALSE(session_.IsLoading());
}

TEST_F(ArticleSessionLoadTest, LoadsNothingWhileItIsHeldOrItsArticlesAreKept) {
    AddThree();
    {
        const TArticleSession::THold hold(session_);
        session_.LoadArticles();
    }
    {
        const auto kept = session_.KeepArticles();
        session_.LoadArticles();
    }
    EXPECT_EQ(view_.events, TEvents{});
    session_.LoadArticles();
    EXPECT_EQ(Numbers(), (TIntegers{1, 2, 3}));
}

TEST_F(ArticleSessionLoadTest, ALoadInsideALoadDoesNothing) {
    AddThree();
    view_.onEvent = [&](const std::string&) { session_.Refresh(); };
    session_.LoadArticles();
    EXPECT_EQ(std::count(view_.events.begin(), view_.events.end(), "suspend"), 1);
    EXPECT_EQ(Numbers(), (TIntegers{1, 2, 3}));
}

// By name: Круши, Сок от ябълки, Ябълки.
TEST_F(ArticleSessionLoadTest, AClickOnATitleSortsAndTheNextOneTurnsTheOrderRound) {
    AddThree();
    session_.LoadArticles();
    EXPECT_EQ(session_.Sort().field, TField::PLU_NUMB);
    EXPECT_TRUE(session_.ClickTitle(TField::PLU_NAME));
    EXPECT_EQ(Numbers(), (TIntegers{2, 3, 1}));
    EXPECT_TRUE(session_.Sort().ascending);
    EXPECT_TRUE(session_.ClickTitle(TField::PLU_NAME));
    EXPECT_EQ(Numbers(), (TIntegers{1, 3, 2}));
    EXPECT_FALSE(session_.Sort().ascending);
    session_.Refresh();
    EXPECT_EQ(Numbers(), (TIntegers{1, 2, 3}));
    EXPECT_EQ(session_.Sort().field, TField::PLU_NUMB);
    EXPECT_TRUE(session_.Sort().ascending);
}

TEST_F(ArticleSessionLoadTest, FindsTheFirstRowAndThenTheNextAndThenTheFirstAgain) {
    AddThree();
    session_.LoadArticles();
    session_.SelectSearchField(TField::PLU_NAME);
    session_.SetSearchText("ябълк"_cp1251);
    const std::optional<TRowId> first = session_.FindFirst();
    EXPECT_EQ(NumberOf(first), 1);
    EXPECT_EQ(NumberOf(session_.FindNext(std::nullopt)), 1);
    const std::optional<TRowId> next = session_.FindNext(first);
    EXPECT_EQ(NumberOf(next), 3);
    EXPECT_EQ(NumberOf(session_.FindNext(next)), 1);
    session_.SetSearchText("круши"_cp1251);
    EXPECT_EQ(NumberOf(session_.FindFirst()), 2);
    session_.SelectSearchField(TField::PLU_ECR_NAME);
    EXPECT_EQ(session_.FindFirst(), std::nullopt);
    EXPECT_EQ(session_.FindNext(first), std::nullopt);
}

TEST_F(ArticleSessionLoadTest, ShowsPricesInTheBaseCurrencyAndAsTheRegionWasAtTheLoad) {
    AddThree();
    session_.ReadBaseCurrency();
    session_.LoadArticles();
    EXPECT_EQ(ShownPrice(), "5,00 лв");
    regional_.decimalSeparator = '.';
    EXPECT_EQ(ShownPrice(), "5,00 лв");
    session_.LoadArticles();
    EXPECT_EQ(ShownPrice(), "5.00 лв");
}

// The base currency belongs to the connection.
TEST_F(ArticleSessionLoadTest, AnotherConnectionInTheSameCellIsAnotherOne) {
    AddThree();
    const auto other = database_->Attach();
    std::uintptr_t cell = ConnectionIn(database_->Host().Handle());
    session_.Connect(nullptr, &cell, view_);
    session_.ReadBaseCurrency();
    session_.LoadArticles();
    session_.Connect(nullptr, &cell, view_);
    EXPECT_EQ(ShownPrice(), "5,00 лв");
    cell = ConnectionIn(other->Handle());
    session_.Connect(nullptr, &cell, view_);
    EXPECT_EQ(ShownPrice(), "5,00 ");
}

TEST_F(ArticleSessionLoadTest, CheckDatabaseCreatesTheIndex) {
    session_.CheckDatabase();
    EXPECT_EQ(database_->Host().Ask("select count(*) from RDB$INDICES where RDB$INDEX_NAME = "
                                    "'SUPPLIES_PLUCONTROL_PLUIDX'"),
              "1");
    EXPECT_EQ(view_.events, TEvents{});
}

// A load without articles leaves its transaction open.
TEST_F(ArticleSessionLoadTest, EndCommitsWhatIsLeftOfATransaction) {
    Run("create table COMMITS (N integer)");
    Run("create trigger COMMITTED active on transaction commit as begin insert into COMMITS values "
        "(1); end");
    const auto host = database_->Attach();
    const auto commits = [&] { return database_->Attach()->Ask("select count(*) from COMMITS"); };
    session_.Connect(nullptr, host->Handle(), view_);
    session_.LoadArticles();
    const int before = std::stoi(commits());
    session_.End();
    // The query that counts the commits is committed too, but only after it has counted.
    EXPECT_EQ(std::stoi(commits()), before + 2);
    session_.LoadArticles();
    session_.Abandon();
    session_.End();
    EXPECT_EQ(std::stoi(commits()), before + 3);
    EXPECT_EQ(view_.events, (TEvents{"suspend", "suspend"}));
}

TEST_F(ArticleSessionLoadTest, EndLeavesNoTransaction) {
    session_.LoadArticles();
    EXPECT_EQ(Active(), "1");
    session_.End();
    EXPECT_EQ(Active(), "0");
    session_.LoadArticles();
    session_.Abandon();
    session_.End();
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleSessionLoadTest, EndDuringALoadLeavesTheLoadItsTransaction) {
    AddThree();
    view_.onEvent = [&](const std::string& event) {
        if (event == "step") session_.End();
    };
    session_.LoadArticles();
    EXPECT_EQ(Numbers(), (TIntegers{1, 2, 3}));
    EXPECT_EQ(std::count_if(view_.events.begin(), view_.events.end(),
                            [](const std::string& event) { return event.starts_with("error"); }),
              0);
}

TEST_F(ArticleSessionLoadTest, ACommitThatFailsAtTheEndIsShown) {
    session_.LoadArticles();
    KillConnection();
    session_.End();
    ASSERT_EQ(view_.events.size(), 2U);
    EXPECT_TRUE(view_.events[1].starts_with("error connection shutdown")) << view_.events[1];
}

TEST_F(ArticleSessionLoadTest, AnAbandonedSessionEndsWithoutAWord) {
    session_.LoadArticles();
    KillConnection();
    session_.Abandon();
    EXPECT_TRUE(session_.IsAbandoned());
    session_.End();
    EXPECT_EQ(view_.events, TEvents{"suspend"});
}

TEST_F(ArticleSessionLoadTest, AnAbandonedSessionMayEndDuringALoad) {
    AddThree();
    bool mayEnd = false;
    view_.onEvent = [&](const std::string& event) {
        if (event != "step") return;
        session_.Abandon();
        mayEnd = session_.MayEnd();
    };
    session_.LoadArticles();
    EXPECT_TRUE(mayEnd);
}

}  // namespace
}  // namespace tolvane::test
