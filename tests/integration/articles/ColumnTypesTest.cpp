#include <gtest/gtest.h>

#include <cctype>

#include "tests/integration/articles/LoadFixture.h"

// Hosts keep numbers in columns of different types; the loaded articles must not differ.

namespace tolvane::test {
namespace {

constexpr const char* kNumberTypes[] = {
    "smallint",      "integer", "bigint",           "numeric(4,0)", "numeric(9,2)",
    "numeric(18,4)", "float",   "double precision", "char(9)",      "varchar(9)"};

class NumberTypesTest : public LoadTest, public testing::WithParamInterface<const char*> {};

TEST_P(NumberTypesTest, OfTheArticleAndScaleNumber) {
    const std::string type = GetParam();
    Use(Schema(
        {{"PLU_NUMB integer not null primary key,\n    PLU_N_NUMB",
          "PLU_NUMB " + type + " not null primary key,\n    PLU_N_NUMB"},
         {"PLU_NUMB integer not null references PLUES", "PLU_NUMB " + type + " not null"},
         {"LABEL_PLUNUMB integer not null references PLUES", "LABEL_PLUNUMB " + type + " not null"},
         {"SPCTRL_PLUNUMB integer", "SPCTRL_PLUNUMB " + type},
         {"PR_PLUNUMB integer", "PR_PLUNUMB " + type},
         {"PLU_SCALE_NUMB integer", "PLU_SCALE_NUMB " + type}}));
    AddArticle(101, {{"PLU_SCALE_NUMB", "17"}});
    AddArticle(102);
    AddPromotion(10, 102);
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Integers(TField::PLU_NUMB), (std::vector<int>{101, 102}));
    EXPECT_EQ(Integers(TField::PLU_SCALE_NUMB), (std::vector<int>{17, 102}));
    EXPECT_EQ(Integers(TField::PR_ID), (std::vector<int>{-1, 10}));
    EXPECT_TRUE(articles_.Boolean(1, TField::HasActivePromotion));
}

TEST_P(NumberTypesTest, OfFlagsAndShelfLife) {
    const std::string type = GetParam();
    Use(Schema({{"PRIMARYMUNIT_ONLY_INT smallint", "PRIMARYMUNIT_ONLY_INT " + type},
                {"PLU_SELL_DISABLED_ smallint", "PLU_SELL_DISABLED_ " + type},
                {"PLU_FORSCALES varchar(40)", "PLU_FORSCALES " + type},
                {"LABEL_BESTBEFORE integer", "LABEL_BESTBEFORE " + type}}));
    AddArticle(1, {{"PLU_MEASUREUNIT_ID", "2"}, {"PLU_FORSCALES", "2"}});
    Run("insert into LABEL_PRINTING values (1, 14, null, null, null)");
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Text(0, TField::PRIMARYUNIT_ONLY_INT), "1");
    EXPECT_EQ(Text(0, TField::PLU_SELL_DISABLED), "0");
    EXPECT_EQ(Text(0, TField::PLU_FORSCALES), "2");
    EXPECT_EQ(Text(0, TField::LABEL_BESTBEFORE), "14");
    EXPECT_EQ(Shown(0, TField::PRIMARYUNIT_ONLY_INT), "ДА");
    EXPECT_EQ(Shown(0, TField::PLU_SELL_DISABLED), "НЕ");
}

TEST_P(NumberTypesTest, OfPromotions) {
    const std::string type = GetParam();
    Use(Schema({{"PR_PACKET_TYPE integer", "PR_PACKET_TYPE " + type},
                {"PR_PRICE numeric(15,4)", "PR_PRICE " + type},
                {"PR_ID integer", "PR_ID " + type}}));
    AddArticle(1);
    AddPromotion(10, 1, {{"PR_PACKET_TYPE", "4"}, {"PR_PRICE", "-10"}});
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Integers(TField::PR_ID), std::vector<int>{10});
    EXPECT_EQ(Float(0, TField::PromoPrice), 4.5);
}

