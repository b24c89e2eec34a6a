// Thousands of exchanges over each wire with a scale of which one reply in twenty is faulty. The
// seed decides every outcome in advance. TOLVANE_SOAK_EXCHANGES and TOLVANE_SOAK_SEED choose other
// numbers.
#include <gtest/gtest.h>

#include "tests/integration/comm/soak/SoakRun.h"
#include "tests/support/Environment.h"

namespace tolvane::test {
namespace {

constexpr int kExchanges = 10'000;
constexpr int kSeed = 20240501;

struct TSoakWire {
    const char* name;
    TWire wire;
};

class SoakTest : public testing::TestWithParam<TSoakWire> {};

// What each article's price must be in the scale, and how often it was written.
struct TWritten {
    int price = 0;
    int priceWrites = 0;
    int textWrites = 0;
};

std::map<int, TWritten> WrittenArticles(const std::vector<TSoakExchange>& plan) {
    std::map<int, TWritten> written;
    for (const TSoakExchange& exchange : plan) {
        const bool obeyed = exchange.fault == nullptr || exchange.fault->obeys;
        if (!obeyed || exchange.expected.requests == 0) continue;
        if (exchange.command == TSoakCommand::Version || exchange.command == TSoakCommand::PrgMode)
            continue;
        TWritten& article = written[exchange.plu];
        if (exchange.command == TSoakCommand::Param) {
            article.textWrites += exchange.expected.requests;
        } else {
            article.price = exchange.hundredths;
            article.priceWrites += exchange.expected.requests;
        }
    }
    return written;
}

void ExpectArticles(const std::map<int, TWritten>& written, const simulator::TScaleState& state) {
    EXPECT_EQ(state.articles.size(), written.size());
    for (const auto& [number, expected] : written) {
        ASSERT_EQ(state.articles.count(number), 1U) << number;
        const simulator::TArticle& article = state.articles.at(number);
        EXPECT_EQ(article.price, expected.price) << number;
        EXPECT_EQ(article.priceWrites, expected.priceWrites) << number;
        ASSERT_EQ(article.texts.count(kSoakParameter), 1U) << number;
        EXPECT_EQ(article.texts.at(kSoakParameter).writes, expected.textWrites) << number;
    }
}

TEST_P(SoakTest, EveryFaultHasItsTextAndNoWrongReplyIsAccepted) {
    const int count = CountFromEnvironment("TOLVANE_SOAK_EXCHANGES", kExchanges);
    const int seed = CountFromEnvironment("TOLVANE_SOAK_SEED", kSeed);
    ASSERT_GT(count, 0);
    std::vector<TSoakExchange> plan =
        MakePlan(GetParam().wire, static_cast<std::uint32_t>(seed), count);
    TSoakExchange first;
    first.command = TSoakCommand::PrgMode;
    plan.insert(plan.begin(), first);

    TSoakRun run(GetParam().wire);
    std::map<std::string, int> expected;
    int faults = 0;
    for (std::size_t i = 0; i < plan.size() && !HasFailure(); ++i) {
        faults += plan[i].fault != nullptr ? 1 : 0;
        SCOPED_TRACE("exchange " + std::to_string(i) + ": " +
                     (plan[i].fault != nullptr ? plan[i].fault->name : "no fault"));
        ++expected[ExpectedText(plan[i], GetParam().wire, run.Address())];
        run.Do(plan[i]);
    }
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
    EXPECT_EQ(run.texts, expected);
    ExpectArticles(WrittenArticles(plan), run.State());
    EXPECT_EQ(run.State().requests.total, run.RequestCount());
    EXPECT_EQ(run.State().requests.malformed, 0);
    EXPECT_EQ(run.State().requests.badChecksum, 0);
    std::printf("%d exchanges, %d faults, %zu different texts, %d answered\n", count, faults,
                run.texts.size() - 1, run.texts[""]);
}

// The plan itself: about one exchange in twenty has a fault, the same seed makes the same plan, and
// every kind of fault that the wire can show occurs.
TEST_P(SoakTest, ThePlanHoldsEveryFaultOfTheWireAndIsRepeatable) {
    const auto onWire = static_cast<std::size_t>(GetParam().wire);
    const auto plan = MakePlan(GetParam().wire, kSeed, kExchanges);
    const auto again = MakePlan(GetParam().wire, kSeed, kExchanges);
    std::map<std::string, int> drawn;
    int faults = 0;
    for (std::size_t i = 0; i < plan.size(); ++i) {
        ASSERT_EQ(plan[i].fault, again[i].fault) << i;
        ASSERT_EQ(plan[i].hundredths, again[i].hundredths) << i;
        if (plan[i].fault == nullptr) continue;
        ++faults;
        ++drawn[plan[i].fault->name];
    }
    EXPECT_NEAR(faults, kExchanges / 20, kExchanges / 100);
    for (const TSoakFault& fault : SoakFaults()) {
        if (fault.onWire[onWire].result == TResult::NotDrawn) continue;
        EXPECT_GT(drawn[fault.name], 0) << fault.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Wires, SoakTest,
                         testing::Values(TSoakWire{"Tcp", TWire::Tcp}, TSoakWire{"Udp", TWire::Udp},
                                         TSoakWire{"Serial", TWire::Serial}),
                         [](const auto& wire) { return wire.param.name; });

}  // namespace
}  // namespace tolvane::test
