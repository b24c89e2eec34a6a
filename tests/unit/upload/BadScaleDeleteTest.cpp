#include <ostream>
#include <string>
#include <vector>

#include "BadScale.h"
#include "CoreFixture.h"

namespace tolvane {
namespace {

using namespace test;  // NOLINT: the texts and faults of bad scales
using simulator::TFault;
using simulator::TFaultKind;

struct TBadDelete {
    std::string name;
    TFault fault;
    std::string error;  // after "ProcessDelete >> "; empty: the pass succeeds
    std::string commands;
    bool programming;  // how the scale is left
    std::string first;
    std::string second;
    std::string third;  // what it holds of its three articles
};

void PrintTo(const TBadDelete& deletion, std::ostream* out) {
    *out << deletion.name;
}

const std::string kPriceRefused =
    "[SetPrice] ErrCode: 7, Fail set PLU price: Scale return Error code: 7";
const std::string kOld = "250 'Old' 0,1";
const std::string kUnnamed = "0 'Old' 0,1";  // only the price was cleared
const std::string kGone = "cleared";

// Both kinds of delete pass do this before their first article.
const std::vector<TBadDelete> kBeforeDeletes = {
    {"IsSilentFromTheStart", Fault(TFaultKind::Silent, kWeight, 1), kPrgFails + kSilence,
     "3C 36 3C", false, kOld, kOld, kOld},
    {"RefusesProgrammingMode", Fault(TFaultKind::Error, kPrg, 1, 9),
     "[SetPrgMode] ErrCode: 9, Fail set Weight mode: Scale return Error code: 9", "3C 36 3C", false,
     kOld, kOld, kOld},
    {"GoesSilentAtProgrammingMode", Fault(TFaultKind::Silent, kPrg, 1), kPrgFails + kSilence,
     "3C 36 3C", false, kOld, kOld, kOld},
    {"AnswersProgrammingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kPrg, 1),
     kPrgFails + kNotTheCommand + "Exp:36 Rec:37)", "3C 36 3C", false, kOld, kOld, kOld},
    {"AnswersProgrammingModeFromAWrongAddress", Fault(TFaultKind::WrongAddress, kPrg, 1),
     kPrgFails + kNotTheAddress, "3C 36 3C", false, kOld, kOld, kOld},
    {"AnswersProgrammingModeWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kPrg, 1),
     kPrgFails + kNotTheSum + "Exp:36 Rec:37)", "3C 36 3C", false, kOld, kOld, kOld},
    {"AnswersProgrammingModeWithoutData", Fault(TFaultKind::Empty, kPrg, 1), kPrgFails + kNoCode,
     "3C 36 3C", false, kOld, kOld, kOld},
    {"SaysNothingToProgrammingMode", Fault(TFaultKind::NoReply, kPrg, 1), kPrgFails + kSilence,
     "3C 36 3C", false, kOld, kOld, kOld},
    {"IsMisheardAtProgrammingMode", Fault(TFaultKind::EtxFirst, kPrg, kEveryTime),
     kPrgFails + kMisheard, "3C 36 36 36 36 3C", false, kOld, kOld, kOld},
    {"RefusesTheVersion", Fault(TFaultKind::Error, kVersion, 1, 3),
     "[GetVersion] ErrCode: 3, Fail get version: Scale return Error code: 3", "3C 36 48 3C", false,
     kOld, kOld, kOld},
    // It never got the last request.
    {"GoesSilentAtTheVersion", Fault(TFaultKind::Silent, kVersion, 1), kVersionFails + kSilence,
     "3C 36 48 3C", true, kOld, kOld, kOld},
    {"AnswersTheVersionWithAWrongCommand", Fault(TFaultKind::WrongCommand, kVersion, 1),
     kVersionFails + kNotTheCommand + "Exp:48 Rec:49)", "3C 36 48 3C", false, kOld, kOld, kOld},
    {"AnswersTheVersionFromAWrongAddress", Fault(TFaultKind::WrongAddress, kVersion, 1),
     kVersionFails + kNotTheAddress, "3C 36 48 3C", false, kOld, kOld, kOld},
    // 48, "1.04" (31 2E 30 34), 3 articles and mode 1 are 10F.
    {"AnswersTheVersionWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kVersion, 1),
     kVersionFails + kNotTheSum + "Exp:0F Rec:10)", "3C 36 48 3C", false, kOld, kOld, kOld},
    {"IsMisheardAtEveryVersion", Fault(TFaultKind::EtxFirst, kVersion, kEveryTime),
     kVersionFails + kMisheard, "3C 36 48 48 48 48 3C", false, kOld, kOld, kOld},
    {"AnswersTheVersionWithoutData", Fault(TFaultKind::Empty, kVersion, 1), kVersionFails + kNoCode,
     "3C 36 48 3C", false, kOld, kOld, kOld},
    {"SaysNothingToTheVersion", Fault(TFaultKind::NoReply, kVersion, 1), kVersionFails + kSilence,
     "3C 36 48 3C", false, kOld, kOld, kOld},
};

const std::string kWholePass = "3C 36 48 4A:1 4C:1.0 4A:2 4C:2.0 4A:3 4C:3.0 3C";
const std::string kToSecondPrice = "3C 36 48 4A:1 4C:1.0 4A:2 3C";

const std::vector<TBadDelete> kEverything = {
    {"RefusesTheFirstWeighingMode", Fault(TFaultKind::Error, kWeight, 1, 4), "", kWholePass, false,
     kGone, kGone, kGone},
    {"SaysNothingToTheFirstWeighingMode", Fault(TFaultKind::NoReply, kWeight, 1), "", kWholePass,
     false, kGone, kGone, kGone},
    {"AnswersTheFirstWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 1),
     "", kWholePass, false, kGone, kGone, kGone},
    {"RefusesTheSecondPrice", Fault(TFaultKind::Error, kPrice, 2, 7), kPriceRefused, kToSecondPrice,
     false, kGone, kOld, kOld},
    {"GoesSilentAtTheSecondPrice", Fault(TFaultKind::Silent, kPrice, 2), kPriceFails + kSilence,
     kToSecondPrice, true, kGone, kOld, kOld},
    // It obeyed; only its answer was wrong.
    {"AnswersTheSecondPriceWithAWrongCommand", Fault(TFaultKind::WrongCommand, kPrice, 2),
     kPriceFails + kNotTheCommand + "Exp:4A Rec:4B)", kToSecondPrice, false, kGone, kUnnamed, kOld},
    {"AnswersTheSecondPriceFromAWrongAddress", Fault(TFaultKind::WrongAddress, kPrice, 2),
     kPriceFails + kNotTheAddress, kToSecondPrice, false, kGone, kUnnamed, kOld},
    {"AnswersTheSecondPriceWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kPrice, 2),
     kPriceFails + kNotTheSum + "Exp:4A Rec:4B)", kToSecondPrice, false, kGone, kUnnamed, kOld},
    {"AnswersTheSecondPriceWithoutData", Fault(TFaultKind::Empty, kPrice, 2), kPriceFails + kNoCode,
     kToSecondPrice, false, kGone, kUnnamed, kOld},
    {"IsMisheardOnceAtTheSecondPrice", Fault(TFaultKind::EtxFirst, kPrice, 2), "",
     "3C 36 48 4A:1 4C:1.0 4A:2 4A:2 4C:2.0 4A:3 4C:3.0 3C", false, kGone, kGone, kGone},
    {"IsMisheardAtEveryPrice", Fault(TFaultKind::EtxFirst, kPrice, kEveryTime),
     kPriceFails + kMisheard, "3C 36 48 4A:1 4A:1 4A:1 4A:1 3C", false, kUnnamed, kOld, kOld},
    {"RefusesEveryName", Fault(TFaultKind::Error, kParam, kEveryTime, 5), "", kWholePass, false,
     kUnnamed, kUnnamed, kUnnamed},
    {"SaysNothingToTheSecondName", Fault(TFaultKind::NoReply, kParam, 2), "", kWholePass, false,
     kGone, kUnnamed, kGone},
    {"AnswersEveryNameWithAWrongCommand", Fault(TFaultKind::WrongCommand, kParam, kEveryTime), "",
     kWholePass, false, kGone, kGone, kGone},
    {"AnswersEveryNameWithoutData", Fault(TFaultKind::Empty, kParam, kEveryTime), "", kWholePass,
     false, kGone, kGone, kGone},
    {"IsMisheardAtEveryName", Fault(TFaultKind::EtxFirst, kParam, kEveryTime), "",
     "3C 36 48 4A:1 4C:1.0 4C:1.0 4C:1.0 4C:1.0 4A:2 4C:2.0 4C:2.0 4C:2.0 4C:2.0 "
     "4A:3 4C:3.0 4C:3.0 4C:3.0 4C:3.0 3C",
     false, kGone, kGone, kGone},
    {"GoesSilentAtTheSecondName", Fault(TFaultKind::Silent, kParam, 2), kPriceFails + kSilence,
     "3C 36 48 4A:1 4C:1.0 4A:2 4C:2.0 4A:3 3C", true, kGone, kUnnamed, kOld},
    {"RefusesTheLastWeighingMode", Fault(TFaultKind::Error, kWeight, 2, 4), "", kWholePass, true,
     kGone, kGone, kGone},
    {"GoesSilentAtTheLastWeighingMode", Fault(TFaultKind::Silent, kWeight, 2), "", kWholePass, true,
     kGone, kGone, kGone},
    {"SaysNothingToTheLastWeighingMode", Fault(TFaultKind::NoReply, kWeight, 2), "", kWholePass,
     true, kGone, kGone, kGone},
    // It obeyed; only its answer was wrong.
    {"AnswersTheLastWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 2), "",
     kWholePass, false, kGone, kGone, kGone},
};

const std::string kWholeList = "3C 36 48 49:1 4C:1.0 49:3 4C:3.0 3C";
const std::string kToSecondListed = "3C 36 48 49:1 4C:1.0 49:3 3C";

// Articles 1 and 3 are listed.
const std::vector<TBadDelete> kListed = {
    {"RefusesTheFirstWeighingMode", Fault(TFaultKind::Error, kWeight, 1, 4), "", kWholeList, false,
     kGone, kOld, kGone},
    {"SaysNothingToTheFirstWeighingMode", Fault(TFaultKind::NoReply, kWeight, 1), "", kWholeList,
     false, kGone, kOld, kGone},
    {"AnswersTheFirstWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 1),
     "", kWholeList, false, kGone, kOld, kGone},
    {"RefusesTheSecondPrice", Fault(TFaultKind::Error, kListedPrice, 2, 7), kPriceRefused,
     kToSecondListed, false, kGone, kOld, kOld},
    {"GoesSilentAtTheSecondPrice", Fault(TFaultKind::Silent, kListedPrice, 2),
     kPriceFails + kSilence, kToSecondListed, true, kGone, kOld, kOld},
    {"AnswersTheSecondPriceWithAWrongCommand", Fault(TFaultKind::WrongCommand, kListedPrice, 2),
     kPriceFails + kNotTheCommand + "Exp:49 Rec:4A)", kToSecondListed, false, kGone, kOld,
     kUnnamed},
    {"AnswersTheSecondPriceFromAWrongAddress", Fault(TFaultKind::WrongAddress, kListedPrice, 2),
     kPriceFails + kNotTheAddress, kToSecondListed, false, kGone, kOld, kUnnamed},
    {"AnswersTheSecondPriceWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kListedPrice, 2),
     kPriceFails + kNotTheSum + "Exp:49 Rec:4A)", kToSecondListed, false, kGone, kOld, kUnnamed},
    {"AnswersTheSecondPriceWithoutData", Fault(TFaultKind::Empty, kListedPrice, 2),
     kPriceFails + kNoCode, kToSecondListed, false, kGone, kOld, kUnnamed},
    {"IsMisheardOnceAtTheSecondPrice", Fault(TFaultKind::EtxFirst, kListedPrice, 2), "",
     "3C 36 48 49:1 4C:1.0 49:3 49:3 4C:3.0 3C", false, kGone, kOld, kGone},
    {"IsMisheardAtEveryPrice", Fault(TFaultKind::EtxFirst, kListedPrice, kEveryTime),
     kPriceFails + kMisheard, "3C 36 48 49:1 49:1 49:1 49:1 3C", false, kUnnamed, kOld, kOld},
    {"RefusesEveryName", Fault(TFaultKind::Error, kParam, kEveryTime, 5), "", kWholeList, false,
     kUnnamed, kOld, kUnnamed},
    {"GoesSilentAtTheFirstName", Fault(TFaultKind::Silent, kParam, 1), kPriceFails + kSilence,
     kToSecondListed, true, kUnnamed, kOld, kOld},
    {"AnswersEveryNameWithoutData", Fault(TFaultKind::Empty, kParam, kEveryTime), "", kWholeList,
     false, kGone, kOld, kGone},
    {"SaysNothingToTheFirstName", Fault(TFaultKind::NoReply, kParam, 1), "", kWholeList, false,
     kUnnamed, kOld, kGone},
    {"AnswersEveryNameWithAWrongCommand", Fault(TFaultKind::WrongCommand, kParam, kEveryTime), "",
     kWholeList, false, kGone, kOld, kGone},
    {"IsMisheardAtEveryName", Fault(TFaultKind::EtxFirst, kParam, kEveryTime), "",
     "3C 36 48 49:1 4C:1.0 4C:1.0 4C:1.0 4C:1.0 49:3 4C:3.0 4C:3.0 4C:3.0 4C:3.0 3C", false, kGone,
     kOld, kGone},
    {"RefusesTheLastWeighingMode", Fault(TFaultKind::Error, kWeight, 2, 4), "", kWholeList, true,
     kGone, kOld, kGone},
    {"GoesSilentAtTheLastWeighingMode", Fault(TFaultKind::Silent, kWeight, 2), "", kWholeList, true,
     kGone, kOld, kGone},
    {"SaysNothingToTheLastWeighingMode", Fault(TFaultKind::NoReply, kWeight, 2), "", kWholeList,
     true, kGone, kOld, kGone},
    // It obeyed; only its answer was wrong.
    {"AnswersTheLastWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 2), "",
     kWholeList, false, kGone, kOld, kGone},
};

class BadScaleDeleteTest : public TCorePassTest {
public:
    BadScaleDeleteTest() {
        options.scale.capacity = 3;
        options.initialState.emplace();
        for (int number = 1; number <= 3; ++number) {
            simulator::TArticle& article = options.initialState->articles[number];
            article.number = number;
            article.price = 250;
            article.texts[0].bytes = {'O', 'l', 'd'};
            article.texts[1].bytes = {'x'};
        }
    }
    void Expect(const TBadDelete& expected, const std::vector<std::string>& lines) {
        options.faults.faults = {expected.fault};
        EXPECT_EQ(Delete(lines), expected.error.empty());
        EXPECT_EQ(session->LastError,
                  expected.error.empty() ? "" : "ProcessDelete >> " + expected.error);
        EXPECT_EQ(Commands(), expected.commands);
        EXPECT_EQ(IsProgramming(), expected.programming);
        EXPECT_EQ(Held(1), expected.first);
        EXPECT_EQ(Held(2), expected.second);
        EXPECT_EQ(Held(3), expected.third);
    }

