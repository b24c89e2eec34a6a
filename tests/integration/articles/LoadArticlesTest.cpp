#include <gtest/gtest.h>

#include "database/DatabaseError.h"
#include "tests/integration/articles/LoadFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using TEvents = std::vector<std::string>;
using TIntegers = std::vector<int>;

TEST_F(LoadTest, FillsEveryFieldFromItsColumn) {
    AddArticle(1001, {{"PLU_N_NUMB", "'ПЛ-001'"},
                      {"PLU_SCALE_NUMB", "17"},
                      {"PLU_NAME", "'Ябълки червени'"},
                      {"PLU_ECR_NAME", "'ЯБЪЛКИ ЧЕРВЕНИ'"},
                      {"PLU_FOREGHN_NAME", "'Ябълки български'"},
                      {"PLU_BUY_PRICE", "2.125"},
                      {"PLU_SELL_PRICE", "4.4"},
                      {"PLU_TRADE_PRICE", "3.9"},
                      {"PLU_BUYCURR_ID", "2"},
                      {"PLU_SELLCURR_ID", "1"},
                      {"PLU_MEASUREUNIT_ID", "2"},
                      {"PLU_SELL_DISABLED_", "1"},
                      {"PLU_FORTERMINALS", "'1,3'"},
                      {"PLU_FORSCALES", "'1,2'"}});
    Run("insert into BARCODES values (1001, '21017')");
    Run("insert into LABEL_PRINTING values (1001, 14, 'ред 1', 'ред 2', 'ред 3')");
    Run("insert into SUPPLIES_PLUCONTROL values (1, 1001, 'L240501')");
    Loader().ReadBaseCurrency();
    Loader().LoadArticles();

    ASSERT_EQ(articles_.RowCount(), 1U);
    EXPECT_EQ(Integers(TField::PLU_NUMB), TIntegers{1001});
    EXPECT_EQ(Text(0, TField::PLU_N_NUMB), "ПЛ-001");
    EXPECT_EQ(Integers(TField::PLU_SCALE_NUMB), TIntegers{17});
    EXPECT_EQ(Text(0, TField::PLU_NAME), "Ябълки червени");
    EXPECT_EQ(Text(0, TField::PLU_ECR_NAME), "ЯБЪЛКИ ЧЕРВЕНИ");
    EXPECT_EQ(Text(0, TField::PLU_FOREGHN_NAME), "Ябълки български");
    EXPECT_EQ(Text(0, TField::PLU_BARCODE), "21017");
    EXPECT_EQ(Text(0, TField::LABEL_BESTBEFORE), "14");
    EXPECT_EQ(Text(0, TField::PRIMARYUNIT_NAME), "бр");
    EXPECT_EQ(Text(0, TField::PRIMARYUNIT_ONLY_INT), "1");
    EXPECT_EQ(Text(0, TField::PLU_SELL_DISABLED), "1");
    EXPECT_EQ(Float(0, TField::PLU_BUY_PRICE), 2.125);
    EXPECT_EQ(Text(0, TField::CURR_NAME), "Евро");
    // 2.125 * 1.95583 = 4.15613875
    EXPECT_EQ(Float(0, TField::PLU_BUY_PRICE_LV), 4.15613875);
    EXPECT_EQ(Float(0, TField::PLU_SELL_PRICE), 4.4);
    EXPECT_EQ(Float(0, TField::PLU_TRADE_PRICE), 3.9);
    EXPECT_EQ(Text(0, TField::CURR_SELL_NAME), "Български лев");
    EXPECT_EQ(Float(0, TField::PLU_SELL_PRICE_LV), 4.4);
    EXPECT_EQ(Float(0, TField::PLU_TRADE_PRICE_LV), 3.9);
    EXPECT_EQ(Text(0, TField::PLU_FORTERMINALS), "1,3");
    EXPECT_EQ(Text(0, TField::PLU_FORSCALES), "1,2");
    EXPECT_EQ(Text(0, TField::TAX_GROUP_NAME), "Б");
    EXPECT_EQ(Float(0, TField::TAX_GROUP_WAT), 20.0);
    EXPECT_FALSE(articles_.Boolean(0, TField::HasActivePromotion));
    EXPECT_EQ(Integers(TField::PR_ID), TIntegers{-1});
    EXPECT_EQ(Float(0, TField::PromoPrice), 0.0);
    EXPECT_EQ(Text(0, TField::PromoFromData), "");
    EXPECT_EQ(Text(0, TField::PromoToDate), "");
    EXPECT_EQ(Text(0, TField::PLU_GRP_NAME), "Плодове");
    EXPECT_EQ(Text(0, TField::LABEL_COMMENT1), "ред 1");
    EXPECT_EQ(Text(0, TField::LABEL_COMMENT2), "ред 2");
    EXPECT_EQ(Text(0, TField::LABEL_COMMENT3), "ред 3");
    EXPECT_EQ(Text(0, TField::SHIPMENTNUMB), "L240501");
    EXPECT_EQ(Shown(0, TField::PLU_BUY_PRICE_LV), "4,156 лв");
}

