#include "simulator/Frame.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace tolvane::simulator {
namespace {

TEST(FrameTest, DecodeRequest_TakesTheWorkedExampleApart) {
    const TRequest request = DecodeRequest(Bytes("04 0D 14 5C 5C 03"));
    EXPECT_EQ(request.defect, TDefect::None);
    EXPECT_EQ(request.address, 0x00);
    EXPECT_EQ(request.command, 0x48);
    EXPECT_TRUE(request.data.empty());
}

TEST(FrameTest, DecodeRequest_FollowsBothMarkers) {
    // 20 4C 00 F0 15 71: plain, offset at 00, plain again at F0
    const TRequest request = DecodeRequest(Bytes("04 0C 20 4C 0D 14 0C F0 15 71 03"));
    EXPECT_EQ(request.defect, TDefect::None);
    EXPECT_EQ(request.address, 0x20);
    EXPECT_EQ(request.command, 0x4C);
    EXPECT_EQ(request.data, Bytes("00 F0 15"));
}

TEST(FrameTest, DecodeRequest_ReadsTheControlBytesOfTheFrameAsData) {
    // 00 4C 02 03 04 0C 0D 6E
    const TRequest request = DecodeRequest(Bytes("04 0D 14 60 16 17 18 20 21 82 03"));
    EXPECT_EQ(request.defect, TDefect::None);
    EXPECT_EQ(request.data, Bytes("02 03 04 0C 0D"));
}

TEST(FrameTest, DecodeRequest_ReportsAWrongChecksum) {
    const TRequest request = DecodeRequest(Bytes("04 0D 14 5C 5D 03"));
    EXPECT_EQ(request.defect, TDefect::Checksum);
    EXPECT_EQ(request.command, 0x48);
}

TEST(FrameTest, DecodeRequest_RejectsABodyWithoutAMarkerInFront) {
    EXPECT_EQ(DecodeRequest(Bytes("04 20 48 68 03")).defect, TDefect::Stuffing);
}

TEST(FrameTest, DecodeRequest_RejectsABytePlainThatMustBeShifted) {
    EXPECT_EQ(DecodeRequest(Bytes("04 0C 20 14 34 03")).defect, TDefect::Stuffing);
}

TEST(FrameTest, DecodeRequest_RejectsAShiftedByteBelowTheOffset) {
    EXPECT_EQ(DecodeRequest(Bytes("04 0D 14 13 14 03")).defect, TDefect::Stuffing);
}

TEST(FrameTest, DecodeRequest_RejectsFewerThanThreeBytes) {
    EXPECT_EQ(DecodeRequest(Bytes("04 0D 14 14 03")).defect, TDefect::TooShort);
    EXPECT_EQ(DecodeRequest(Bytes("04 03")).defect, TDefect::TooShort);
    EXPECT_EQ(DecodeRequest({}).defect, TDefect::TooShort);
}

TEST(FrameTest, EncodeReply_GivesTheWorkedExample) {
    EXPECT_EQ(EncodeReply(0, 0x48, Bytes("00")), Bytes("02 0D 14 5C 14 5C 03"));
}

TEST(FrameTest, EncodeReply_ChangesTheMarkerOnlyWhenItMust) {
    // 20 36 00 56: the checksum 56 could stand in either run
    EXPECT_EQ(EncodeReply(0x20, 0x36, Bytes("00")), Bytes("02 0C 20 36 0D 14 6A 03"));
    // 00 48 F0 EB 23: F0 cannot be shifted, EB and 23 stay plain
    EXPECT_EQ(EncodeReply(0, 0x48, Bytes("F0 EB")), Bytes("02 0D 14 5C 0C F0 EB 23 03"));
    // 00 48 EB 33: EB is the highest byte that can be shifted
    EXPECT_EQ(EncodeReply(0, 0x48, Bytes("EB")), Bytes("02 0D 14 5C FF 47 03"));
    // 15 36 4B: 15 is the lowest byte that can stand plain
    EXPECT_EQ(EncodeReply(0x15, 0x36, {}), Bytes("02 0C 15 36 4B 03"));
}

TEST(FrameTest, EncodeReply_PutsTheChecksumOff) {
    EXPECT_EQ(EncodeReply(0, 0x48, Bytes("00"), 1), Bytes("02 0D 14 5C 14 5D 03"));
}

TEST(RequestParserTest, Feed_FindsAFrameInPieces) {
    TRequestParser parser;
    EXPECT_TRUE(parser.Feed(Bytes("04 0D 14")).empty());
    EXPECT_TRUE(parser.Feed(Bytes("5C 5C")).empty());
    EXPECT_EQ(parser.Feed(Bytes("03")), std::vector<TBytes>{Bytes("04 0D 14 5C 5C 03")});
    EXPECT_EQ(parser.GarbageCount(), 0U);
}

TEST(RequestParserTest, Feed_FindsTwoFramesInOnePiece) {
    TRequestParser parser;
    EXPECT_EQ(parser.Feed(Bytes("04 0D 14 5C 5C 03 04 0D 14 4A 4A 03")),
              (std::vector<TBytes>{Bytes("04 0D 14 5C 5C 03"), Bytes("04 0D 14 4A 4A 03")}));
}

TEST(RequestParserTest, Feed_SurvivesGarbageBeforeBetweenAndInsideFrames) {
    TRequestParser parser;
    EXPECT_EQ(parser.Feed(Bytes("FF 03 00 04 0D 14 04 0D 14 5C 5C 03 02 03 04 0D 14 4A 4A 03")),
              (std::vector<TBytes>{Bytes("04 0D 14 5C 5C 03"), Bytes("04 0D 14 4A 4A 03")}));
    EXPECT_EQ(parser.GarbageCount(), 8U);
}

// The longest request: a text of 255 bytes with a marker before each of them.
TEST(RequestParserTest, Feed_TakesTheLongestFrameAndDropsALongerOne) {
    TBytes frame{0x04};
    for (int byte = 0; byte < 263; ++byte)
        frame.insert(frame.end(), {0x0C, 0x41});
    frame.push_back(0x03);
    ASSERT_EQ(frame.size(), 528U);
    TRequestParser parser;
    EXPECT_EQ(parser.Feed(frame), std::vector<TBytes>{frame});
    EXPECT_EQ(parser.GarbageCount(), 0U);
    frame.insert(frame.end() - 1, 0x41);
    EXPECT_EQ(parser.Feed(frame), std::vector<TBytes>{});
    EXPECT_EQ(parser.GarbageCount(), 529U);
}

TEST(RequestParserTest, Feed_DropsAFrameThatNeverEnds) {
    TRequestParser parser;
    TBytes endless(5000, 0x55);
    endless.front() = 0x04;
    EXPECT_TRUE(parser.Feed(endless).empty());
    EXPECT_TRUE(parser.Feed(Bytes("03")).empty());
    EXPECT_EQ(parser.Feed(Bytes("04 0D 14 5C 5C 03")).size(), 1U);
}

}  // namespace
}  // namespace tolvane::simulator
