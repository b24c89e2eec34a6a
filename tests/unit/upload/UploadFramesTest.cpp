#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "SessionFixture.h"
#include "config/TypesUnit.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using test::TEvents;

// One article, number 10300 in the scales, that is 300 (2C 01) in a scale of 3000 articles; every
// text is set. Its requests as they are on the wire, in code table 2 (А 80, й A9, р E0, я EF, н
// AD).
constexpr std::string_view kWeighed =
    "10300|22012|1|0|0|12.34|0|300|Айрян|Cheese|c1|c2|c3|L-7|0|0|4711|"_cp1251;
constexpr std::string_view kPiecesArticle =
    "10300|22012|2|0|0|12.34|0|300|Айрян|Cheese|c1|c2|c3|L-7|1|0|4711|"_cp1251;

constexpr const char* kWeightMode = "04 0D 14 50 50 03";
constexpr const char* kPrgMode = "04 0D 14 4A 4A 03";
constexpr const char* kVersion = "04 0D 14 5C 5C 03";
constexpr const char* kPrice = "04 0D 14 5E 14 40 15 48 26 14 14 14 14 D1 03";
constexpr const char* kPiecePrice = "04 0D 14 5F 14 40 15 48 26 14 15 14 15 D4 03";
constexpr const char* kName1 =
    "04 0D 14 60 14 40 15 14 33 94 BD F4 0C EF AD 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 "
    "20 20 20 20 20 20 20 20 20 20 20 7D 03";
constexpr const char* kBestBefore = "04 0D 14 60 14 40 15 18 17 15 15 40 C2 03";
constexpr const char* kBarcode = "04 0D 14 60 14 40 15 19 19 46 46 44 45 46 8E 03";
constexpr const char* kName2 =
    "04 0D 14 60 14 40 15 15 33 57 7C 79 79 87 79 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 1A 03";
constexpr const char* kComment1 =
    "04 0D 14 60 14 40 15 16 33 77 45 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 E2 03";
constexpr const char* kComment2 =
    "04 0D 14 60 14 40 15 17 33 77 46 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 E4 03";
constexpr const char* kComment3 =
    "04 0D 14 60 14 40 15 1A 33 77 47 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 E8 03";
constexpr const char* kShipment =
    "04 0D 14 60 14 40 15 1B 33 60 41 4B 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 E3 03";
constexpr const char* kScaleNumber =
    "04 0D 14 60 14 40 15 22 33 45 44 47 44 44 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 EE 03";
constexpr const char* kArticleNumber =
    "04 0D 14 60 14 40 15 23 33 48 4B 45 45 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 E8 03";
constexpr const char* kLong1 =
    "04 0D 14 60 14 40 15 27 53 77 45 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 0C FF 03";
constexpr const char* kLong2 =
    "04 0D 14 60 14 40 15 28 53 77 46 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 15 03";
constexpr const char* kLong3 =
    "04 0D 14 60 14 40 15 29 53 77 47 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 34 "
    "34 34 34 34 34 34 34 34 34 34 34 34 17 03";

struct TFramesCase {
    const char* name;
    std::int32_t scaleType;
    int mode;
    const char* piecePrice;  // of the article when it is sold by the piece
    TEvents texts;           // in order
};

const std::vector<TFramesCase> kCases = {
    {"EvlMode0", 16, 0, kPrice, {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2}},
    {"EvlMode1", 16, 1, kPrice, {kName1, kBestBefore, kBarcode}},
    {"EvlMode2",
     16,
     2,
     kPrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment}},
    {"EvlMode3", 16, 3, kPrice, {kName1, kBestBefore, kBarcode}},
    {"EtsMode0",
     5000,
     0,
     kPrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber}},
    {"EtsMode1",
     5000,
     1,
     kPrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber}},
    {"EtsMode2",
     5000,
     2,
     kPrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber}},
    {"EtsMode3",
     5000,
     3,
     kPrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber}},
    {"S300Mode0", 300, 0, kPiecePrice, {kName1, kBestBefore, kBarcode}},
    {"S300Mode1",
     300,
     1,
     kPiecePrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment}},
    {"S300Mode2",
     300,
     2,
     kPiecePrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber, kLong1, kLong2, kLong3}},
    {"S300Mode3",
     300,
     3,
     kPiecePrice,
     {kName1, kBestBefore, kBarcode, kName2, kComment1, kComment2, kComment3, kShipment,
      kScaleNumber, kArticleNumber}},
    {"UnknownMode0", 77, 0, kPrice, {kName1, kBestBefore, kBarcode}},
    {"UnknownMode1", 77, 1, kPrice, {kName1, kBestBefore, kBarcode}},
    {"UnknownMode2", 77, 2, kPrice, {kName1, kBestBefore, kBarcode}},
    {"UnknownMode3", 77, 3, kPrice, {kName1, kBestBefore, kBarcode}},
};

class UploadFramesTest : public test::TSessionTest,
                         public ::testing::WithParamInterface<TFramesCase> {
protected:
    // Frames and pauses of a pass that writes one article.
    TEvents Pass(std::string_view line) {
        scale_->mode = GetParam().mode;
        scale_->wholeFrames = true;
        TScaleRec rec = NetworkScale(7, "A");
        rec.ScaleType = GetParam().scaleType;
        EXPECT_TRUE(session_.InitComm(rec));
        EXPECT_TRUE(session_.ProcessUpload({std::string(line)}, rec)) << session_.LastError;
        return test::Filtered(events_, {"04 ", "wait"});
    }
    static TEvents Expected(const char* price) {
        TEvents events = {kWeightMode, "wait 500", kPrgMode, "wait 800", kVersion, price};
        for (const std::string& text : GetParam().texts)
            events.insert(events.end(), {text, "wait 30"});
        events.insert(events.end(), {"wait 500", kWeightMode});
        return events;
    }
};

TEST_P(UploadFramesTest, AnArticleSoldByWeightGoesOverTheWireInTheseFrames) {
    EXPECT_EQ(Pass(kWeighed), Expected(kPrice));
}

TEST_P(UploadFramesTest, AnArticleSoldByThePieceGoesOverTheWireInTheseFrames) {
    EXPECT_EQ(Pass(kPiecesArticle), Expected(GetParam().piecePrice));
}

INSTANTIATE_TEST_SUITE_P(TypesAndModes, UploadFramesTest, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace tolvane
