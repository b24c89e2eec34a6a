#include "articles/ArticleQueries.h"

#include <array>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::string_view kLineBreak = "\r\n";

// clang-format off
constexpr std::array<std::string_view, 45> kArticleLines = {
    "select",
    "plues.PLU_NUMB, ",
    R"(plues.PLU_SCALE_NUMB as "Код за везна",)"_cp1251,
    R"(plues.PLU_N_NUMB as "Ном.код",)"_cp1251,
    R"(plues.PLU_NAME as "Име",)"_cp1251,
    R"(plues.PLU_ECR_NAME as "Касово име",)"_cp1251,
    R"(plues.PLU_FOREGHN_NAME as "Етикетно име",)"_cp1251,
    R"(BARCODES.PLU_BARCODE as "Баркод",)"_cp1251,
    "label_printing.label_bestbefore,",
    "label_printing.label_comment1, ",
    "label_printing.label_comment2, ",
    "label_printing.label_comment3, ",
    R"(n_primary_measureunits.primarymunit_name as "Мярка",)"_cp1251,
    R"(n_primary_measureunits.primarymunit_only_int as "Цели колич.",)"_cp1251,
    R"(plues.plu_sell_disabled_ as "Забранен",)"_cp1251,
    R"(plues.PLU_BUY_PRICE as "Пок.цена",)"_cp1251,
    R"(n_currency_buy.CURR_NAME as "Пок.вал.",)"_cp1251,
    R"(plues.PLU_BUY_PRICE * n_currency_buy.CURR_COURCE / n_currency_buy.CURR_COURCEFOR as "Пок.ЛВ.цена",)"_cp1251,
    "plues.PLU_SELL_PRICE,",
    R"(plues.PLU_TRADE_PRICE as "Прод.цена едро",)"_cp1251,
    R"(n_currency_sell.CURR_NAME as "Прод.Вал.",)"_cp1251,
    R"(plues.PLU_SELL_PRICE * n_currency_sell.CURR_COURCE / n_currency_sell.CURR_COURCEFOR as "Прод.ЛВ.цена",)"_cp1251,
    R"(plues.PLU_TRADE_PRICE * n_currency_sell.CURR_COURCE / n_currency_sell.CURR_COURCEFOR as "Прод.ЛВ.цена едро",)"_cp1251,
    R"(plues.PLU_FORTERMINALS as "За терм.",)"_cp1251,
    R"(plues.PLU_FORSCALES as "За везни",)"_cp1251,
    R"(n_wat.taxgrp_name as "Дан.Гр.",)"_cp1251,
    R"(n_wat.taxgrp_wat as "ДДС",)"_cp1251,
    "n_plugroups.pgrp_name,",
    "PR.PR_ID,",
    "(SELECT FIRST 1 SPC.SPCTRL_SHIPMENTNUMB FROM SUPPLIES_PLUCONTROL SPC WHERE SPC.SPCTRL_PLUNUMB = plues.PLU_NUMB ORDER by SPC.SPCTRL_ID desc) \"SHIPMENTNUMB\"",
    "from plues",
    "left join n_currency n_currency_sell on plues.plu_sellcurr_id = n_currency_sell.curr_id",
    "left join n_currency n_currency_buy on plues.plu_buycurr_id = n_currency_buy.curr_id",
    "left join n_primary_measureunits on plues.plu_measureunit_id = n_primary_measureunits.primarymunit_id",
    "left join barcodes on plues.plu_numb = barcodes.plu_numb",
    "left join label_printing on plues.plu_numb = label_printing.label_plunumb",
    "left join n_wat on plues.plu_taxgroup_id = n_wat.taxgrp_numb",
    "left join n_plugroups on plues.plu_group_id = n_plugroups.pgrp_id",
    "LEFT OUTER JOIN PROMOTIONS PR ON (PR.PR_PLUNUMB = plues.PLU_NUMB) AND",
    "  ( (PR_PACKET_TYPE = 1) OR (PR_PACKET_TYPE = 4) OR (PR_PACKET_TYPE = 5) ) AND",
    "  (PR_ISACTIVE_ = 1) AND (PR_HAVE_CARD_ = 0) AND",
    "  ( (CURRENT_DATE BETWEEN PR_FROMDATE AND PR_TODATE) OR",
    "  (PR_FROMDATE IS NULL OR PR_TODATE IS NULL))",
    "WHERE (plues.PLU_IS_DELETED_ = 0) AND (not plues.PLU_SCALE_NUMB is NULL)",
    "ORDER BY plues.PLU_NUMB ASC",
};
// clang-format on

constexpr std::string_view kPromotionQuery =
    "SELECT PLUES.PLU_NUMB, PR_ID, PR_PRIORITY, PR_DAYOFWEEK, PR_FROMTIME, PR_TOTIME, "
    "PR_HAVE_CARD_, PR_LIMIT_QUANT, PR_PACKET_FLAG_, PR_PACKET_TYPE, PR_PACKETQUANT, "
    "PR_BONUS_PLU, PR_BONUSQUANT, PR_PRICE, PR_CURRENCY, N_CURRENCY.CURR_ABR, "
    "N_CURRENCY.CURR_COURCE, PR_COMMENT, PR_FROMDATE, PR_TODATE FROM PLUES INNER JOIN "
    "PROMOTIONS PR ON     (PR_PLUNUMB = PLUES.PLU_NUMB) AND     ((PR_PACKET_TYPE = 1) OR "
    "(PR_PACKET_TYPE = 4) OR (PR_PACKET_TYPE = 5)) AND     (PR_ISACTIVE_ = 1) AND "
    "(PR_HAVE_CARD_ = 0) AND     ((CURRENT_DATE BETWEEN PR_FROMDATE AND PR_TODATE) OR      "
    "(PR_FROMDATE IS NULL OR PR_TODATE IS NULL)) LEFT JOIN N_CURRENCY ON PR.PR_CURRENCY = "
    "N_CURRENCY.CURR_ID WHERE (PLU_IS_DELETED_ = 0) AND (not PLU_SCALE_NUMB is NULL) ORDER BY "
    "PLUES.PLU_NUMB ASC, PR_PRIORITY ASC; ";

// A text as a literal of a statement.
std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted.append(c == '\'' ? 2 : 1, c);
    return quoted + '\'';
}

}  // namespace

std::string BaseCurrencyQuery() {
    return std::string("select curr_abr from n_currency")
        .append(kLineBreak)
        .append("where curr_isbase_ = 1");
}

std::string_view BaseCurrencyNameQuery() {
    return "select curr_name from n_currency where curr_isbase_ = 1";
}

std::string ArticleQuery() {
    std::string text;
    for (const std::string_view line : kArticleLines)
        text.append(text.empty() ? "" : kLineBreak).append(line);
    return text;
}

std::string_view PromotionQuery() {
    return kPromotionQuery;
}

std::string LotIndexQuery() {
    return "SELECT COUNT(RDB$RELATION_NAME)AS\"QTTY\"\rFROM RDB$INDICES \r"
           "WHERE RDB$RELATION_NAME='SUPPLIES_PLUCONTROL' AND RDB$INDEX_NAME=" +
           Quoted(kLotIndexName);
}

std::string LotIndexStatement() {
    return std::string("CREATE INDEX ")
        .append(kLotIndexName)
        .append(" ON SUPPLIES_PLUCONTROL (SPCTRL_PLUNUMB);");
}

}  // namespace tolvane