std::string TypeName(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(ColumnTypes, NumberTypesTest, testing::ValuesIn(kNumberTypes), TypeName);

class PriceTypesTest : public LoadTest, public testing::WithParamInterface<const char*> {};

TEST_P(PriceTypesTest, OfPricesRatesAndTaxes) {
    const std::string type = GetParam();
    Use(Schema({{"PLU_BUY_PRICE numeric(15,4)", "PLU_BUY_PRICE " + type},
                {"PLU_SELL_PRICE numeric(15,4)", "PLU_SELL_PRICE " + type},
                {"PLU_TRADE_PRICE numeric(15,4)", "PLU_TRADE_PRICE " + type},
                {"TAXGRP_WAT numeric(15,2)", "TAXGRP_WAT " + type}}));
    AddArticle(1, {{"PLU_BUY_PRICE", "7"}, {"PLU_SELL_PRICE", "12"}, {"PLU_TRADE_PRICE", "10"}});
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Float(0, TField::PLU_BUY_PRICE), 7.0);
    EXPECT_EQ(Float(0, TField::PLU_SELL_PRICE), 12.0);
    EXPECT_EQ(Float(0, TField::PLU_TRADE_PRICE_LV), 10.0);
    EXPECT_EQ(Float(0, TField::TAX_GROUP_WAT), 20.0);
}

// Without text types: the database computes the converted prices, and it does not compute with
// texts.
INSTANTIATE_TEST_SUITE_P(ColumnTypes, PriceTypesTest,
                         testing::Values("smallint", "integer", "bigint", "numeric(9,2)",
                                         "numeric(15,4)", "numeric(18,6)", "float",
                                         "double precision"),
                         TypeName);

using ColumnTypesTest = LoadTest;

TEST_F(ColumnTypesTest, TextsMayBeCharsWhosePaddingIsNotPartOfThem) {
    Use(Schema({{"PLU_NAME varchar(60)", "PLU_NAME char(60)"},
                {"PLU_BARCODE varchar(20)", "PLU_BARCODE char(20)"},
                {"PR_DAYOFWEEK varchar(7)", "PR_DAYOFWEEK char(7)"},
                {"CURR_ABR varchar(10)", "CURR_ABR char(10)"}}));
    AddArticle(1);
    AddPromotion(10, 1);
    Run("insert into BARCODES values (1, '20001')");
    Loader().ReadBaseCurrency();
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Text(0, TField::PLU_NAME), "Ябълки");
    EXPECT_EQ(Text(0, TField::PLU_BARCODE), "20001");
    EXPECT_TRUE(articles_.Boolean(0, TField::HasActivePromotion));
    EXPECT_EQ(Shown(0, TField::PLU_SELL_PRICE_LV), "5,00 лв");
}

TEST_F(ColumnTypesTest, LabelTextsMayBeTextBlobs) {
    Use(Schema(
        {{"LABEL_COMMENT1 varchar(150)", "LABEL_COMMENT1 blob sub_type text"},
         {"LABEL_COMMENT2 varchar(150)", "LABEL_COMMENT2 blob sub_type text"},
         {"LABEL_COMMENT3 varchar(150)", "LABEL_COMMENT3 blob sub_type text character set utf8"}}));
    AddArticle(1);
    AddArticle(2);
    Run("insert into LABEL_PRINTING values (1, 3, 'Съставки', null, rpad('', 20000, 'я'))");
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Text(0, TField::LABEL_COMMENT1), "Съставки");
    EXPECT_EQ(Text(0, TField::LABEL_COMMENT2), "");
    EXPECT_EQ(articles_.Text(0, TField::LABEL_COMMENT3), std::string(100, '\xFF'));
    EXPECT_EQ(Text(1, TField::LABEL_COMMENT1), "");
}

TEST_F(ColumnTypesTest, DatesMayBeTimestamps) {
    Use(Schema({{"PR_FROMDATE date", "PR_FROMDATE timestamp"},
                {"PR_TODATE date", "PR_TODATE timestamp"}}));
    AddArticle(1);
    AddPromotion(10, 1, {{"PR_FROMDATE", "'2001-03-09'"}, {"PR_TODATE", "'2199-12-31 08:30:00'"}});
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Text(0, TField::PromoFromData), "09.03.2001");
    EXPECT_EQ(Text(0, TField::PromoToDate), "31.12.2199 08:30:00");
}

TEST_F(ColumnTypesTest, AFlagMayBeABoolean) {
    Use(Schema({{"PLU_SELL_DISABLED_ smallint", "PLU_SELL_DISABLED_ boolean"}}));
    AddArticle(1, {{"PLU_SELL_DISABLED_", "true"}});
    AddArticle(2, {{"PLU_SELL_DISABLED_", "false"}});
    EXPECT_EQ(LoadEvents().back(), "hide");
    EXPECT_EQ(Shown(0, TField::PLU_SELL_DISABLED), "ДА");
    EXPECT_EQ(Shown(1, TField::PLU_SELL_DISABLED), "НЕ");
}

}  // namespace
}  // namespace tolvane::test
