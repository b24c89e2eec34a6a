#include "articles/ArticleQueries.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// clang-format off
constexpr std::array<std::string_view, 45> kArticleLines = {
    R"x(select)x",
    R"x(plues.PLU_NUMB, )x",
    R"x(plues.PLU_SCALE_NUMB as "Код за везна",)x",
    R"x(plues.PLU_N_NUMB as "Ном.код",)x",
    R"x(plues.PLU_NAME as "Име",)x",
    R"x(plues.PLU_ECR_NAME as "Касово име",)x",
    R"x(plues.PLU_FOREGHN_NAME as "Етикетно име",)x",
    R"x(BARCODES.PLU_BARCODE as "Баркод",)x",
    R"x(label_printing.label_bestbefore,)x",
    R"x(label_printing.label_comment1, )x",
    R"x(label_printing.label_comment2, )x",
    R"x(label_printing.label_comment3, )x",
    R"x(n_primary_measureunits.primarymunit_name as "Мярка",)x",
    R"x(n_primary_measureunits.primarymunit_only_int as "Цели колич.",)x",
    R"x(plues.plu_sell_disabled_ as "Забранен",)x",
    R"x(plues.PLU_BUY_PRICE as "Пок.цена",)x",
    R"x(n_currency_buy.CURR_NAME as "Пок.вал.",)x",
    R"x(plues.PLU_BUY_PRICE * n_currency_buy.CURR_COURCE / n_currency_buy.CURR_COURCEFOR as "Пок.ЛВ.цена",)x",
    R"x(plues.PLU_SELL_PRICE,)x",
    R"x(plues.PLU_TRADE_PRICE as "Прод.цена едро",)x",
    R"x(n_currency_sell.CURR_NAME as "Прод.Вал.",)x",
    R"x(plues.PLU_SELL_PRICE * n_currency_sell.CURR_COURCE / n_currency_sell.CURR_COURCEFOR as "Прод.ЛВ.цена",)x",
    R"x(plues.PLU_TRADE_PRICE * n_currency_sell.CURR_COURCE / n_currency_sell.CURR_COURCEFOR as "Прод.ЛВ.цена едро",)x",
    R"x(plues.PLU_FORTERMINALS as "За терм.",)x",
    R"x(plues.PLU_FORSCALES as "За везни",)x",
    R"x(n_wat.taxgrp_name as "Дан.Гр.",)x",
    R"x(n_wat.taxgrp_wat as "ДДС",)x",
    R"x(n_plugroups.pgrp_name,)x",
    R"x(PR.PR_ID,)x",
    R"x((SELECT FIRST 1 SPC.SPCTRL_SHIPMENTNUMB FROM SUPPLIES_PLUCONTROL SPC WHERE SPC.SPCTRL_PLUNUMB = plues.PLU_NUMB ORDER by SPC.SPCTRL_ID desc) "SHIPMENTNUMB")x",
    R"x(from plues)x",
    R"x(left join n_currency n_currency_sell on plues.plu_sellcurr_id = n_currency_sell.curr_id)x",
    R"x(left join n_currency n_currency_buy on plues.plu_buycurr_id = n_currency_buy.curr_id)x",
    R"x(left join n_primary_measureunits on plues.plu_measureunit_id = n_primary_measureunits.primarymunit_id)x",
    R"x(left join barcodes on plues.plu_numb = barcodes.plu_numb)x",
    R"x(left join label_printing on plues.plu_numb = label_printing.label_plunumb)x",
    R"x(left join n_wat on plues.plu_taxgroup_id = n_wat.taxgrp_numb)x",
    R"x(left join n_plugroups on plues.plu_group_id = n_plugroups.pgrp_id)x",
    R"x(LEFT OUTER JOIN PROMOTIONS PR ON (PR.PR_PLUNUMB = plues.PLU_NUMB) AND)x",
    R"x(  ( (PR_PACKET_TYPE = 1) OR (PR_PACKET_TYPE = 4) OR (PR_PACKET_TYPE = 5) ) AND)x",
    R"x(  (PR_ISACTIVE_ = 1) AND (PR_HAVE_CARD_ = 0) AND)x",
    R"x(  ( (CURRENT_DATE BETWEEN PR_FROMDATE AND PR_TODATE) OR)x",
    R"x(  (PR_FROMDATE IS NULL OR PR_TODATE IS NULL)))x",
    R"x(WHERE (plues.PLU_IS_DELETED_ = 0) AND (not plues.PLU_SCALE_NUMB is NULL))x",
    R"x(ORDER BY plues.PLU_NUMB ASC)x",
};

