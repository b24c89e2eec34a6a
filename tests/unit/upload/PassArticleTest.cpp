#include <string>
#include <vector>

#include "CoreFixture.h"
#include "text/RegionalSettings.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {
namespace {

using test::TEvents;

// From the article table over the article line to the request, in a scale of 3000 articles.
class PassArticleTest : public test::TCorePassTest {
protected:
    PassArticleTest() {
        article_.name = "A";
        article_.labelName = "x";
    }
    std::vector<std::string> Lines(char separator) const {
        const auto table = test::TableOf({article_});
        TRegionalSettings regional;
        regional.decimalSeparator = separator;
        std::vector<std::string> lines;
        TArticleLineBuilder(*table, {}, regional, [](std::string_view) {
        }).Build(table->Order(), 1, lines);
        return lines;
    }
    // The requests' data with this command, of a pass.
    TEvents Data(std::uint8_t command) const {
        TEvents found;
        for (const simulator::TRecordedRequest& recorded : core->Requests()) {
            if (recorded.request.command == command)
                found.push_back(test::Hex(recorded.request.data));
        }
        return found;
    }

    test::TArticle article_;
};

struct TPriceCase {
    const char* name;
    double price;
    const char* field;  // of the article line, decimal point; null: there is no line
    const char* bytes;  // packed; null: nothing is sent
    bool fails;
};

const std::vector<TPriceCase> kPrices = {
    {"Zero", 0.0, nullptr, nullptr, false},
    {"BelowHalfAHundredth", 0.004, "0.00", nullptr, false},
    {"HalfAHundredth", 0.005, "0.01", "01 00 00", false},
    {"AHundredth", 0.01, "0.01", "01 00 00", false},
    // held as 1.00499999999999989…
    {"HalfBinaryBelow", 1.005, "1.01", "01 01 00", false},
    {"TheHighest", 9999.99, "9999.99", "99 99 99", false},
    {"TheHighestThatRoundsDown", 9999.994, "9999.99", "99 99 99", false},
    {"TheLowestThatRoundsUpTo10000", 9999.995, "10000.00", nullptr, true},
    {"TenThousand", 10000.0, "10000.00", nullptr, true},
    {"Negative", -0.01, "-0.01", nullptr, false},
    {"NegativeThatRoundsToZero", -0.004, "0.00", nullptr, false},
};

class PassPriceTest : public PassArticleTest, public ::testing::WithParamInterface<TPriceCase> {
protected:
    PassPriceTest() { article_.retail = GetParam().price; }

    // One scale's pass, with what the price request should begin and end with.
    void ExpectPass(std::int32_t scaleType, int mode, const char* operation, std::uint8_t command,
                    const std::string& after) {
        core.reset();
        events.clear();
        options.scale.labelMode = mode;
        options.scale.model =
            scaleType == kScaleTypeEvl ? simulator::TModel::Evl : simulator::TModel::S300;
        TScaleRec rec = Rec();
        rec.ScaleType = scaleType;
        EXPECT_EQ(Upload(Lines('.'), rec), !GetParam().fails);
        const TEvents sent = Data(command);
        if (GetParam().bytes != nullptr)
            EXPECT_EQ(sent, TEvents{"00 0C 00 " + std::string(GetParam().bytes) + after});
        else
            EXPECT_EQ(Commands(), GetParam().fails ? "3C 36 48" : "3C 36 48 3C");
        EXPECT_EQ(IsProgramming(), GetParam().fails);
        EXPECT_EQ(session->LastError,
                  GetParam().fails ? "Fail! Plu: 12 \"A\" [" + std::string(operation) +
                                         "] ErrCode: 0, Fail set PLU price: 10000 does not fit in "
                                         "six digits."
                                   : "");
        const std::string count = GetParam().bytes != nullptr ? "1" : "0";
        EXPECT_EQ(
            test::Filtered(events, {"log:   Брой"}),
            GetParam().fails ? TEvents{} : TEvents{"log:   Брой записани артикули: " + count});
    }
};

TEST_P(PassPriceTest, TheLineHoldsItRoundedWithTheSystemsSeparator) {
    for (const char separator : {'.', ','}) {
        std::vector<std::string> expected;
        if (GetParam().field != nullptr) {
            std::string field = GetParam().field;
            field[field.size() - 3] = separator;
            expected = {"12|22012|1|0|0|" + field + "|0|5|A|x|||||0|0|101|"};
        }
        EXPECT_EQ(Lines(separator), expected);
    }
}

TEST_P(PassPriceTest, EveryScaleGetsItInHundredthsOfAWeighedArticle) {
    for (const std::int32_t type : {kScaleTypeEvl, kScaleTypeEts, kScaleTypeS300, 77}) {
        for (int mode = 0; mode < 4; ++mode)
            ExpectPass(type, mode, "SetPrice", 0x4A, " 00 00 00");
    }
}

TEST_P(PassPriceTest, EveryScaleGetsItInHundredthsOfAnArticleSoldByThePiece) {
    article_.onlyWhole = "1";
    for (int mode = 0; mode < 4; ++mode) {
        ExpectPass(kScaleTypeS300, mode, "SetPriceC", 0x4B, " 01 00 01");
        for (const std::int32_t type : {kScaleTypeEvl, kScaleTypeEts, 77})
            ExpectPass(type, mode, "SetPrice", 0x4A, " 00 00 00");
    }
}

INSTANTIATE_TEST_SUITE_P(Prices, PassPriceTest, ::testing::ValuesIn(kPrices),
                         [](const auto& row) { return std::string(row.param.name); });

struct TBestBeforeCase {
    const char* days;
    const char* field;
    const char* text;  // length and bytes
};

const std::vector<TBestBeforeCase> kBestBefore = {
    {"0", "0", "02 01 00"},        {"1", "1", "02 01 01"},        {"255", "255", "02 01 FF"},
    {"256", "256", "03 01 01 00"}, {"365", "365", "03 01 01 6D"}, {"366", "0", "02 01 00"},
};

class PassBestBeforeTest : public PassArticleTest,
                           public ::testing::WithParamInterface<TBestBeforeCase> {};

TEST_P(PassBestBeforeTest, ItsDaysAreSentAsBytes) {
    article_.bestBefore = GetParam().days;
    EXPECT_EQ(Lines('.'),
              std::vector<std::string>{"12|22012|1|0|0|12.34|0|" + std::string(GetParam().field) +
                                       "|A|x|||||0|0|101|"});
    for (const std::int32_t codeTable : {0, 1, 2}) {
        core.reset();
        TScaleRec rec = Rec();
        rec.Encoding = codeTable;  // does not change them
        EXPECT_TRUE(Upload(Lines('.'), rec)) << session->LastError;
        EXPECT_EQ(Data(0x4C).at(1), "00 0C 00 04 " + std::string(GetParam().text));
    }
}

INSTANTIATE_TEST_SUITE_P(Days, PassBestBeforeTest, ::testing::ValuesIn(kBestBefore),
                         [](const auto& row) { return std::string(row.param.days); });

}  // namespace
}  // namespace tolvane
