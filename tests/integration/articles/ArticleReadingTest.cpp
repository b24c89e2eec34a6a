#include "articles/ArticleReading.h"

#include <gtest/gtest.h>

#include "database/DatabaseError.h"
#include "tests/integration/articles/LoadFixture.h"
#include "tests/support/database/CuttingProxy.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using TRows = std::vector<std::vector<std::string>>;

class ArticleReadingTest : public LoadTest {
protected:
    TArticleReading Read() {
        return ReadArticles(Library(), database_->Host().Handle(), clock_, regional_);
    }
    std::string ErrorOfReading() {
        try {
            Read();
        } catch (const TDatabaseError& error) {
            return ToUtf8(error.what());
        }
        return {};
    }
    // Every field of every row, in order.
    TRows RowsOf(const TArticleTable& articles) const {
        TRows rows;
        for (const TRowId row : articles.Order()) {
            rows.emplace_back();
            for (const TFieldInfo& info : detail::kFieldTable)
                rows.back().push_back(ToUtf8(articles.AsText(row, info.field, regional_)));
        }
        return rows;
    }
    std::string Active() {
        return database_->Host().Ask(
            "select count(*) - 1 from MON$TRANSACTIONS where MON$ATTACHMENT_ID = "
            "current_connection");
    }
    // How many transactions the database has started so far, without the asking one.
    int Started() {
        return std::stoi(
            database_->Host().Ask("select MON$NEXT_TRANSACTION - 1 from MON$DATABASE"));
    }
};

TEST_F(ArticleReadingTest, HoldsTheRowsOfTheWindowsLoader) {
    database_ = std::make_unique<TTestDatabase>(
        Schema() + ReadFile(std::filesystem::path(TOLVANE_DEMO_FOLDER) / "shop.sql"));
    Connect();
    Loader().ReadBaseCurrency();
    Loader().LoadArticles();
    ASSERT_EQ(articles_.RowCount(), 305U);

    const TArticleReading reading = Read();
    EXPECT_EQ(RowsOf(reading.articles), RowsOf(articles_));
    EXPECT_EQ(reading.baseCurrency, "EUR");
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleReadingTest, MarksThePromotionsThatTheClockMakesActive) {
    AddArticle(1);
    AddPromotion(10, 1, {{"PR_DAYOFWEEK", "'0010000'"}, {"PR_PRICE", "3.5"}});
    const TArticleReading wednesday = Read();
    EXPECT_TRUE(wednesday.articles.Boolean(0, TField::HasActivePromotion));
    EXPECT_EQ(wednesday.articles.Float(0, TField::PromoPrice), 3.5);
    clock_.now.date.day = 9;
    EXPECT_FALSE(Read().articles.Boolean(0, TField::HasActivePromotion));
}

TEST_F(ArticleReadingTest, TellsTheCurrencyAndTheKindOfEachActivePromotion) {
    AddArticle(1);
    AddArticle(2);
    AddArticle(3);
    AddPromotion(10, 1, {{"PR_PACKET_TYPE", "1"}, {"PR_CURRENCY", "2"}});
    AddPromotion(11, 2, {{"PR_PACKET_TYPE", "4"}, {"PR_CURRENCY", "1"}});
    AddPromotion(12, 3, {{"PR_DAYOFWEEK", "'0000000'"}});
    const TArticleReading reading = Read();
    ASSERT_EQ(reading.promotions.size(), 2U);
    EXPECT_EQ(reading.promotions[0].row, reading.articles.RowAt(0));
    EXPECT_EQ(reading.promotions[0].currency, "EUR");
    EXPECT_FALSE(reading.promotions[0].isPriceChange);
    EXPECT_EQ(reading.promotions[1].row, reading.articles.RowAt(1));
    EXPECT_EQ(ToUtf8(reading.promotions[1].currency), "лв");
    EXPECT_TRUE(reading.promotions[1].isPriceChange);
}

TEST_F(ArticleReadingTest, IsOneTransaction) {
    AddArticle(1);
    const int before = Started();
    Read();
    // Asking is one too.
    EXPECT_EQ(Started() - before, 2);
    Loader().ReadBaseCurrency();
    Loader().LoadArticles();
    EXPECT_EQ(Started() - before, 6);
}

