#include "articles/PromotionPass.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "articles/Promotion.h"

namespace tolvane {
namespace {

// Finds the first row, in order, that has an article number and a promotion number.
class TFirstRows {
public:
    explicit TFirstRows(const TArticleTable& articles) {
        entries_.reserve(articles.RowCount());
        for (std::size_t index = 0; index < articles.RowCount(); ++index) {
            const TRowId row = articles.RowAt(index);
            entries_.push_back({articles.Integer(row, TField::PLU_NUMB),
                                articles.Integer(row, TField::PR_ID),
                                static_cast<std::uint32_t>(index)});
        }
        std::sort(entries_.begin(), entries_.end());
    }

    std::optional<std::size_t> IndexOf(std::int32_t article, std::int32_t promotion) const {
        const auto found =
            std::lower_bound(entries_.begin(), entries_.end(), TEntry{article, promotion, 0});
        if (found == entries_.end() || std::get<0>(*found) != article ||
            std::get<1>(*found) != promotion)
            return std::nullopt;
        return std::get<2>(*found);
    }

private:
    using TEntry = std::tuple<std::int32_t, std::int32_t, std::uint32_t>;
    std::vector<TEntry> entries_;
};

struct TPromotionColumns {
    std::size_t article, promotion, days, fromTime, toTime, packetType, price, currency, fromDate,
        toDate;

    explicit TPromotionColumns(const TQuery& query)
        : article(query.Column("PLU_NUMB")),
          promotion(query.Column("PR_ID")),
          days(query.Column("PR_DAYOFWEEK")),
          fromTime(query.Column("PR_FROMTIME")),
          toTime(query.Column("PR_TOTIME")),
          packetType(query.Column("PR_PACKET_TYPE")),
          price(query.Column("PR_PRICE")),
          currency(query.Column("CURR_ABR")),
          fromDate(query.Column("PR_FROMDATE")),
          toDate(query.Column("PR_TODATE")) {}
};

}  // namespace

std::vector<TActivePromotion> MarkPromotedArticles(const TQuery& promotions,
                                                   TArticleTable& articles,
                                                   const TLocalDateTime& now,
                                                   const TRegionalSettings& regional) {
    std::map<TRowId, TActivePromotion> active;
    if (promotions.RowCount() == 0) return {};
    const TPromotionColumns columns(promotions);
    const TFirstRows firstRows(articles);
    const auto text = [&](std::size_t i, std::size_t column) {
        return promotions.AsText(i, column, regional);
    };
    for (std::size_t i = 0; i < promotions.RowCount(); ++i) {
        if (promotions.IsNull(i, columns.promotion)) continue;
        const auto index = firstRows.IndexOf(promotions.AsInteger(i, columns.article, regional),
                                             promotions.AsInteger(i, columns.promotion, regional));
        if (!index) continue;
        const std::string days = text(i, columns.days);
        const std::string fromTime = text(i, columns.fromTime);
        const std::string toTime = text(i, columns.toTime);
        if (!IsPromotionValid({days, fromTime, toTime}, now, regional)) continue;
        const TRowId row = articles.RowAt(*index);
        const std::int32_t type = promotions.AsInteger(i, columns.packetType, regional);
        const auto price = PromotionalPrice(type, articles.Float(row, TField::PLU_SELL_PRICE),
                                            promotions.AsFloat(i, columns.price, regional));
        if (!price) continue;
        articles.SetBoolean(row, TField::HasActivePromotion, true);
        articles.SetFloat(row, TField::PromoPrice, *price);
        articles.SetText(row, TField::PromoFromData, text(i, columns.fromDate));
        articles.SetText(row, TField::PromoToDate, text(i, columns.toDate));
        active[row] = {.row = row,
                       .isPriceChange = IsPriceChange(type),
                       .currency = text(i, columns.currency)};
    }
    std::vector<TActivePromotion> promoted;
    promoted.reserve(active.size());
    for (auto& [row, promotion] : active)
        promoted.push_back(std::move(promotion));
    return promoted;
}

}  // namespace tolvane
