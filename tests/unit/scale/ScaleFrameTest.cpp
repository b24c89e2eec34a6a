#include "scale/ScaleFrame.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/unit/scale/ScaleFixture.h"

namespace tolvane {
namespace {

TEST(EncodeRequestTest, TheVersionRequestAsTheDescriptionWorksItOut) {
    EXPECT_EQ(EncodeRequest(0, 0x48, {}), (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x03}));
}

TEST(EncodeRequestTest, AnAddressAbove14StartsInThePlainState) {
    EXPECT_EQ(EncodeRequest(0x20, 0x36, {}), (TCmdBuffer{0x04, 0x0C, 0x20, 0x36, 0x56, 0x03}));
    EXPECT_EQ(EncodeRequest(0x15, 0x36, {}), (TCmdBuffer{0x04, 0x0C, 0x15, 0x36, 0x4B, 0x03}));
    EXPECT_EQ(EncodeRequest(0x14, 0x36, {}), (TCmdBuffer{0x04, 0x0D, 0x28, 0x4A, 0x5E, 0x03}));
}

TEST(EncodeRequestTest, ADataByteF0AfterAByteUpTo14IsPrecededBy0CAndSentAsF0) {
    EXPECT_EQ(EncodeRequest(0, 0x48, TCmdBuffer{0xF0}),
              (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0x0C, 0xF0, 0x38, 0x03}));
}

TEST(EncodeRequestTest, TheStateIsSwitchedBackByAByteUpTo14) {
    EXPECT_EQ(EncodeRequest(0, 0x48, TCmdBuffer{0xF0, 0x02}),
              (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0x0C, 0xF0, 0x0D, 0x16, 0x4E, 0x03}));
}

TEST(EncodeRequestTest, EBStaysInTheOffsetStateAndECDoesNot) {
    EXPECT_EQ(EncodeRequest(0, 0x48, TCmdBuffer{0xEB}),
              (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0xFF, 0x47, 0x03}));
    EXPECT_EQ(EncodeRequest(0, 0x48, TCmdBuffer{0xEC}),
              (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0x0C, 0xEC, 0x34, 0x03}));
}

TEST(EncodeRequestTest, TheChecksumIsTakenModulo256AndEncodedLikeAnyByte) {
    EXPECT_EQ(EncodeRequest(0, 0x48, TCmdBuffer{0xC8}),
              (TCmdBuffer{0x04, 0x0D, 0x14, 0x5C, 0xDC, 0x24, 0x03}));
    EXPECT_EQ(EncodeRequest(0x20, 0xF0, {}),
              (TCmdBuffer{0x04, 0x0C, 0x20, 0xF0, 0x0D, 0x24, 0x03}));
}

TEST(EncodeRequestTest, FrameBytesNeverShowBetweenStartAndEnd) {
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const TCmdBuffer data = {static_cast<std::uint8_t>(first),
                                     static_cast<std::uint8_t>(second), 0x02, 0x03, 0x04};
            const TCmdBuffer frame = EncodeRequest(0x03, 0x4C, data);
            ASSERT_EQ(frame.front(), 0x04);
            ASSERT_EQ(frame.back(), 0x03);
            for (std::size_t i = 1; i + 1 < frame.size(); ++i)
                ASSERT_TRUE(frame[i] > 0x04) << first << " " << second;
            TCmdBuffer body = {0x03, 0x4C};
            body.insert(body.end(), data.begin(), data.end());
            body.push_back(static_cast<std::uint8_t>(0x03 + 0x4C + first + second + 9));
            ASSERT_EQ(test::BodyOf(frame), body) << first << " " << second;
        }
    }
}

TEST(ShiftDecodeTest, MarkersAreDroppedAndDecideWhatFollows) {
    EXPECT_EQ(ShiftDecode(TCmdBuffer{0x0D, 0x14, 0x5C, 0x0C, 0xF0, 0x5C, 0x0D, 0x16}),
              (TCmdBuffer{0x00, 0x48, 0xF0, 0x5C, 0x02}));
}

TEST(ShiftDecodeTest, WithoutAMarkerBytesStandForThemselves) {
    EXPECT_EQ(ShiftDecode(TCmdBuffer{0x41, 0x00, 0xFF}), (TCmdBuffer{0x41, 0x00, 0xFF}));
    EXPECT_EQ(ShiftDecode({}), TCmdBuffer{});
    EXPECT_EQ(ShiftDecode(TCmdBuffer{0x0D, 0x0C, 0x0D}), TCmdBuffer{});
}

TEST(ShiftDecodeTest, TheOffsetIsTakenOffModulo256) {
    EXPECT_EQ(ShiftDecode(TCmdBuffer{0x0D, 0x00, 0x13, 0x14}), (TCmdBuffer{0xEC, 0xFF, 0x00}));
}

