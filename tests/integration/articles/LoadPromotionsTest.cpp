#include <gtest/gtest.h>

#include "tests/integration/articles/LoadFixture.h"

namespace tolvane::test {
namespace {

constexpr const char* kLongAgo = "'2001-03-09'";
constexpr const char* kFarAhead = "'2199-12-31'";

class LoadPromotionsTest : public LoadTest {
protected:
    // Loads one article at 5.00 with one promotion. Returns whether the promotion is active.
    bool IsActive(const TColumns& promotion) {
        Run("delete from PROMOTIONS");
        Run("delete from PLUES");
        AddArticle(1);
        AddPromotion(10, 1, promotion);
        Loader().LoadArticles();
        return articles_.Boolean(0, TField::HasActivePromotion);
    }
};

TEST_F(LoadPromotionsTest, AnActiveOneSetsPriceAndDates) {
    EXPECT_TRUE(IsActive({{"PR_FROMDATE", kLongAgo}, {"PR_TODATE", kFarAhead}}));
    EXPECT_EQ(Float(0, TField::PromoPrice), 3.99);
    EXPECT_EQ(Text(0, TField::PromoFromData), "09.03.2001");
    EXPECT_EQ(Text(0, TField::PromoToDate), "31.12.2199");
    EXPECT_EQ(Shown(0, TField::HasActivePromotion), "ДА");
    EXPECT_EQ(Integers(TField::PR_ID), std::vector<int>{10});
}

TEST_F(LoadPromotionsTest, DatesFollowTheRegionalSettingsOfTheLoad) {
    regional_.shortDatePattern = "M/d/yyyy";
    EXPECT_TRUE(IsActive({{"PR_FROMDATE", kLongAgo}, {"PR_TODATE", kFarAhead}}));
    EXPECT_EQ(Text(0, TField::PromoFromData), "3/9/2001");
}

TEST_F(LoadPromotionsTest, AMissingDateIsNoLimitAndAnEmptyText) {
    EXPECT_TRUE(IsActive({}));
    EXPECT_EQ(Text(0, TField::PromoFromData), "");
    EXPECT_EQ(Text(0, TField::PromoToDate), "");
    EXPECT_TRUE(IsActive({{"PR_FROMDATE", kFarAhead}}));
    EXPECT_EQ(Text(0, TField::PromoFromData), "31.12.2199");
}

TEST_F(LoadPromotionsTest, OneThatTheQueryDoesNotJoinLeavesItsArticleWithoutAPromotion) {
    const std::vector<TColumns> notJoined = {
        {{"PR_FROMDATE", kLongAgo}, {"PR_TODATE", "'2002-01-01'"}},
        {{"PR_FROMDATE", kFarAhead}, {"PR_TODATE", kFarAhead}},
        {{"PR_ISACTIVE_", "0"}},
        {{"PR_HAVE_CARD_", "1"}},
        {{"PR_PACKET_TYPE", "2"}},
        {{"PR_PACKET_TYPE", "3"}},
    };
    for (const TColumns& columns : notJoined) {
        EXPECT_FALSE(IsActive(columns)) << columns.begin()->first;
        EXPECT_EQ(Integers(TField::PR_ID), std::vector<int>{-1});
    }
}

TEST_F(LoadPromotionsTest, ANullOrShortDayMaskIsNeverActive) {
    EXPECT_FALSE(IsActive({{"PR_DAYOFWEEK", "null"}}));
    EXPECT_FALSE(IsActive({{"PR_DAYOFWEEK", "''"}}));
    EXPECT_FALSE(IsActive({{"PR_DAYOFWEEK", "'11'"}}));  // the clock says Wednesday
    EXPECT_EQ(Integers(TField::PR_ID), std::vector<int>{10});
    EXPECT_EQ(Float(0, TField::PromoPrice), 0.0);
}

TEST_F(LoadPromotionsTest, SixZerosFollowedByAOneOnlyOnSundays) {
    EXPECT_FALSE(IsActive({{"PR_DAYOFWEEK", "'0000001'"}}));
    clock_.now.date = {2024, 5, 12};
    EXPECT_TRUE(IsActive({{"PR_DAYOFWEEK", "'0000001'"}}));
}

TEST_F(LoadPromotionsTest, AMaskOfSevenOnesIsActiveEveryDay) {
    for (int day = 6; day <= 12; ++day) {
        clock_.now.date = {2024, 5, day};
        EXPECT_TRUE(IsActive({}));
    }
}

TEST_F(LoadPromotionsTest, TheTimeOfDayIsBetweenStartAndEnd) {
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "'12:00:00'"}, {"PR_TOTIME", "'13:00:00'"}}));
    EXPECT_FALSE(IsActive({{"PR_FROMTIME", "'13:00:00'"}, {"PR_TOTIME", "'14:00:00'"}}));
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "'13:00:00'"}}));
}