TEST_F(LoadTest, AnArticleWithNothingJoinedHasEmptyTextsAndZeros) {
    AddArticle(1, {{"PLU_N_NUMB", "null"},
                   {"PLU_NAME", "null"},
                   {"PLU_BUY_PRICE", "null"},
                   {"PLU_SELL_PRICE", "null"},
                   {"PLU_BUYCURR_ID", "null"},
                   {"PLU_SELLCURR_ID", "null"},
                   {"PLU_MEASUREUNIT_ID", "null"},
                   {"PLU_TAXGROUP_ID", "null"},
                   {"PLU_GROUP_ID", "null"},
                   {"PLU_SELL_DISABLED_", "null"},
                   {"PLU_FORSCALES", "null"}});
    Loader().LoadArticles();
    ASSERT_EQ(articles_.RowCount(), 1U);
    for (const TField field :
         {TField::PLU_N_NUMB, TField::PLU_NAME, TField::PLU_BARCODE, TField::PRIMARYUNIT_NAME,
          TField::PRIMARYUNIT_ONLY_INT, TField::PLU_SELL_DISABLED, TField::CURR_NAME,
          TField::CURR_SELL_NAME, TField::PLU_FORSCALES, TField::TAX_GROUP_NAME,
          TField::PLU_GRP_NAME, TField::LABEL_COMMENT1, TField::SHIPMENTNUMB})
        EXPECT_EQ(Text(0, field), "") << FieldInfo(field).name;
    for (const TField field :
         {TField::PLU_BUY_PRICE, TField::PLU_BUY_PRICE_LV, TField::PLU_SELL_PRICE,
          TField::PLU_SELL_PRICE_LV, TField::PLU_TRADE_PRICE_LV, TField::TAX_GROUP_WAT})
        EXPECT_EQ(Float(0, field), 0.0) << FieldInfo(field).name;
    EXPECT_EQ(Shown(0, TField::PRIMARYUNIT_ONLY_INT), "");
}

TEST_F(LoadTest, ConvertedPricesUseTheRateAndTheUnitsThatItIsQuotedFor) {
    AddArticle(1, {{"PLU_BUY_PRICE", "200"},
                   {"PLU_SELL_PRICE", "10"},
                   {"PLU_TRADE_PRICE", "8"},
                   {"PLU_BUYCURR_ID", "4"},
                   {"PLU_SELLCURR_ID", "2"}});
    Loader().LoadArticles();
    // 200 liras at 5.62 for 100; 10 and 8 euros at 1.95583.
    EXPECT_EQ(Float(0, TField::PLU_BUY_PRICE_LV), 11.24);
    EXPECT_EQ(Float(0, TField::PLU_SELL_PRICE_LV), 19.5583);
    EXPECT_EQ(Float(0, TField::PLU_TRADE_PRICE_LV), 15.64664);
    EXPECT_EQ(Float(0, TField::PLU_SELL_PRICE), 10.0);
}

