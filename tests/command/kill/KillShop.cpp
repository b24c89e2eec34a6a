#include "KillShop.h"

#include <gtest/gtest.h>

#include <future>

#include "tests/support/program/PlainShop.h"

namespace tolvane::test {
namespace {

using nlohmann::json;

// The second article by the piece has a command of its own for its price.
const std::vector<std::string> kFirst = {
    "update PLUES set PLU_IS_DELETED_ = 1 where PLU_SCALE_NUMB > 8 or PLU_SCALE_NUMB is null",
    "update PLUES set PLU_FORSCALES = '0'",
    "update PLUES set PLU_MEASUREUNIT_ID = 2 where PLU_SCALE_NUMB = 2", "delete from PROMOTIONS"};
const std::vector<std::string> kSecond = {
    "update PLUES set PLU_SELL_PRICE = PLU_SELL_PRICE + 1 where PLU_SCALE_NUMB <= 5"};
const std::vector<std::string> kThird = {
    "update PLUES set PLU_SELL_PRICE = PLU_SELL_PRICE + 2 where PLU_SCALE_NUMB >= 3",
    "update LABEL_PRINTING set LABEL_COMMENT1 = 'Нова съставка' where LABEL_PLUNUMB = 1001"};

// Made once; each shop takes copies.
const TScratchFolder& Databases() {
    static const TScratchFolder folder;
    static const bool made = [] {
        const std::array changes = {&kSecond, &kSecond, &kThird};
        for (std::size_t moment = 0; moment < kMoments.size(); ++moment) {
            std::vector<std::string> statements = kFirst;
            if (moment > 0)
                statements.insert(statements.end(), changes.at(moment)->begin(),
                                  changes.at(moment)->end());
            MakePlainShop(folder / kMoments.at(moment), statements);
        }
        return true;
    }();
    static_cast<void>(made);
    return folder;
}

TReference MakeReference(std::size_t moment) {
    TKillShop shop;
    const auto start = std::chrono::steady_clock::now();
    const auto run = shop.Write(moment, "--all");
    const auto end = run->WaitFor(kDeadline);
    EXPECT_TRUE(end && end->exitCode == 0) << run->Error();
    TReference reference;
    reference.duration = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    for (std::size_t i = 0; i < kScales; ++i) {
        reference.held.at(i) = HeldBy(shop.Scale(i).State());
        reference.claimed.at(i) = shop.Claimed(i);
        EXPECT_EQ(reference.held.at(i).size(), std::size_t{kArticles});
        EXPECT_EQ(reference.claimed.at(i).size(), std::size_t{kArticles});
    }
    return reference;
}

// Whether some moment's article is claimed so, and the scale holds it.
bool IsHeld(std::size_t scale, int number, const std::string& digest, const THeld& held) {
    const auto article = held.find(number);
    for (std::size_t moment = 0; moment < kMoments.size(); ++moment) {
        const TReference& reference = ReferenceAt(moment);
        if (reference.claimed.at(scale).at(number) == digest)
            return article != held.end() && article->second == reference.held.at(scale).at(number);
    }
    return false;
}

}  // namespace

THeld HeldBy(const simulator::TScaleState& state) {
    THeld held = state.articles;
    for (auto& [number, article] : held) {
        article.priceWrites = 0;
        for (auto& [parameter, text] : article.texts)
            text.writes = 0;
    }
    return held;
}

TKillShop::TKillShop() : TScaleShop({0, 0, 1}) {
    for (const char* name : kMoments)
        std::filesystem::copy_file(Databases() / name, *this / name);
}

std::unique_ptr<TProgramRun> TKillShop::Write(std::size_t moment, const std::string& which) const {
    return Start({"write", which, "--database", (*this / kMoments.at(moment)).string(), "--json"});
}

TClaimed TKillShop::Claimed(std::size_t scale) const {
    const std::string text =
        GetFile(StateFolder() / ("scale-" + std::to_string(scale + 1) + ".json"));
    TClaimed claimed;
    if (text.empty()) return claimed;
    const json ledger = json::parse(text);
    for (const auto& [number, claim] : ledger.at("claims").items()) {
        const std::string digestAndTime = claim.get<std::string>();
        claimed[std::stoi(number)] = digestAndTime.substr(0, digestAndTime.find(' '));
    }
    return claimed;
}

std::vector<int> TKillShop::Unchanged(std::size_t moment) const {
    const auto run = Start({"write", "--changed", "--dry-run", "--database",
                            (*this / kMoments.at(moment)).string(), "--json"});
    const auto end = run->WaitFor(kDeadline);
    EXPECT_TRUE(end && end->exitCode == 0) << run->Error();
    std::vector<int> unchanged;
    const json report = ReportOf(*run);
    for (const json& scale : report.at("scales"))
        unchanged.push_back(scale.at("unchanged"));
    return unchanged;
}

const TReference& ReferenceAt(std::size_t moment) {
    static const std::array references = [] {
        std::array<std::future<TReference>, kMoments.size()> runs;
        for (std::size_t each = 0; each < runs.size(); ++each)
            runs.at(each) = std::async(std::launch::async, &MakeReference, each);
        return std::array{runs[0].get(), runs[1].get(), runs[2].get()};
    }();
    return references.at(moment);
}

void ExpectComplete(TKillShop& shop, std::size_t moment) {
    const TReference& reference = ReferenceAt(moment);
    for (std::size_t i = 0; i < kScales; ++i) {
        const simulator::TScaleState state = shop.Scale(i).State();
        EXPECT_TRUE(HeldBy(state) == reference.held.at(i)) << "scale " << i + 1;
        EXPECT_FALSE(state.programming) << "scale " << i + 1;
        EXPECT_EQ(shop.Claimed(i), reference.claimed.at(i)) << "scale " << i + 1;
    }
    // The ledgers; no lock and no unfinished save.
    for (const auto& entry : std::filesystem::directory_iterator(shop.StateFolder()))
        EXPECT_EQ(entry.path().extension(), ".json") << entry.path();
}

std::vector<int> ExpectClaimsRight(TKillShop& shop, std::size_t moment) {
    std::vector<int> counts;
    for (std::size_t i = 0; i < kScales; ++i) {
        const THeld held = HeldBy(shop.Scale(i).State());
        int count = 0;
        for (const auto& [number, digest] : shop.Claimed(i)) {
            EXPECT_TRUE(IsHeld(i, number, digest, held))
                << "scale " << i + 1 << " does not hold article " << number << " as claimed";
            if (ReferenceAt(moment).claimed.at(i).at(number) == digest) ++count;
        }
        counts.push_back(count);
    }
    return counts;
}

json ReportOf(const TProgramRun& run) {
    return json::parse(run.Output(), nullptr, false);
}

}  // namespace tolvane::test
