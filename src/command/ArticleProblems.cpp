#include "command/ArticleProblems.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "text/Cp1251.h"
#include "text/Numbers.h"
#include "upload/ArticleLine.h"

namespace tolvane {
namespace {

// Of two prices in hundredths.
constexpr double kSmallestDifference = 0.005;

// Problems of articles, whatever the scale.
class TArticleProblems {
public:
    TArticleProblems(const TArticleReading& reading, int price,
                     const std::vector<TListedScale>& scales)
        : reading_(reading),
          table_(reading.articles),
          scales_(scales),
          base_(Trim(reading.baseCurrencyName)),
          isRetail_(price == kRetailPrice) {
        if (!isRetail_) return;
        for (const TActivePromotion& promotion : reading.promotions)
            promotions_[promotion.row] = &promotion;
    }

    std::vector<TProblem> Find() {
        if (base_.empty())
            problems_.push_back({.severity = TSeverity::Warning,
                                 .problem = "no currency is marked as the base currency",
                                 .cure = "mark the currency that the scales show"});
        for (const TRowId row : table_.Order()) {
            CheckScales(row);
            CheckBestBefore(row);
            if (base_.empty()) continue;
            const auto promotion = promotions_.find(row);
            if (promotion == promotions_.end())
                CheckCurrency(row);
            else
                CheckPromotion(row, *promotion->second);
        }
        return std::move(problems_);
    }

private:
    void Add(TSeverity severity, TRowId row, std::string problem, std::string cure) {
        problems_.push_back({.severity = severity,
                             .number = table_.Integer(row, TField::PLU_SCALE_NUMB),
                             .name = std::string(table_.Text(row, TField::PLU_NAME)),
                             .problem = std::move(problem),
                             .cure = std::move(cure)});
    }
    void CheckScales(TRowId row) {
        constexpr const char* kCure = "name its scales, or 0 for all of them";
        const std::string_view scales = table_.Text(row, TField::PLU_FORSCALES);
        if (Trim(scales).empty())
            Add(TSeverity::Error, row, "it is meant for no scale", kCure);
        else if (const auto part = UnreadablePart(scales))
            Add(TSeverity::Error, row,
                Quoted(*part) + " among its scales " + Quoted(scales) +
                    " is no number; that and what follows it count for nothing",
                kCure);
        else if (std::ranges::none_of(scales_, [&](const TListedScale& scale) {
                     return IsForScale(scales, scale.rec.ScaleNumb);
                 }))
            Add(TSeverity::Warning, row, "none of its scales " + Quoted(scales) + " is in the list",
                kCure);
    }
    // The first part of a list of scales that is not a number; the rule of IsForScale.
    static std::optional<std::string_view> UnreadablePart(std::string_view scales) {
        while (!scales.empty()) {
            const std::size_t comma = std::min(scales.find(','), scales.size());
            const std::string_view part = scales.substr(0, comma);
            if (!ParseInteger(part)) return part;
            // 0 means all scales: nothing behind it matters.
            if (ParseInteger(part) == 0) return std::nullopt;
            scales.remove_prefix(std::min(comma + 1, scales.size()));
        }
        return std::nullopt;
    }
    void CheckBestBefore(TRowId row) {
        const auto days = ParseInteger(table_.Text(row, TField::LABEL_BESTBEFORE));
        if (!days || (*days >= 0 && *days <= kLongestBestBefore)) return;
        Add(TSeverity::Error, row,
            "best before " + std::to_string(*days) +
                (*days < 0 ? " days is below 0" : " days is above 365: the scale gets 0"),
            "correct the number of days");
    }
    std::string_view SellingCurrency(TRowId row) const {
        return Trim(table_.Text(row, TField::CURR_SELL_NAME));
    }
    bool IsForeign(TRowId row) const { return SellingCurrency(row) != base_; }
    // The chosen price is converted from the selling currency into the base currency, by the rate
    // of the selling currency.
    bool IsConverted(TRowId row) const {
        const auto [own, base] =
            isRetail_ ? std::pair(TField::PLU_SELL_PRICE, TField::PLU_SELL_PRICE_LV)
                      : std::pair(TField::PLU_TRADE_PRICE, TField::PLU_TRADE_PRICE_LV);
        return std::abs(table_.Float(row, own) - table_.Float(row, base)) >= kSmallestDifference;
    }
    void CheckCurrency(TRowId row) {
        const std::string currency(SellingCurrency(row));
        if (currency.empty())
            Add(TSeverity::Error, row,
                "it has no selling currency, and so no price in " + reading_.baseCurrency,
                "choose its selling currency");
        else if (IsForeign(row))
            Add(TSeverity::Warning, row,
                "it is sold in " + currency + "; the scale gets the price in " +
                    reading_.baseCurrency,
                "check the rate of the currency");
        else if (IsConverted(row))
            Add(TSeverity::Error, row,
                "it is sold in " + currency +
                    ", the base currency, whose rate is not 1; the scale gets another price",
                "set the rate of the base currency to 1");
    }
    // A promotion's price is not converted: neither a new one nor a changed selling price.
    void CheckPromotion(TRowId row, const TActivePromotion& promotion) {
        const std::string currency(SellingCurrency(row));
        if (promotion.isPriceChange && IsForeign(row))
            Add(TSeverity::Error, row,
                "its promotion is worked out in " +
                    (currency.empty() ? "an unknown currency" : currency) +
                    " and is not converted into " + reading_.baseCurrency,
                "give the article a price in " + reading_.baseCurrency);
        if (!promotion.isPriceChange && !promotion.currency.empty() &&
            promotion.currency != reading_.baseCurrency)
            Add(TSeverity::Error, row,
                "its promotion has a price in " + promotion.currency +
                    "; the scale gets the same figure as if it were " + reading_.baseCurrency,
                "give the promotion a price in " + reading_.baseCurrency);
    }

    const TArticleReading& reading_;
    const TArticleTable& table_;
    const std::vector<TListedScale>& scales_;
    std::string_view base_;  // the name of the base currency
    bool isRetail_;
    std::unordered_map<TRowId, const TActivePromotion*> promotions_;
    std::vector<TProblem> problems_;
};

}  // namespace

std::vector<TProblem> ProblemsOfArticles(const TArticleReading& reading, int price,
                                         const std::vector<TListedScale>& scales) {
    return TArticleProblems(reading, price, scales).Find();
}

}  // namespace tolvane
