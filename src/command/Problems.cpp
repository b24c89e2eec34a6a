#include "command/Problems.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "command/RunLock.h"
#include "command/ShownTexts.h"
#include "command/WritePlan.h"
#include "text/Cp1251.h"
#include "text/IpAddress.h"
#include "text/Numbers.h"
#include "upload/ArticleLine.h"

namespace tolvane {
namespace {

constexpr std::int32_t kHighestPrice = 999999;  // hundredths: six digits
constexpr std::int32_t kLongestBestBefore = 365;

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

bool IsKnownModel(std::int32_t type) {
    return type == kScaleTypeEvl || type == kScaleTypeEts || type == kScaleTypeS300;
}

TProblem OfScale(const TScaleRec& rec, std::string problem, std::string cure,
                 TSeverity severity = TSeverity::Error) {
    return {.severity = severity,
            .scale = rec.ScaleNumb,
            .name = rec.ScaleName.Str(),
            .problem = std::move(problem),
            .cure = std::move(cure)};
}

std::string FaultCure(TLineFault fault) {
    switch (fault) {
        case TLineFault::Barcode:
            return "give it a barcode of 5 characters without |";
        case TLineFault::ZeroPrice:
            return "give it the chosen price";
        case TLineFault::Name1:
        case TLineFault::Name2:
            return "fill the name, or choose another one with --name1 and --name2";
    }
    return {};
}

// Scales that nothing tells apart on the wire.
std::string WirePlaceOf(const TScaleRec& rec) {
    std::string place = RunLockName(rec);
    if (rec.CommType == kCommSerial) place += " " + std::to_string(rec.ScaleAddr);
    return place;
}

void CheckAddress(const TScaleRec& rec, const std::function<bool(std::uint32_t)>& hasRoute,
                  std::vector<TProblem>& problems) {
    if (!IsNetworkConnection(rec.CommType)) return;
    const auto address = ParseIpV4(rec.TCPAddress.Str());
    if (!address)
        problems.push_back(OfScale(rec, Quoted(rec.TCPAddress.View()) + " is not an IP address",
                                   "correct the scale's address"));
    else if (!hasRoute(*address))
        problems.push_back(OfScale(rec, "this computer has no route to " + rec.TCPAddress.Str(),
                                   "check the network, or correct the scale's address"));
}

void CheckKinds(const TScaleRec& rec, std::vector<TProblem>& problems) {
    if (!IsKnownConnection(rec.CommType))
        problems.push_back(OfScale(rec, "its kind of connection is unknown", "choose one"));
    if (!IsKnownModel(rec.ScaleType))
        problems.push_back(OfScale(rec,
                                   "model " + std::to_string(rec.ScaleType) +
                                       " is unknown; it would get price, name, best-before and "
                                       "barcode only",
                                   "choose the model"));
}

TProblem SamePlace(const TScaleRec& rec, const TScaleRec& other) {
    return OfScale(rec,
                   "it has the connection of scale " + std::to_string(other.ScaleNumb) + " " +
                       Quoted(other.ScaleName.View()),
                   "give each scale a connection of its own");
}

TProblem SameNumber(const TScaleRec& rec, const TScaleRec& other) {
    return OfScale(rec,
                   "it has the number of scale " + Quoted(other.ScaleName.View()) +
                       "; what has changed cannot be told, so everything is written each time",
                   "give each scale a number of its own", TSeverity::Warning);
}

class TScaleProblems {
public:
    TScaleProblems(const TArticleTable& table, const TScaleRec& rec, const TScaleVersion& version)
        : table_(table), rec_(rec), version_(version) {}

    std::vector<TProblem> Find(const TScaleArticles& articles) {
        for (const TLeftOutArticle& article : articles.leftOut)
            Add(TSeverity::Error, table_.Integer(article.row, TField::PLU_SCALE_NUMB),
                std::string(table_.Text(article.row, TField::PLU_NAME)),
                std::string(FaultText(article.fault)), FaultCure(article.fault));
        FindOverwritten(articles);
        for (const TScaleArticle& article : articles.articles)
            Check(article);
        return std::move(problems_);
    }

private:
    void Add(TSeverity severity, std::int32_t number, std::string name, std::string problem,
             std::string cure) {
        problems_.push_back({.severity = severity,
                             .scale = rec_.ScaleNumb,
                             .number = number,
                             .name = std::move(name),
                             .problem = std::move(problem),
                             .cure = std::move(cure)});
    }
    void Add(TSeverity severity, const TScaleArticle& article, std::string problem,
             std::string cure) {
        Add(severity, article.plu.ScaleNumber, article.plu.LabelName1, std::move(problem),
            std::move(cure));
    }
    void FindOverwritten(const TScaleArticles& articles) {
        const auto winners = WinnersOf(articles, version_.maxPlu);
        for (std::size_t i = 0; i < articles.articles.size(); ++i) {
            const TScaleArticle& article = articles.articles[i];
            const std::int32_t number = NumberInScale(article.plu.ScaleNumber, version_.maxPlu);
            const auto found = winners.find(number);
            // What cannot be written overwrites nothing and is told elsewhere.
            if (found == winners.end() || found->second == i || article.plu.PriceHundredths <= 0)
                continue;
            const TPLUD& winner = articles.articles[found->second].plu;
            Add(TSeverity::Error, article,
                "it has the number " + std::to_string(number) + " in the scale, as " +
                    std::to_string(winner.ScaleNumber) + " " + Quoted(winner.LabelName1) +
                    ", which wins",
                "give one of them another number");
        }
    }
    void Check(const TScaleArticle& article) {
        const TPLUD& plu = article.plu;
        if (NumberInScale(plu.ScaleNumber, version_.maxPlu) == 0)
            Add(TSeverity::Error, article,
                "the scale has no such number: it has 1 to " + std::to_string(version_.maxPlu),
                "give it another number");
        if (plu.PriceHundredths <= 0)
            Add(TSeverity::Error, article, std::string(BadPriceText(plu.PriceHundredths)),
                "correct the price");
        if (plu.PriceHundredths > kHighestPrice)
            Add(TSeverity::Error, article, "the price is above 9999.99, which a scale cannot hold",
                "correct the price, or sell it by another unit");
        for (const TShownText& text : ShownTexts(plu, plu.ScaleNumber, rec_, version_))
            Check(article, text);
    }
    void Check(const TScaleArticle& article, const TShownText& text) {
        if (text.isCut)
            Add(TSeverity::Warning, article, text.label + " is cut to " + Quoted(text.shown),
                "shorten the text");
        if (!text.lost.empty())
            Add(TSeverity::Warning, article,
                "the scale's code table lacks " + Quoted(text.lost) + " of " + text.label +
                    "; it would show " + Quoted(text.shown),
                "use other letters, or choose the code table that the scale really has");
    }

