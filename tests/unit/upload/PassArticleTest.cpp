#include <string>
#include <vector>

#include "CoreFixture.h"
#include "system/RegionalSettings.h"
#include "text/Cp1251.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {
namespace {

using test::TEvents;

// From the article table through the article line to the request, for a scale of 3000 articles.
class PassArticleTest : public test::TCorePassTest {
protected:
    PassArticleTest() {
        article_.name = "A";
        article_.labelName = "x";
    }
    std::vector<std::string> Lines(char separator) { return Lines(separator, {article_}); }
    std::vector<std::string> Lines(char separator, const std::vector<test::TArticle>& articles) {
        const auto table = test::TableOf(articles);
        TRegionalSettings regional;
        regional.decimalSeparator = separator;
        std::vector<std::string> lines;
        log_.clear();
        TArticleLineBuilder(*table, {}, regional, [this](std::string_view line) {
            log_.push_back(ToUtf8(line));
        }).Build(table->Order(), 1, lines);
        return lines;
    }
    // The data of all requests with this command.
    TEvents Data(std::uint8_t command) const {
        TEvents found;
        for (const simulator::TRecordedRequest& recorded : core->Requests()) {
            if (recorded.request.command == command)
                found.push_back(test::Hex(recorded.request.data));
        }
        return found;
    }

    // The article with this price, and one that every scale takes.
    std::vector<test::TArticle> BeforeAnother(double price) const {
        test::TArticle first = article_;
        test::TArticle second = article_;
        first.retail = price;
        second.scaleNumber = 13;
        second.retail = 2.5;
        return {first, second};
    }

    test::TArticle article_;
    TEvents log_;  // of making the lines, UTF-8
};

struct TPriceCase {
    const char* name;
    double price;
    const char* field;              // of the article line, decimal point; null: there is no line
    const char* bytes = nullptr;    // packed; null: nothing is sent
    const char* tooHigh = nullptr;  // the price in the message that ends the pass; null: none does
};

// The scale takes six digits, the line's hundredths are a 32-bit number, at most 2,147,483,647.
const std::vector<TPriceCase> kPrices = {
    {"Zero", 0.0, nullptr},
    {"BelowHalfAHundredth", 0.004, "0.00"},
    {"HalfAHundredth", 0.005, "0.01", "01 00 00"},
    {"AHundredth", 0.01, "0.01", "01 00 00"},
    // held as 1.00499999999999989…
    {"HalfBinaryBelow", 1.005, "1.01", "01 01 00"},
    {"TheHighest", 9999.99, "9999.99", "99 99 99"},
    {"TheHighestThatRoundsDown", 9999.994, "9999.99", "99 99 99"},
    {"TheLowestThatRoundsUpTo10000", 9999.995, "10000.00", nullptr, "10000"},
    {"TenThousand", 10000.0, "10000.00", nullptr, "10000"},
    {"TheHighestInHundredths", 21474836.47, "21474836.47", nullptr, "21474836.47"},
    {"TheHighestInHundredthsRounded", 21474836.474, "21474836.47", nullptr, "21474836.47"},
    {"RoundsUpBeyondTheHundredths", 21474836.475, "21474836.48"},
    {"BeyondTheHundredths", 21474836.48, "21474836.48"},
    // 4,294,967,297 hundredths: 1 in their lowest 32 bits
    {"NotTheLowest32BitsOfIt", 42949672.97, "42949672.97"},
    {"FarBeyond", 99999999999.99, "99999999999.99"},
    {"WithAnExponentInItsUsualText", 1e15, "1000000000000000.00"},
    {"Negative", -0.01, "-0.01"},
    {"NegativeThatRoundsToZero", -0.004, "0.00"},
    {"TheLowestInHundredths", -21474836.48, "-21474836.48"},
    {"BelowTheHundredths", -42949672.95, "-42949672.95"},
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
        const bool fails = GetParam().tooHigh != nullptr;
        EXPECT_EQ(Upload(Lines('.'), rec), !fails);
        const TEvents sent = Data(command);
        if (GetParam().bytes != nullptr)
            EXPECT_EQ(sent, TEvents{"00 0C 00 " + std::string(GetParam().bytes) + after});
        else
            EXPECT_EQ(Commands(), fails ? "3C 36 48" : "3C 36 48 3C");
        EXPECT_EQ(IsProgramming(), fails);
        EXPECT_EQ(session->LastError,
                  fails ? "Fail! Plu: 12 \"A\" [" + std::string(operation) +
                              "] ErrCode: 0, Fail set PLU price: " + GetParam().tooHigh +
                              " does not fit in six digits."
                        : "");
        const std::string count = GetParam().bytes != nullptr ? "1" : "0";
        EXPECT_EQ(test::Filtered(events, {"log:   Брой"}),
                  fails ? TEvents{} : TEvents{"log:   Брой записани артикули: " + count});
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

TEST_F(PassArticleTest, APriceThatNoScaleHoldsEndsThePassBeforeTheNextArticle) {
    EXPECT_FALSE(Upload(Lines('.', BeforeAnother(21474836.47))));
    EXPECT_EQ(Commands(), "3C 36 48");
}

TEST_F(PassArticleTest, APriceBeyondTheHundredthsIsSkippedWithoutAWordAndTheNextIsWritten) {
    EXPECT_TRUE(Upload(Lines('.', BeforeAnother(21474836.48))));
    EXPECT_EQ(Data(0x4A), TEvents{"00 0D 00 50 02 00 00 00 00"});
    EXPECT_EQ(test::Filtered(events, {"log:"}),
              (TEvents{"log:   Везна EVL - Ver: 1.04; Max.PLU: 3000; Mode: 1",
                       "log:   Брой записани артикули: 1"}));
    EXPECT_EQ(log_, (TEvents{"Обработени 2 артикула.", "Валидни са 2 артикула.",
                             "Ще бъдат записани само валидните артикули"}));
}

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