TEST_F(LoadPromotionsTest, AStartTimeThatEqualsTheCurrentTimeToTheSecondIsNotActive) {
    clock_.now.time = {12, 30, 0, 400};
    EXPECT_FALSE(IsActive({{"PR_FROMTIME", "'12:30:00'"}, {"PR_TOTIME", "'13:00:00'"}}));
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "'12:29:59'"}, {"PR_TOTIME", "'13:00:00'"}}));
}

TEST_F(LoadPromotionsTest, TimesReadTheSameUnderTwelveHourSettings) {
    regional_.longTimePattern = "h:mm:ss tt";
    regional_.morning = "AM";
    regional_.afternoon = "PM";
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "'12:00:00'"}, {"PR_TOTIME", "'13:00:00'"}}));
    EXPECT_FALSE(IsActive({{"PR_FROMTIME", "'00:00:00'"}, {"PR_TOTIME", "'01:00:00'"}}));
}

TEST_F(LoadPromotionsTest, ATimeTextThatDoesNotConvertFailsTheTestWithoutAnError) {
    Use(Schema({{"PR_FROMTIME time", "PR_FROMTIME varchar(10)"},
                {"PR_TOTIME time", "PR_TOTIME varchar(10)"}}));
    EXPECT_FALSE(IsActive({{"PR_FROMTIME", "'на обяд'"}, {"PR_TOTIME", "'13:00:00'"}}));
    EXPECT_EQ(view_.events.back(), "hide");
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "'12:00:00'"}, {"PR_TOTIME", "'13:00'"}}));
    EXPECT_TRUE(IsActive({{"PR_FROMTIME", "''"}, {"PR_TOTIME", "'на обяд'"}}));
}

TEST_F(LoadPromotionsTest, PacketType4AndMinus10OnARetailPriceOf5Gives4And50) {
    EXPECT_TRUE(IsActive({{"PR_PACKET_TYPE", "4"}, {"PR_PRICE", "-10"}}));
    EXPECT_EQ(Float(0, TField::PromoPrice), 4.5);
    EXPECT_EQ(Shown(0, TField::PromoPrice), "4,5000");
}

TEST_F(LoadPromotionsTest, PacketType5IsANewPrice) {
    EXPECT_TRUE(IsActive({{"PR_PACKET_TYPE", "5"}, {"PR_PRICE", "2.22"}}));
    EXPECT_EQ(Float(0, TField::PromoPrice), 2.22);
}

TEST_F(LoadPromotionsTest, ThePriceStandsAsItIsWhateverTheCurrency) {
    EXPECT_TRUE(IsActive({{"PR_CURRENCY", "2"}}));
    EXPECT_EQ(Float(0, TField::PromoPrice), 3.99);
}

TEST_F(LoadPromotionsTest, APercentageStartsFromThePriceInTheSellingCurrency) {
    AddArticle(1, {{"PLU_SELL_PRICE", "10"}, {"PLU_SELLCURR_ID", "2"}});
    AddPromotion(10, 1, {{"PR_PACKET_TYPE", "4"}, {"PR_PRICE", "-20"}});
    Loader().LoadArticles();
    EXPECT_EQ(Float(0, TField::PromoPrice), 8.0);
}

TEST_F(LoadPromotionsTest, AnArticleWithTwoQualifyingOnesShowsTwoRowsEachWithItsOwnPrice) {
    AddArticle(1);
    AddPromotion(10, 1, {{"PR_PRICE", "3.5"}, {"PR_PRIORITY", "2"}});
    AddPromotion(11, 1, {{"PR_PRICE", "2.5"}, {"PR_PRIORITY", "1"}});
    Loader().LoadArticles();
    ASSERT_EQ(articles_.RowCount(), 2U);
    for (std::size_t index = 0; index < 2; ++index) {
        const bool first = Integers(TField::PR_ID)[index] == 10;
        EXPECT_TRUE(articles_.Boolean(articles_.RowAt(index), TField::HasActivePromotion));
        EXPECT_EQ(Float(index, TField::PromoPrice), first ? 3.5 : 2.5);
    }
    EXPECT_NE(Integers(TField::PR_ID)[0], Integers(TField::PR_ID)[1]);
}

TEST_F(LoadPromotionsTest, OnlyTheArticlesOwnRowsAreMarked) {
    AddArticle(1);
    AddArticle(2);
    AddArticle(3);
    AddPromotion(10, 2);
    Loader().LoadArticles();
    EXPECT_FALSE(articles_.Boolean(0, TField::HasActivePromotion));
    EXPECT_TRUE(articles_.Boolean(1, TField::HasActivePromotion));
    EXPECT_FALSE(articles_.Boolean(2, TField::HasActivePromotion));
}

}  // namespace
}  // namespace tolvane::test