    const TArticleTable& table_;
    const TScaleRec& rec_;
    const TScaleVersion& version_;
    std::vector<TProblem> problems_;
};

// Problems of articles, whatever the scale.
class TArticleProblems {
public:
    TArticleProblems(const TArticleReading& reading, int price)
        : reading_(reading), table_(reading.articles), isRetail_(price == kRetailPrice) {
        if (!isRetail_) return;
        for (const TActivePromotion& promotion : reading.promotions)
            promotions_[promotion.row] = &promotion;
    }

    std::vector<TProblem> Find() {
        for (const TRowId row : table_.Order()) {
            CheckScales(row);
            CheckBestBefore(row);
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
        if (!days || *days <= kLongestBestBefore) return;
        Add(TSeverity::Error, row,
            "best before " + std::to_string(*days) + " days is above 365: the scale gets 0",
            "correct the number of days");
    }
    // Selling prices are converted into the base currency, by the currency's rate.
    bool IsConverted(TRowId row) const {
        return table_.Float(row, TField::PLU_SELL_PRICE) !=
               table_.Float(row, TField::PLU_SELL_PRICE_LV);
    }
    std::string SellingCurrency(TRowId row) const {
        return std::string(table_.Text(row, TField::CURR_SELL_NAME));
    }
    void CheckCurrency(TRowId row) {
        if (!IsConverted(row)) return;
        const std::string currency = SellingCurrency(row);
        if (currency.empty())
            Add(TSeverity::Error, row,
                "it has no selling currency, and so no price in " + reading_.baseCurrency,
                "choose its selling currency");
        else
            Add(TSeverity::Warning, row,
                "it is sold in " + currency + "; the scale gets the price in " +
                    reading_.baseCurrency,
                "check the rate of the currency");
    }
    // A promotion's price is not converted: neither a new one nor a changed selling price.
    void CheckPromotion(TRowId row, const TActivePromotion& promotion) {
        const std::string cure = "give the article a price in " + reading_.baseCurrency;
        if (promotion.isPriceChange && IsConverted(row))
            Add(TSeverity::Error, row,
                "its promotion is worked out in " + SellingCurrency(row) +
                    " and is not converted into " + reading_.baseCurrency,
                cure);
        if (!promotion.isPriceChange && !promotion.currency.empty() &&
            promotion.currency != reading_.baseCurrency)
            Add(TSeverity::Error, row,
                "its promotion has a price in " + promotion.currency +
                    "; the scale gets the same figure as if it were " + reading_.baseCurrency,
                "give the promotion a price in " + reading_.baseCurrency);
    }

    const TArticleReading& reading_;
    const TArticleTable& table_;
    bool isRetail_;
    std::unordered_map<TRowId, const TActivePromotion*> promotions_;
    std::vector<TProblem> problems_;
};

}  // namespace

std::vector<TProblem> ProblemsOfScales(const std::vector<TScaleRec>& scales,
                                       const std::function<bool(std::uint32_t)>& hasRoute) {
    std::vector<TProblem> problems;
    std::map<std::string, const TScaleRec*> places;
    std::map<std::int32_t, const TScaleRec*> numbers;
    for (const TScaleRec& rec : scales) {
        CheckKinds(rec, problems);
        CheckAddress(rec, hasRoute, problems);
        const auto [place, isNewPlace] = places.try_emplace(WirePlaceOf(rec), &rec);
        if (!isNewPlace) problems.push_back(SamePlace(rec, *place->second));
        const auto [number, isNewNumber] = numbers.try_emplace(rec.ScaleNumb, &rec);
        if (!isNewNumber) problems.push_back(SameNumber(rec, *number->second));
    }
    return problems;
}

std::vector<TProblem> ProblemsOfArticles(const TArticleReading& reading, int price) {
    return TArticleProblems(reading, price).Find();
}

std::vector<TProblem> ProblemsInScale(const TScaleArticles& articles, const TArticleTable& table,
                                      const TScaleRec& rec, const TScaleVersion& version) {
    return TScaleProblems(table, rec, version).Find(articles);
}

}  // namespace tolvane