std::string Refusal(const TCmdBuffer& reply, std::uint8_t address, std::uint8_t command) {
    try {
        DecodeReply(reply, address, command);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "accepted";
}

TEST(DecodeReplyTest, AReplyInTheOffsetStateYieldsItsData) {
    EXPECT_EQ(DecodeReply(TCmdBuffer{0x02, 0x0D, 0x14, 0x5C, 0x14, 0x5C, 0x03}, 0, 0x48),
              TCmdBuffer{0x00});
}

TEST(DecodeReplyTest, AReplyWithoutDataIsValid) {
    EXPECT_EQ(DecodeReply(TCmdBuffer{0x02, 0x0D, 0x14, 0x5C, 0x5C, 0x03}, 0, 0x48), TCmdBuffer{});
}

TEST(DecodeReplyTest, AReplyOfStartOneMarkerAndEndIsTooShortBeforeAnyDecoding) {
    constexpr const char* kTooShort = "Unexpected answer from scale. Answer is too short.";
    EXPECT_EQ(Refusal({0x02, 0x0D, 0x03}, 0, 0x48), kTooShort);
    EXPECT_EQ(Refusal({0x55, 0x55, 0x55}, 0, 0x48), kTooShort);
    EXPECT_EQ(Refusal({}, 0, 0x48), kTooShort);
}

TEST(DecodeReplyTest, ABodyOfLessThanThreeBytesIsTooShort) {
    constexpr const char* kTooShort = "Unexpected answer from scale. Answer is too short.";
    EXPECT_EQ(Refusal({0x02, 0x0D, 0x14, 0x5C, 0x03}, 0, 0x48), kTooShort);
    EXPECT_EQ(Refusal({0x02, 0x0D, 0x0C, 0x0D, 0x0C, 0x03}, 0, 0x48), kTooShort);
}

TEST(DecodeReplyTest, AWrongFirstByteIsNamed) {
    EXPECT_EQ(Refusal({0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x55}, 0, 0x48),
              "Unexpected answer from scale. Error STX byte (Exp:02 Rec:04)");
    EXPECT_EQ(Refusal({0xAB, 0x0D, 0x14, 0x5C, 0x5C, 0x03}, 0, 0x48),
              "Unexpected answer from scale. Error STX byte (Exp:02 Rec:AB)");
}

TEST(DecodeReplyTest, AReplyWhoseLastByteIs55FailsWithTheEtxText) {
    EXPECT_EQ(Refusal({0x02, 0x0D, 0x14, 0x5C, 0x14, 0x5C, 0x55}, 0, 0x48),
              "Unexpected answer from scale. Error ETX byte (Exp:02 Rec:55)");
}

TEST(DecodeReplyTest, AReplyFromAnotherAddressIsRefusedFirst) {
    EXPECT_EQ(Refusal(test::Wire({0x05, 0x49, 0x00, 0xFF}), 0, 0x48),
              "Unexpected answer from scale. Scale address does not match.Exp:00 Rec:05)");
    EXPECT_EQ(Refusal(test::Wire({0x0A, 0x48, 0x00, 0x52}), 0xFF, 0x48),
              "Unexpected answer from scale. Scale address does not match.Exp:FF Rec:0A)");
}

TEST(DecodeReplyTest, AReplyToAnotherCommandIsRefusedBeforeItsChecksum) {
    EXPECT_EQ(Refusal(test::Wire({0x00, 0x49, 0x00, 0xFF}), 0, 0x48),
              "Unexpected answer from scale. Command does not match.Exp:48 Rec:49)");
}

TEST(DecodeReplyTest, AWrongChecksumIsShownWithTheComputedOne) {
    EXPECT_EQ(Refusal(test::Wire({0x00, 0x48, 0x14, 0x5D}), 0, 0x48),
              "Unexpected answer from scale. Invalid Checksum. Exp:5C Rec:5D)");
    EXPECT_EQ(Refusal(test::Wire({0x00, 0x48, 0xFF, 0x00}), 0, 0x48),
              "Unexpected answer from scale. Invalid Checksum. Exp:47 Rec:00)");
}

TEST(DecodeReplyTest, TheChecksumIsTheSumModulo256) {
    EXPECT_EQ(DecodeReply(test::Wire({0x00, 0x48, 0xFF, 0xFF, 0x46}), 0, 0x48),
              (TCmdBuffer{0xFF, 0xFF}));
}

TEST(DecodeReplyTest, DataOfAnyBytesComesThroughInOrder) {
    TCmdBuffer data;
    for (int byte = 0; byte < 256; ++byte)
        data.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(DecodeReply(test::ReplyTo(0x48, data), 0, 0x48), data);
}

}  // namespace
}  // namespace tolvane
