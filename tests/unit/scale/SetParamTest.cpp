#include "scale/DevElicomScaleUnit.h"
#include "scale/TextLengths.h"
#include "tests/unit/scale/ScaleFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr std::uint8_t kParam = 0x4C;
constexpr std::int32_t kEvl = 16;
constexpr std::int32_t kEts = 5000;
constexpr std::int32_t kS300 = 300;

class SetParamTest : public TScaleTest {
public:
    // Writes one parameter, which the scale accepts. Returns the request's data.
    TCmdBuffer Sent(std::int32_t plu, std::int32_t parameter, std::string_view text,
                    std::uint8_t codeTable = 0) {
        channel->sent.clear();
        channel->script = {Answer(ReplyTo(kParam, {0}))};
        EXPECT_TRUE(scale->SetParam(errCode, plu, parameter, text, codeTable)) << scale->LastError;
        EXPECT_EQ(errCode, 0);
        return OnlyData(kParam);
    }
};

TCmdBuffer Bytes(std::initializer_list<int> head, std::string_view text) {
    TCmdBuffer bytes;
    for (const int byte : head)
        bytes.push_back(static_cast<std::uint8_t>(byte));
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

TEST_F(SetParamTest, AFreeTextIsSentWithItsOwnLength) {
    Sent(12, 5, "22012");
    EXPECT_EQ(channel->sent,
              (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x60, 0x14, 0x20, 0x14, 0x19, 0x19, 0x46,
                                        0x46, 0x44, 0x45, 0x46, 0x6D, 0x03}}));
}

TEST_F(SetParamTest, ARefusedTextIsNamedWithItsZeroBytes) {
    channel->script = {Answer(ReplyTo(kParam, {7}))};
    EXPECT_FALSE(scale->SetParam(errCode, 3, 5, std::string_view("a\0b", 3), 0));
    EXPECT_EQ(errCode, 7);
    EXPECT_EQ(scale->LastError, std::string("Fail set parameter: Plu:3 ParN:5 ParT:\"a\0b\"\r\n"
                                            "Scale return Error code: 7",
                                            71));
}

TEST_F(SetParamTest, HighBytesSwitchToThePlainStateOnTheWire) {
    Sent(1, 5, "Ябълка"_cp1251);
    EXPECT_EQ(channel->sent,
              (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x60, 0x14, 0x15, 0x14, 0x19, 0x1A, 0xF3,
                                        0xF5, 0x0C, 0xFA, 0xEB, 0xEA, 0xE0, 0xC7, 0x03}}));
}

TEST_F(SetParamTest, Parameter24WithATextOf19LettersSendsTheFirst15) {
    EXPECT_EQ(Sent(300, 24, "abcdefghijklmnopqrs"),
              Bytes({0x00, 0x2C, 0x01, 24, 15}, "abcdefghijklmno"));
}

TEST_F(SetParamTest, Parameter0WithATwoLetterTextSends31CharactersPaddedWithSpaces) {
    EXPECT_EQ(Sent(7, 0, "AB"), Bytes({0x00, 0x07, 0x00, 0, 31}, "AB" + std::string(29, ' ')));
}

TEST_F(SetParamTest, Parameter20Sends31CharactersToEvlAnd63ToEts) {
    scale->ScaleType = kEvl;
    EXPECT_EQ(Sent(1, 20, "x"), Bytes({0, 1, 0, 20, 31}, "x" + std::string(30, ' ')));
    scale->ScaleType = kEts;
    EXPECT_EQ(Sent(1, 20, "x"), Bytes({0, 1, 0, 20, 63}, "x" + std::string(62, ' ')));
}

TEST_F(SetParamTest, BestBeforeDaysAreSentAsBytes) {
    EXPECT_EQ(Sent(1, 4, std::string_view("\x01\x00", 2)), (TCmdBuffer{0, 1, 0, 4, 2, 1, 0}));
    EXPECT_EQ(Sent(1, 4, "\x01\x01\x6D"), (TCmdBuffer{0, 1, 0, 4, 3, 1, 1, 0x6D}));
}

TEST_F(SetParamTest, AnEmptyFreeTextIsSentWithLength0) {
    EXPECT_EQ(Sent(1, 5, ""), (TCmdBuffer{0, 1, 0, 5, 0}));
}

TEST_F(SetParamTest, TheLengthOfALongFreeTextIsSentModulo256) {
    const std::string text(300, 'x');
    EXPECT_EQ(Sent(1, 5, text), Bytes({0, 1, 0, 5, 44}, text));
}

TEST_F(SetParamTest, AClearedNameIsAZeroByteAnd30Spaces) {
    EXPECT_EQ(Sent(1, 0, std::string_view("\0", 1)),
              Bytes({0, 1, 0, 0, 31, 0}, std::string(30, ' ')));
}

