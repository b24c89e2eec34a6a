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

// Where the scale misbehaves: the n-th request of a command.
struct TBadUpload {
    std::string name;
    TFault fault;
    std::string error;  // empty: the pass succeeds
    std::string commands;
    bool programming;  // how the scale is left
    std::string first;
    std::string second;  // what it holds of articles 12 and 13
};

void PrintTo(const TBadUpload& upload, std::ostream* out) {
    *out << upload.name;
}

const std::string kNoArticle = "Fail! Plu: 0 \"\" ";
const std::string kPrice13Fails = "Fail! Plu: 13 \"B\" " + kPriceFails;
const std::string kName12 =
    "Fail set parameter: Plu:12 ParN:0 ParT:\"A                              \"\r\n";
const std::string kBestBefore13 = "Fail set parameter: Plu:13 ParN:4 ParT:\"\x01\x05\"\r\n";

const std::string kStart = "3C 36 48 ";
const std::string kArticle12 = "4A:12 4C:12.0 4C:12.4 4C:12.5 ";
const std::string kArticle13 = "4A:13 4C:13.0 4C:13.4 4C:13.5 ";
const std::string kWhole = kStart + kArticle12 + kArticle13 + "3C";
const std::string kHeld12 = "100 'A' 0,4,5";
const std::string kHeld13 = "250 'B' 0,4,5";

// Before the first article.
const std::vector<TBadUpload> kBeforeArticles = {
    {"RefusesTheFirstWeighingMode", Fault(TFaultKind::Error, kWeight, 1, 4), "", kWhole, false,
     kHeld12, kHeld13},
    {"SaysNothingToTheFirstWeighingMode", Fault(TFaultKind::NoReply, kWeight, 1), "", kWhole, false,
     kHeld12, kHeld13},
    {"AnswersTheFirstWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 1),
     "", kWhole, false, kHeld12, kHeld13},
    {"IsSilentFromTheStart", Fault(TFaultKind::Silent, kWeight, 1),
     kNoArticle + kPrgFails + kSilence, "3C 36", false, "-", "-"},
    {"RefusesProgrammingMode", Fault(TFaultKind::Error, kPrg, 1, 9),
     kNoArticle + "[SetPrgMode] ErrCode: 9, Fail set Weight mode: Scale return Error code: 9",
     "3C 36", false, "-", "-"},
    {"GoesSilentAtProgrammingMode", Fault(TFaultKind::Silent, kPrg, 1),
     kNoArticle + kPrgFails + kSilence, "3C 36", false, "-", "-"},
    {"SaysNothingToProgrammingMode", Fault(TFaultKind::NoReply, kPrg, 1),
     kNoArticle + kPrgFails + kSilence, "3C 36", false, "-", "-"},
    // It obeyed; only its answer was wrong.
    {"AnswersProgrammingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kPrg, 1),
     kNoArticle + kPrgFails + kNotTheCommand + "Exp:36 Rec:37)", "3C 36", true, "-", "-"},
    {"AnswersProgrammingModeFromAWrongAddress", Fault(TFaultKind::WrongAddress, kPrg, 1),
     kNoArticle + kPrgFails + kNotTheAddress, "3C 36", true, "-", "-"},
    {"AnswersProgrammingModeWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kPrg, 1),
     kNoArticle + kPrgFails + kNotTheSum + "Exp:36 Rec:37)", "3C 36", true, "-", "-"},
    {"AnswersProgrammingModeWithoutData", Fault(TFaultKind::Empty, kPrg, 1),
     kNoArticle + kPrgFails + kNoCode, "3C 36", true, "-", "-"},
    {"RefusesTheVersion", Fault(TFaultKind::Error, kVersion, 1, 3),
     kNoArticle + "[GetVersion] ErrCode: 3, Fail get version: Scale return Error code: 3",
     "3C 36 48", true, "-", "-"},
    {"GoesSilentAtTheVersion", Fault(TFaultKind::Silent, kVersion, 1),
     kNoArticle + kVersionFails + kSilence, "3C 36 48", true, "-", "-"},
    {"SaysNothingToTheVersion", Fault(TFaultKind::NoReply, kVersion, 1),
     kNoArticle + kVersionFails + kSilence, "3C 36 48", true, "-", "-"},
    {"AnswersTheVersionWithAWrongCommand", Fault(TFaultKind::WrongCommand, kVersion, 1),
     kNoArticle + kVersionFails + kNotTheCommand + "Exp:48 Rec:49)", "3C 36 48", true, "-", "-"},
    {"AnswersTheVersionFromAWrongAddress", Fault(TFaultKind::WrongAddress, kVersion, 1),
     kNoArticle + kVersionFails + kNotTheAddress, "3C 36 48", true, "-", "-"},
    // 48, "1.04" (31 2E 30 34), 3000 (B8 0B) and mode 1 are 1CF.
    {"AnswersTheVersionWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kVersion, 1),
     kNoArticle + kVersionFails + kNotTheSum + "Exp:CF Rec:D0)", "3C 36 48", true, "-", "-"},
    {"IsMisheardOnceAtTheVersion", Fault(TFaultKind::EtxFirst, kVersion, 1), "",
     kStart + "48 " + kArticle12 + kArticle13 + "3C", false, kHeld12, kHeld13},
    {"IsMisheardAtEveryVersion", Fault(TFaultKind::EtxFirst, kVersion, kEveryTime),
     kNoArticle + kVersionFails + kMisheard, "3C 36 48 48 48 48", true, "-", "-"},
    {"AnswersTheVersionWithoutData", Fault(TFaultKind::Empty, kVersion, 1),
     kNoArticle + kVersionFails + kNoCode, "3C 36 48", true, "-", "-"},
};