    const std::vector<std::string> lines1And3 = {"1|22001|1|0|0|1.00|0|0|A|x|||||0|0|101|",
                                                 "3|22003|1|0|0|1.00|0|0|C|x|||||0|0|103|"};
};

class BadScaleDeleteEverythingTest : public BadScaleDeleteTest,
                                     public ::testing::WithParamInterface<TBadDelete> {};
class BadScaleDeleteListedTest : public BadScaleDeleteTest,
                                 public ::testing::WithParamInterface<TBadDelete> {};

TEST_P(BadScaleDeleteEverythingTest, ErrorCommandsAndTheScalesStateAreExact) {
    Expect(GetParam(), {});
}

TEST_P(BadScaleDeleteListedTest, ErrorCommandsAndTheScalesStateAreExact) {
    Expect(GetParam(), lines1And3);
}

TEST_F(BadScaleDeleteTest, DeletingListedArticlesChangesNothingButTheirPriceAndName) {
    EXPECT_TRUE(Delete(lines1And3));
    const simulator::TScaleState state = core->State();
    for (const int number : {1, 3}) {
        const simulator::TArticle& article = state.articles.at(number);
        EXPECT_EQ(article.price, 0);
        EXPECT_EQ(article.weight, std::nullopt);
        simulator::TBytes cleared(31, ' ');
        cleared[0] = 0;
        EXPECT_EQ(article.texts.at(0).bytes, cleared);
        EXPECT_EQ(article.texts.at(1), options.initialState->articles.at(number).texts.at(1));
        EXPECT_EQ(article.texts.size(), 2U);
    }
    EXPECT_EQ(state.articles.at(2), options.initialState->articles.at(2));
    EXPECT_EQ(state.articles.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(BeforeArticles, BadScaleDeleteEverythingTest,
                         ::testing::ValuesIn(kBeforeDeletes), kRowName);
INSTANTIATE_TEST_SUITE_P(AtArticles, BadScaleDeleteEverythingTest, ::testing::ValuesIn(kEverything),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(BeforeArticles, BadScaleDeleteListedTest,
                         ::testing::ValuesIn(kBeforeDeletes), kRowName);
INSTANTIATE_TEST_SUITE_P(AtArticles, BadScaleDeleteListedTest, ::testing::ValuesIn(kListed),
                         kRowName);

}  // namespace
}  // namespace tolvane