constexpr std::string_view kPromotionLine =
    R"x(SELECT PLUES.PLU_NUMB, PR_ID, PR_PRIORITY, PR_DAYOFWEEK, PR_FROMTIME, PR_TOTIME, PR_HAVE_CARD_, PR_LIMIT_QUANT, PR_PACKET_FLAG_, PR_PACKET_TYPE, PR_PACKETQUANT, PR_BONUS_PLU, PR_BONUSQUANT, PR_PRICE, PR_CURRENCY, N_CURRENCY.CURR_ABR, N_CURRENCY.CURR_COURCE, PR_COMMENT, PR_FROMDATE, PR_TODATE FROM PLUES INNER JOIN PROMOTIONS PR ON     (PR_PLUNUMB = PLUES.PLU_NUMB) AND     ((PR_PACKET_TYPE = 1) OR (PR_PACKET_TYPE = 4) OR (PR_PACKET_TYPE = 5)) AND     (PR_ISACTIVE_ = 1) AND (PR_HAVE_CARD_ = 0) AND     ((CURRENT_DATE BETWEEN PR_FROMDATE AND PR_TODATE) OR      (PR_FROMDATE IS NULL OR PR_TODATE IS NULL)) LEFT JOIN N_CURRENCY ON PR.PR_CURRENCY = N_CURRENCY.CURR_ID WHERE (PLU_IS_DELETED_ = 0) AND (not PLU_SCALE_NUMB is NULL) ORDER BY PLUES.PLU_NUMB ASC, PR_PRIORITY ASC; )x";
// clang-format on

std::vector<std::string> Lines(std::string_view text) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 2) == "\r\n") {
            lines.emplace_back();
            ++i;
        } else {
            lines.back() += text[i];
        }
    }
    return lines;
}

TEST(ArticleQueries, TheArticleQueryHasEachOfItsLines) {
    const std::vector<std::string> lines = Lines(ArticleQuery());
    ASSERT_EQ(lines.size(), kArticleLines.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(ToUtf8(lines[i]), kArticleLines[i]) << "line " << i + 1;
}

TEST(ArticleQueries, ColumnTitlesAreCodePage1251) {
    // Баркод in quotes.
    EXPECT_NE(ArticleQuery().find("as \"\xC1\xE0\xF0\xEA\xEE\xE4\","), std::string::npos);
}

TEST(ArticleQueries, ThePromotionQueryIsOneLine) {
    EXPECT_EQ(PromotionQuery(), kPromotionLine);
}

TEST(ArticleQueries, TheBaseCurrencyQueryHasTwoLines) {
    EXPECT_EQ(BaseCurrencyQuery(), "select curr_abr from n_currency\r\nwhere curr_isbase_ = 1");
}

TEST(ArticleQueries, TheIndexQuerySeparatesItsLinesByCarriageReturnsAlone) {
    EXPECT_EQ(LotIndexQuery(),
              "SELECT COUNT(RDB$RELATION_NAME)AS\"QTTY\"\rFROM RDB$INDICES \rWHERE "
              "RDB$RELATION_NAME='SUPPLIES_PLUCONTROL' AND "
              "RDB$INDEX_NAME='SUPPLIES_PLUCONTROL_PLUIDX'");
}

TEST(ArticleQueries, TheIndexStatementEndsInASemicolon) {
    EXPECT_EQ(LotIndexStatement(),
              "CREATE INDEX SUPPLIES_PLUCONTROL_PLUIDX ON SUPPLIES_PLUCONTROL (SPCTRL_PLUNUMB);");
}

}  // namespace
}  // namespace tolvane