// At the price of an article.
const std::vector<TBadUpload> kAtPrices = {
    {"RefusesTheFirstPrice", Fault(TFaultKind::Error, kPrice, 1, 7),
     "Fail! Plu: 12 \"A\" [SetPrice] ErrCode: 7, Fail set PLU price: Scale return Error code: 7",
     kStart + "4A:12", true, "-", "-"},
    {"RefusesTheSecondPrice", Fault(TFaultKind::Error, kPrice, 2, 255),
     "Fail! Plu: 13 \"B\" [SetPrice] ErrCode: 255, Fail set PLU price: "
     "Scale return Error code: 255",
     kStart + kArticle12 + "4A:13", true, kHeld12, "-"},
    {"GoesSilentAtTheSecondPrice", Fault(TFaultKind::Silent, kPrice, 2), kPrice13Fails + kSilence,
     kStart + kArticle12 + "4A:13", true, kHeld12, "-"},
    {"AnswersTheSecondPriceWithAWrongCommand", Fault(TFaultKind::WrongCommand, kPrice, 2),
     kPrice13Fails + kNotTheCommand + "Exp:4A Rec:4B)", kStart + kArticle12 + "4A:13", true,
     kHeld12, "250 '' "},
    {"AnswersTheSecondPriceFromAWrongAddress", Fault(TFaultKind::WrongAddress, kPrice, 2),
     kPrice13Fails + kNotTheAddress, kStart + kArticle12 + "4A:13", true, kHeld12, "250 '' "},
    {"AnswersTheSecondPriceWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kPrice, 2),
     kPrice13Fails + kNotTheSum + "Exp:4A Rec:4B)", kStart + kArticle12 + "4A:13", true, kHeld12,
     "250 '' "},
    {"AnswersTheSecondPriceWithoutData", Fault(TFaultKind::Empty, kPrice, 2),
     kPrice13Fails + kNoCode, kStart + kArticle12 + "4A:13", true, kHeld12, "250 '' "},
    {"IsMisheardOnceAtTheSecondPrice", Fault(TFaultKind::EtxFirst, kPrice, 2), "",
     kStart + kArticle12 + "4A:13 " + kArticle13 + "3C", false, kHeld12, kHeld13},
    {"IsMisheardAtEveryPrice", Fault(TFaultKind::EtxFirst, kPrice, kEveryTime),
     "Fail! Plu: 12 \"A\" [SetPrice] ErrCode: 0, Fail set PLU price: " + kMisheard,
     kStart + "4A:12 4A:12 4A:12 4A:12", true, "100 '' ", "-"},
};