TEST_F(SetParamTest, TheTextGoesThroughTheCodeTable) {
    const std::string spaces(26, ' ');
    EXPECT_EQ(Sent(1, 1, "Сирен"_cp1251, 0),
              Bytes({0, 1, 0, 1, 31, 0xD1, 0xE8, 0xF0, 0xE5, 0xED}, spaces));
    EXPECT_EQ(Sent(1, 1, "Сирен"_cp1251, 1),
              Bytes({0, 1, 0, 1, 31, 0x91, 0xA8, 0xB0, 0xA5, 0xAD}, spaces));
    EXPECT_EQ(Sent(1, 1, "Сирен"_cp1251, 2),
              Bytes({0, 1, 0, 1, 31, 0x91, 0xA8, 0xE0, 0xA5, 0xAD}, spaces));
}

// No text puts a frame's start or end byte into the body.
TEST_F(SetParamTest, NoByteOfATextLooksLikeTheFramesStartOrEnd) {
    for (std::uint8_t codeTable = 0; codeTable < 3; ++codeTable) {
        for (int byte = 0; byte < 256; ++byte) {
            Sent(1, 0, std::string(31, static_cast<char>(byte)), codeTable);
            const TCmdBuffer& frame = channel->sent.at(0);
            EXPECT_EQ(frame.front(), 0x04);
            EXPECT_EQ(frame.back(), 0x03);
            for (std::size_t i = 1; i + 1 < frame.size(); ++i)
                ASSERT_TRUE(frame[i] > 0x04) << "byte " << byte << " in table " << int{codeTable};
        }
    }
}

TEST_F(SetParamTest, ThePluAndParameterNumbersAreNotChecked) {
    EXPECT_EQ(Sent(70000, 257, ""), Bytes({0, 0x70, 0x11, 0x01, 31}, std::string(31, ' ')));
    // −1 modulo 256 and −1 divided by 256, each cut to a byte
    EXPECT_EQ(Sent(-1, -1, ""), Bytes({0, 0xFF, 0x00, 0xFF, 31}, std::string(31, ' ')));
}

TEST_F(SetParamTest, WaitsOnlyAfterAnAcceptedText) {
    Sent(1, 0, "A");
    EXPECT_EQ(clock.pauses, std::vector<TMilliseconds>{TMilliseconds(30)});
    channel->script = {Answer(ReplyTo(kParam, {5}))};
    EXPECT_FALSE(scale->SetParam(errCode, 1, 0, "A", 0));
    EXPECT_EQ(clock.pauses.size(), 1U);
}

TEST_F(SetParamTest, AFailureNamesTheArticleTheParameterAndTheCutAndPaddedText) {
    channel->script = {Answer(ReplyTo(kParam, {5}))};
    EXPECT_FALSE(scale->SetParam(errCode, 7, 0, "Ябълка"_cp1251, 2));
    EXPECT_EQ(errCode, 5);
    EXPECT_EQ(ToUtf8(scale->LastError), "Fail set parameter: Plu:7 ParN:0 ParT:\"Ябълка" +
                                            std::string(25, ' ') +
                                            "\"\r\nScale return Error code: 5");
}

TEST_F(SetParamTest, AFailedExchangeAndAMissingErrorCodeFollowTheCommonRule) {
    EXPECT_FALSE(scale->SetParam(errCode, 12345, 5, "22", 0));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(scale->LastError,
              "Fail set parameter: Plu:12345 ParN:5 ParT:\"22\"\r\n[ReadResponce][SCRIPT] Fail "
              "read data (peer) - Read timeout occured");
    channel->script = {Answer(ReplyTo(kParam, {}))};
    EXPECT_FALSE(scale->SetParam(errCode, -3, 24, "", 0));
    EXPECT_EQ(scale->LastError,
              "Fail set parameter: Plu:-3 ParN:24 ParT:\"               \"\r\n"
              "Unexpected answer from scale. No error code");
}

TEST(ParameterLengthTest, EveryParameterHasItsLength) {
    for (const std::int32_t scaleType : {kEvl, kEts, kS300, 0, 77}) {
        const std::int32_t long19To22 = scaleType == kEvl ? 31 : 63;
        for (std::int32_t parameter = -2; parameter < 300; ++parameter) {
            std::optional<std::int32_t> expected = 31;
            if (parameter == 4 || parameter == 5) expected = std::nullopt;
            if (parameter >= 19 && parameter <= 22) expected = long19To22;
            if (parameter >= 24 && parameter <= 31) expected = 15;
            EXPECT_EQ(ParameterLength(parameter, scaleType), expected)
                << parameter << " of " << scaleType;
        }
    }
}

}  // namespace
}  // namespace tolvane::test