// The loader itself, as the reading uses it: between articles and promotions somebody changes both.
TEST_F(ArticleReadingTest, ArticlesAndPromotionsAreOfOneMoment) {
    AddArticle(1);
    const auto promotedAfterAChange = [&](bool inCallersTransaction) {
        TTransaction transaction(Library(), database_->Host().Handle());
        TQuery query(transaction);
        TArticleLoader loader({transaction, query, articles_, sort_, clock_,
                               [this] { return regional_; }, view_, view_, inCallersTransaction});
        bool first = true;
        view_.onEvent = [&](const std::string& event) {
            if (event.starts_with("show ") && std::exchange(first, false))
                database_->Attach()->Run("update PROMOTIONS set PR_PRICE = PR_PRICE + 1");
        };
        if (inCallersTransaction) transaction.Start();
        loader.FillTable();
        view_.onEvent = nullptr;
        return Float(0, TField::PromoPrice);
    };
    AddPromotion(10, 1, {{"PR_PRICE", "3"}});
    EXPECT_EQ(promotedAfterAChange(false), 4);
    EXPECT_EQ(promotedAfterAChange(true), 4);
    EXPECT_EQ(Read().articles.Float(0, TField::PromoPrice), 5);
}

TEST_F(ArticleReadingTest, NoArticlesAreNoRowsAndNoError) {
    const TArticleReading reading = Read();
    EXPECT_EQ(reading.articles.RowCount(), 0U);
    EXPECT_EQ(ToUtf8(reading.baseCurrency), "лв");
    EXPECT_EQ(ToUtf8(reading.baseCurrencyName), "Български лев");
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleReadingTest, WithoutABaseCurrencyItIsEmpty) {
    Run("update N_CURRENCY set CURR_ISBASE_ = 0");
    EXPECT_EQ(Read().baseCurrency, "");
    EXPECT_EQ(Read().baseCurrencyName, "");
}

TEST_F(ArticleReadingTest, WhatTheWindowWouldShowIsThrownWithTheServersStatus) {
    AddArticle(1);
    Run("drop table PROMOTIONS");
    try {
        Read();
        ADD_FAILURE() << "read";
    } catch (const TDatabaseError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("Dynamic SQL Error\n")) << error.what();
        EXPECT_NE(std::string(error.what()).find("PROMOTIONS"), std::string::npos) << error.what();
        EXPECT_EQ(error.SqlCode(), -204);
    }
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleReadingTest, AValueThatDoesNotConvertIsThrown) {
    Use(Schema({{"PLU_SCALE_NUMB integer", "PLU_SCALE_NUMB varchar(10)"}}));
    AddArticle(1, {{"PLU_SCALE_NUMB", "'12а'"}});
    EXPECT_EQ(ErrorOfReading(), "Колона \"PLU_SCALE_NUMB\": \"12а\" не е цяло число");
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleReadingTest, AServerThatIsGoneInMidReadingIsThrown) {
    AddArticle(1);
    AddManyArticles();
    TCuttingProxy proxy(Server().address);
    TLogin login;
    login.address = proxy.Address();
    database_->Reconnect(login);
    proxy.CutAfter(60000);
    const std::string error = ErrorOfReading();
    EXPECT_TRUE(proxy.HasCut());
    EXPECT_NE(error.find("onnection"), std::string::npos) << error;
}

TEST_F(ArticleReadingTest, TheIndexIsCreatedOnce) {
    void* const host = database_->Host().Handle();
    EXPECT_FALSE(HasArticleIndex(Library(), host));
    EXPECT_TRUE(CreateArticleIndex(Library(), host));
    EXPECT_TRUE(HasArticleIndex(Library(), host));
    EXPECT_EQ(database_->Host().Ask("select trim(RDB$FIELD_NAME) from RDB$INDEX_SEGMENTS where "
                                    "RDB$INDEX_NAME = 'SUPPLIES_PLUCONTROL_PLUIDX'"),
              "SPCTRL_PLUNUMB");
    EXPECT_FALSE(CreateArticleIndex(Library(), host));
    EXPECT_EQ(Active(), "0");
}

TEST_F(ArticleReadingTest, ReadingCreatesNoIndex) {
    AddArticle(1);
    Read();
    EXPECT_FALSE(HasArticleIndex(Library(), database_->Host().Handle()));
}

TEST_F(ArticleReadingTest, AnIndexThatCannotBeCreatedIsThrownAndNothingIsLeft) {
    Run("create index SUPPLIES_PLUCONTROL_PLUIDX on PLUES (PLU_NUMB)");
    EXPECT_THROW(CreateArticleIndex(Library(), database_->Host().Handle()), TDatabaseError);
    EXPECT_EQ(Active(), "0");
}

}  // namespace
}  // namespace tolvane::test