TEST_F(LoadTest, DeletedArticlesAndThoseWithoutAScaleNumberAreLeftOut) {
    AddArticle(3);
    AddArticle(2, {{"PLU_IS_DELETED_", "1"}});
    AddArticle(4, {{"PLU_SCALE_NUMB", "null"}});
    AddArticle(1);
    Loader().LoadArticles();
    EXPECT_EQ(Integers(TField::PLU_NUMB), (TIntegers{1, 3}));
}

TEST_F(LoadTest, AnArticleWithTwoBarcodesIsListedInTwoRowsOnlyTheFirstOfThemCanBeMarked) {
    AddArticle(1);
    Run("insert into BARCODES values (1, '20001')");
    Run("insert into BARCODES values (1, '20002')");
    AddPromotion(10, 1);
    Loader().LoadArticles();
    ASSERT_EQ(articles_.RowCount(), 2U);
    EXPECT_NE(Text(0, TField::PLU_BARCODE), Text(1, TField::PLU_BARCODE));
    EXPECT_EQ(Integers(TField::PR_ID), (TIntegers{10, 10}));
    EXPECT_TRUE(articles_.Boolean(0, TField::HasActivePromotion));
    EXPECT_FALSE(articles_.Boolean(1, TField::HasActivePromotion));
    EXPECT_EQ(Float(1, TField::PromoPrice), 0.0);
}

TEST_F(LoadTest, AnArticleWhoseBestBeforeIsNullOrEmptyGetsZero) {
    Use(Schema({{"LABEL_BESTBEFORE integer", "LABEL_BESTBEFORE varchar(10)"}}));
    AddArticle(1);
    AddArticle(2);
    AddArticle(3);
    AddArticle(4);
    Run("insert into LABEL_PRINTING values (1, null, null, null, null)");
    Run("insert into LABEL_PRINTING values (2, '', null, null, null)");
    Run("insert into LABEL_PRINTING values (3, '5 дни', null, null, null)");
    Loader().LoadArticles();
    EXPECT_EQ(Text(0, TField::LABEL_BESTBEFORE), "0");
    EXPECT_EQ(Text(1, TField::LABEL_BESTBEFORE), "0");
    EXPECT_EQ(Text(2, TField::LABEL_BESTBEFORE), "5 дни");
    EXPECT_EQ(Text(3, TField::LABEL_BESTBEFORE), "0");
}

TEST_F(LoadTest, AnArticleNameLongerThan20CharactersIsCutTo20) {
    AddArticle(1, {{"PLU_NAME", "'Ябълки златна превъзходна'"}});
    Loader().LoadArticles();
    EXPECT_EQ(Text(0, TField::PLU_NAME), "Ябълки златна превъз");
}

TEST_F(LoadTest, TheLotIsThatOfTheLatestSupplyRecord) {
    AddArticle(1);
    Run("insert into SUPPLIES_PLUCONTROL values (7, 1, 'new')");
    Run("insert into SUPPLIES_PLUCONTROL values (5, 1, 'old')");
    Run("insert into SUPPLIES_PLUCONTROL values (9, 2, 'other article')");
    Loader().LoadArticles();
    EXPECT_EQ(Text(0, TField::SHIPMENTNUMB), "new");
}

TEST_F(LoadTest, TheBaseCurrencyIsReadAndItsTransactionEnded) {
    Loader().ReadBaseCurrency();
    EXPECT_EQ(ToUtf8(Loader().BaseCurrency()), "лв");
    EXPECT_FALSE(transaction_->IsActive());
    EXPECT_FALSE(query_->IsOpen());
}