// At the texts of an article and at the end.
const std::vector<TBadUpload> kAtTextsAndAfter = {
    {"RefusesEveryName", Fault(TFaultKind::Error, kParam, kEveryTime, 5),
     "Fail! Plu: 12 \"A\" [SetParam:0][Име1] ErrCode: 5, " + kName12 + "Scale return Error code: 5",
     kStart + "4A:12 4C:12.0", true, "100 '' ", "-"},
    {"RefusesTheSecondBestBefore", Fault(TFaultKind::Error, kParam, 5, 5),
     "Fail! Plu: 13 \"B\" [SetParam:4][Годност] ErrCode: 5, " + kBestBefore13 +
         "Scale return Error code: 5",
     kStart + kArticle12 + "4A:13 4C:13.0 4C:13.4", true, kHeld12, "250 'B' 0"},
    {"GoesSilentAtTheSecondBestBefore", Fault(TFaultKind::Silent, kParam, 5),
     "Fail! Plu: 13 \"B\" [SetParam:4][Годност] ErrCode: 0, " + kBestBefore13 + kSilence,
     kStart + kArticle12 + "4A:13 4C:13.0 4C:13.4", true, kHeld12, "250 'B' 0"},
    {"AnswersTheSecondBestBeforeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kParam, 5),
     "Fail! Plu: 13 \"B\" [SetParam:4][Годност] ErrCode: 0, " + kBestBefore13 + kNotTheCommand +
         "Exp:4C Rec:4D)",
     kStart + kArticle12 + "4A:13 4C:13.0 4C:13.4", true, kHeld12, "250 'B' 0,4"},
    {"AnswersAnyTextWithoutData", Fault(TFaultKind::Empty, kParam, kEveryTime),
     "Fail! Plu: 12 \"A\" [SetParam:0][Име1] ErrCode: 0, " + kName12 + kNoCode,
     kStart + "4A:12 4C:12.0", true, "100 'A' 0", "-"},
    {"RefusesTheLastWeighingMode", Fault(TFaultKind::Error, kWeight, 2, 4), "", kWhole, true,
     kHeld12, kHeld13},
    {"GoesSilentAtTheLastWeighingMode", Fault(TFaultKind::Silent, kWeight, 2), "", kWhole, true,
     kHeld12, kHeld13},
    {"SaysNothingToTheLastWeighingMode", Fault(TFaultKind::NoReply, kWeight, 2), "", kWhole, true,
     kHeld12, kHeld13},
    {"AnswersTheLastWeighingModeWithAWrongCommand", Fault(TFaultKind::WrongCommand, kWeight, 2), "",
     kWhole, false, kHeld12, kHeld13},
};

const std::string kPieceFails = "Fail! Plu: 13 \"B\" [SetPriceC] ErrCode: 0, Fail set PLU price: ";
const std::string kPiece12 = "4B:12 4C:12.0 4C:12.4 4C:12.5 ";
const std::string kToSecondPiece = kStart + kPiece12 + "4B:13";
const std::string kPiece13Obeyed = "250 '' ";

// At the price of an article sold by the piece, on an S300 scale.
const std::vector<TBadUpload> kAtPiecePrices = {
    {"RefusesTheFirstPrice", Fault(TFaultKind::Error, kPiecePrice, 1, 8),
     "Fail! Plu: 12 \"A\" [SetPriceC] ErrCode: 8, Fail set PLU price: Scale return Error code: 8",
     kStart + "4B:12", true, "-", "-"},
    {"RefusesTheSecondPrice", Fault(TFaultKind::Error, kPiecePrice, 2, 255),
     "Fail! Plu: 13 \"B\" [SetPriceC] ErrCode: 255, Fail set PLU price: "
     "Scale return Error code: 255",
     kToSecondPiece, true, kHeld12, "-"},
    {"GoesSilentAtTheSecondPrice", Fault(TFaultKind::Silent, kPiecePrice, 2),
     kPieceFails + kSilence, kToSecondPiece, true, kHeld12, "-"},
    {"SaysNothingToTheSecondPrice", Fault(TFaultKind::NoReply, kPiecePrice, 2),
     kPieceFails + kSilence, kToSecondPiece, true, kHeld12, "-"},
    // It obeyed; only its answer was wrong.
    {"AnswersTheSecondPriceWithAWrongCommand", Fault(TFaultKind::WrongCommand, kPiecePrice, 2),
     kPieceFails + kNotTheCommand + "Exp:4B Rec:4C)", kToSecondPiece, true, kHeld12,
     kPiece13Obeyed},
    {"AnswersTheSecondPriceFromAWrongAddress", Fault(TFaultKind::WrongAddress, kPiecePrice, 2),
     kPieceFails + kNotTheAddress, kToSecondPiece, true, kHeld12, kPiece13Obeyed},
    {"AnswersTheSecondPriceWithAWrongChecksum", Fault(TFaultKind::BadChecksum, kPiecePrice, 2),
     kPieceFails + kNotTheSum + "Exp:4B Rec:4C)", kToSecondPiece, true, kHeld12, kPiece13Obeyed},
    {"AnswersTheSecondPriceWithoutData", Fault(TFaultKind::Empty, kPiecePrice, 2),
     kPieceFails + kNoCode, kToSecondPiece, true, kHeld12, kPiece13Obeyed},
    {"IsMisheardOnceAtTheSecondPrice", Fault(TFaultKind::EtxFirst, kPiecePrice, 2), "",
     kToSecondPiece + " 4B:13 4C:13.0 4C:13.4 4C:13.5 3C", false, kHeld12, kHeld13},
    {"IsMisheardAtEveryPrice", Fault(TFaultKind::EtxFirst, kPiecePrice, kEveryTime),
     "Fail! Plu: 12 \"A\" [SetPriceC] ErrCode: 0, Fail set PLU price: " + kMisheard,
     kStart + "4B:12 4B:12 4B:12 4B:12", true, "100 '' ", "-"},
};

