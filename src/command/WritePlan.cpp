#include "command/WritePlan.h"

#include <set>
#include <string>
#include <unordered_map>
#include <utility>

#include "command/ArticleDigest.h"
#include "scale/DevElicomScaleUnit.h"
#include "text/Failure.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

constexpr std::int32_t kHighestPrice = 999999;  // hundredths: six digits

// Of a price that no scale can hold.
bool IsTooDear(const TScaleArticle& article) {
    return article.price >= 1.0 && !IsPriceOfScale(article.plu.PriceHundredths);
}

class TPlanner {
public:
    TPlanner(const TArticleTable& table, const TScaleRec& rec, const TScaleVersion& version,
             const TLedger& ledger, const TWriteChoice& choice)
        : table_(table),
          version_(version),
          ledger_(ledger),
          choice_(choice),
          digests_(rec, version) {}

    TWritePlan Make(const TScaleArticles& articles) {
        for (const TLeftOutArticle& article : articles.leftOut)
            LeaveOut(article);
        const auto winners = WinnersOf(articles, version_.maxPlu);
        for (std::size_t i = 0; i < articles.articles.size(); ++i)
            Plan(articles.articles[i], i, winners);
        FindStrays(articles);
        return std::move(plan_);
    }

private:
    std::int32_t InScale(std::int32_t number) const {
        return NumberInScale(number, version_.maxPlu);
    }
    bool IsChosen(std::int32_t number) const {
        return !choice_.numbers || choice_.numbers->contains(number);
    }
    // An article that the list has, even one that cannot be written, is not a stray.
    void FindStrays(const TScaleArticles& articles) {
        std::set<std::int32_t> strays = ledger_.Numbers();
        for (const TScaleArticle& article : articles.articles)
            strays.erase(InScale(article.plu.ScaleNumber));
        for (const TLeftOutArticle& article : articles.leftOut)
            strays.erase(InScale(NumberOf(article)));
        plan_.strays.assign(strays.begin(), strays.end());
    }
    std::int32_t NumberOf(const TLeftOutArticle& article) const {
        return table_.Integer(article.row, TField::PLU_SCALE_NUMB);
    }
    void LeaveOut(const TLeftOutArticle& article) {
        const std::int32_t number = NumberOf(article);
        if (!IsChosen(number)) return;
        plan_.leftOut.push_back({.number = number,
                                 .name = std::string(table_.Text(article.row, TField::PLU_NAME)),
                                 .reason = std::string(FaultText(article.fault))});
    }
    void Plan(const TScaleArticle& article, std::size_t index, const TWinners& winners) {
        const std::int32_t number = article.plu.ScaleNumber;
        if (!IsChosen(number)) return;
        TRefusedArticle refused{.number = number,
                                .name = article.plu.LabelName1,
                                .reason = WhyNotWritten(article, index, winners, version_.maxPlu)};
        if (refused.reason.empty())
            Add(article, InScale(number), std::move(refused));
        else
            (IsTooDear(article) ? plan_.refused : plan_.leftOut).push_back(std::move(refused));
    }
    void Add(const TScaleArticle& article, std::int32_t cut, TRefusedArticle refused) {
        TPlannedArticle planned{.plu = article.plu, .uncutNumber = article.plu.ScaleNumber};
        planned.plu.ScaleNumber = cut;
        try {
            planned.digest = digests_.Of(planned.plu, planned.uncutNumber);
        } catch (const TFailure& failure) {
            refused.reason = failure.Text();
            plan_.refused.push_back(std::move(refused));
            return;
        }
        if (choice_.changedOnly && ledger_.Holds(cut, planned.digest))
            ++plan_.unchanged;
        else
            plan_.toWrite.push_back(std::move(planned));
    }

    const TArticleTable& table_;
    const TScaleVersion& version_;
    const TLedger& ledger_;
    const TWriteChoice& choice_;
    TArticleDigest digests_;
    TWritePlan plan_;
};

}  // namespace

std::int32_t NumberInScale(std::int32_t number, std::int32_t maxPlu) {
    const std::int32_t cut = PluTail(number, maxPlu);
    return cut >= 1 && cut <= maxPlu ? cut : 0;
}

bool IsPriceOfScale(std::int32_t hundredths) {
    return hundredths > 0 && hundredths <= kHighestPrice;
}

TWinners WinnersOf(const TScaleArticles& articles, std::int32_t maxPlu) {
    TWinners winners;
    for (std::size_t i = 0; i < articles.articles.size(); ++i) {
        const TPLUD& plu = articles.articles[i].plu;
        const std::int32_t number = NumberInScale(plu.ScaleNumber, maxPlu);
        if (number != 0 && IsPriceOfScale(plu.PriceHundredths)) winners[number] = i;
    }
    return winners;
}

std::string WhyNotWritten(const TScaleArticle& article, std::size_t index, const TWinners& winners,
                          std::int32_t maxPlu) {
    const std::int32_t number = NumberInScale(article.plu.ScaleNumber, maxPlu);
    if (number == 0) return NoSuchNumberText(maxPlu);
    if (!IsPriceOfScale(article.plu.PriceHundredths)) return std::string(BadPriceText(article));
    if (winners.at(number) != index)
        return "another article has the number " + std::to_string(number) + " in this scale, too";
    return {};
}

TWritePlan PlanWrite(const TScaleArticles& articles, const TArticleTable& table,
                     const TScaleRec& rec, const TScaleVersion& version, const TLedger& ledger,
                     const TWriteChoice& choice) {
    return TPlanner(table, rec, version, ledger, choice).Make(articles);
}

std::string_view BadPriceText(const TScaleArticle& article) {
    if (article.price < 0.0) return "the price is below zero";
    return IsTooDear(article) ? "the price is above 9999.99, which a scale cannot hold"
                              : "the price is below 0.005, which is zero";
}

std::string NoSuchNumberText(std::int32_t maxPlu) {
    return "the scale has no such number: it has 1 to " + std::to_string(maxPlu);
}

std::string_view FaultText(TLineFault fault) {
    switch (fault) {
        case TLineFault::Barcode:
            return "the barcode is not of exactly 5 characters";
        case TLineFault::ZeroPrice:
            return "the price is zero";
        case TLineFault::Name1:
            return "label name 1 is empty";
        case TLineFault::Name2:
            return "label name 2 is empty";
    }
    return {};
}

}  // namespace tolvane