TEST_F(LoadTest, WithNoBaseCurrencyRowThePriceFormatsEndInASingleBlank) {
    Loader().ReadBaseCurrency();
    Run("update N_CURRENCY set CURR_ISBASE_ = 0");
    AddArticle(1);
    Loader().ReadBaseCurrency();
    Loader().LoadArticles();
    EXPECT_EQ(Loader().BaseCurrency(), "");
    EXPECT_EQ(Shown(0, TField::PLU_SELL_PRICE_LV), "5,00 ");
    EXPECT_EQ(Shown(0, TField::PLU_BUY_PRICE_LV), "1,500 ");
}

TEST_F(LoadTest, AnErrorOfTheBaseCurrencyPassesToTheCaller) {
    Run("alter table N_CURRENCY drop CURR_ISBASE_");
    EXPECT_THROW(Loader().ReadBaseCurrency(), TDatabaseError);
    EXPECT_EQ(Loader().BaseCurrency(), "");
    EXPECT_EQ(view_.events, TEvents{});
}

TEST_F(LoadTest, TheEffectsComeInOrder) {
    AddArticle(1);
    AddArticle(2);
    AddArticle(3);
    AddPromotion(10, 2);
    sort_.ClickTitle(TField::PLU_NAME);
    sort_.ClickTitle(TField::PLU_NAME);
    std::vector<std::string> states;
    view_.onEvent = [&](const std::string& event) {
        if (event == "resume" || event == "hide")
            states.push_back(event + (transaction_->IsActive() ? " active" : " ended") +
                             (query_->IsOpen() ? " open" : " closed") +
                             (sort_.field == TField::PLU_NUMB && sort_.ascending ? " sorted" : ""));
    };
    EXPECT_EQ(LoadEvents(),
              (TEvents{"suspend", "show 2", "step", "step", "step", "show 0", "resume", "hide"}));
    EXPECT_EQ(states, (TEvents{"resume active open sorted", "hide ended closed sorted"}));
}

TEST_F(LoadTest, TheTableIsEmptyWhenTheDisplayIsSuspended) {
    AddArticle(1);
    Loader().LoadArticles();
    std::size_t rows = 99;
    view_.onEvent = [&](const std::string& event) {
        if (event == "suspend") rows = articles_.RowCount();
    };
    Loader().LoadArticles();
    EXPECT_EQ(rows, 0U);
    EXPECT_EQ(articles_.RowCount(), 1U);
}

TEST_F(LoadTest, WithoutPromotionsTheWaitWindowIsShownWithMinusOneInThePass) {
    AddArticle(1);
    EXPECT_EQ(LoadEvents(), (TEvents{"suspend", "show 0", "step", "show -1", "resume", "hide"}));
}

TEST_F(LoadTest, AnEmptyResultLeavesTheTableEmptyWithoutAWaitWindowAndWithoutAnError) {
    sort_.Clear();
    EXPECT_EQ(LoadEvents(), TEvents{"suspend"});
    EXPECT_EQ(articles_.RowCount(), 0U);
    // The load ends early on purpose: nothing is closed, committed or resumed.
    EXPECT_TRUE(query_->IsOpen());
    EXPECT_TRUE(transaction_->IsActive());
    EXPECT_EQ(sort_.field, std::nullopt);
}

TEST_F(LoadTest, AfterAnEmptyResultTheNextLoadWorks) {
    Loader().LoadArticles();
    AddArticle(1);
    EXPECT_EQ(LoadEvents(), (TEvents{"suspend", "show 0", "step", "show -1", "resume", "hide"}));
    EXPECT_EQ(articles_.RowCount(), 1U);
    EXPECT_FALSE(transaction_->IsActive());
}

TEST_F(LoadTest, ALoadReplacesTheRowsAndSeesWhatOthersHaveCommitted) {
    AddArticle(1);
    Loader().LoadArticles();
    database_->Attach()->Run("update PLUES set PLU_NAME = 'Круши'");
    AddArticle(2);
    Loader().LoadArticles();
    EXPECT_EQ(Integers(TField::PLU_NUMB), (TIntegers{1, 2}));
    EXPECT_EQ(Text(0, TField::PLU_NAME), "Круши");
}

}  // namespace
}  // namespace tolvane::test