class BadScaleUploadTest : public test::TCorePassTest,
                           public ::testing::WithParamInterface<TBadUpload> {
protected:
    void Expect(const std::vector<std::string>& lines, const TScaleRec& rec) {
        const TBadUpload& expected = GetParam();
        options.faults.faults = {expected.fault};
        EXPECT_EQ(Upload(lines, rec), expected.error.empty());
        EXPECT_EQ(ToUtf8(session->LastError), expected.error);
        EXPECT_EQ(Commands(), expected.commands);
        EXPECT_EQ(IsProgramming(), expected.programming);
        EXPECT_EQ(Held(12), expected.first);
        EXPECT_EQ(Held(13), expected.second);
        const test::TEvents counted = test::Filtered(events, {"log:   Брой"});
        EXPECT_EQ(counted, expected.error.empty()
                               ? test::TEvents{"log:   Брой записани артикули: 2"}
                               : test::TEvents{});
    }
};

TEST_P(BadScaleUploadTest, ErrorCommandsAndTheScalesStateAreExact) {
    Expect({"12|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|", "13|22013|1|0|0|2.50|0|5|B|x|||||0|0|102|"},
           Rec());
}

// An S300 scale in label mode 0 gets the texts 0, 4 and 5.
class BadScalePieceTest : public BadScaleUploadTest {
protected:
    BadScalePieceTest() {
        options.scale.model = simulator::TModel::S300;
        options.scale.labelMode = 0;
    }
};

TEST_P(BadScalePieceTest, ErrorCommandsAndTheScalesStateAreExact) {
    TScaleRec rec = Rec();
    rec.ScaleType = kScaleTypeS300;
    Expect({"12|22012|2|0|0|1.00|0|5|A|x|||||1|0|101|", "13|22013|2|0|0|2.50|0|5|B|x|||||1|0|102|"},
           rec);
}

INSTANTIATE_TEST_SUITE_P(BeforeArticles, BadScaleUploadTest, ::testing::ValuesIn(kBeforeArticles),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(AtPrices, BadScaleUploadTest, ::testing::ValuesIn(kAtPrices), kRowName);
INSTANTIATE_TEST_SUITE_P(AtTextsAndAfter, BadScaleUploadTest, ::testing::ValuesIn(kAtTextsAndAfter),
                         kRowName);

INSTANTIATE_TEST_SUITE_P(AtPrices, BadScalePieceTest, ::testing::ValuesIn(kAtPiecePrices),
                         kRowName);

using FailedUploadTest = test::TCorePassTest;

// On a network it is asked four times.
TEST_F(FailedUploadTest, ASerialScaleThatIsMisheardAtEveryPriceIsAsked11Times) {
    options.faults.faults = {Fault(TFaultKind::EtxFirst, kPrice, kEveryTime)};
    TScaleRec serial = Rec();
    serial.CommType = kCommSerial;
    serial.TCPAddress = "COM5";
    EXPECT_FALSE(Upload({"12|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|"}, serial));
    EXPECT_EQ(session->LastError,
              "Fail! Plu: 12 \"A\" [SetPrice] ErrCode: 0, Fail set PLU price: " + kMisheard);
    EXPECT_EQ(Commands(), kStart +
                              "4A:12 4A:12 4A:12 4A:12 4A:12 4A:12 "
                              "4A:12 4A:12 4A:12 4A:12 4A:12");
    // The two pauses of the pass; then, before the repeats, none, 10, 100 and seven times 200.
    std::vector<TMilliseconds> pauses = {TMilliseconds(500), TMilliseconds(800), TMilliseconds(10),
                                         TMilliseconds(100)};
    pauses.insert(pauses.end(), 7, TMilliseconds(200));
    EXPECT_EQ(clock.pauses, pauses);
    EXPECT_TRUE(IsProgramming());
    EXPECT_EQ(Held(12), "100 '' ");
}

TEST_F(FailedUploadTest, TheNextPassFindsTheScaleInProgrammingModeAndWritesEverything) {
    options.faults.faults = {Fault(TFaultKind::Error, kPrice, 1, 7)};
    const std::vector<std::string> lines = {"12|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|"};
    EXPECT_FALSE(Upload(lines));
    EXPECT_TRUE(IsProgramming());
    core->SetFaults({});
    EXPECT_TRUE(Upload(lines));
    EXPECT_EQ(Commands(), "3C 36 48 4A:12 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
    EXPECT_FALSE(IsProgramming());
    EXPECT_EQ(Held(12), kHeld12);
}

}  // namespace
}  // namespace tolvane
