#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "Tshark.h"
#include "comm/DevCommBaseUnit.h"
#include "command/TraceFile.h"

namespace tolvane {
namespace {

// The bytes before a frame of scale 3 on TCP with code table 0.
const std::string kRequest = "01 01 00 00 03 00 00 00 00 00 00 00 ";
const std::string kReply = "01 01 01 00 03 00 00 00 00 00 00 00 ";
// 3C and 4C, to which the replies below belong.
const std::string kSetWeightMode = kRequest + "04 0D 14 50 50 03";
const std::string kBarcode = kRequest + "04 0D 14 60 14 40 15 19 19 46 46 44 45 46 8E 03";

// A packet and what is wrong with it, "|" between several reasons.
struct TCase {
    std::string packet;
    std::string reasons;
};

// Each packet gets exactly its reasons.
void ExpectReasons(const std::vector<TCase>& cases) {
    const TScratchFolder folder;
    std::vector<std::string> packets;
    for (const TCase& one : cases)
        packets.push_back(one.packet);
    test::MakeCapture(folder / "bad.pcapng", packets);
    const test::TTshark tshark;
    const std::vector<std::string> found =
        tshark.Field(folder / "bad.pcapng", "_ws.expert.message");
    ASSERT_EQ(found.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(found[i], cases[i].reasons) << cases[i].packet;
}

TEST(BadFrames, EachFaultOfAFrameHasItsReason) {
    ExpectReasons({
        {kSetWeightMode, ""},
        {kReply + "02 0D 14 50 14 50 03", ""},
        // Start and end.
        {kRequest + "02 0D 14 50 50 03", "Wrong start: 02, a request begins with 04"},
        {kReply + "04 0D 14 50 14 50 03", "Wrong start: 04, a reply begins with 02"},
        {kRequest + "04 0D 14 50 50", "No end: the last byte is 50, not 03"},
        {kRequest + "04", "No end: the last byte is 04, not 03|Too short: there is no body"},
        {kRequest + "04 0D 14 50 50 03 20 03", "2 bytes stand behind the end"},
        // Too short: by nothing, and by the checksum.
        {kRequest + "04 03", "Too short: there is no body"},
        {kRequest + "04 0D 14 50 03", "Too short: the body has 2 of at least 3 bytes"},
        // Stuffing.
        {kRequest + "04 0D 03",
         "The marker 0D stands at the end, with nothing behind it|"
         "Too short: the body has 0 of at least 3 bytes"},
        {kRequest + "04 0D 14 50 50 0C 03",
         "The marker 0C stands at the end, with nothing behind it"},
        {kRequest + "04 20 3C 5C 03", "The body begins with 20 and not with a marker"},
        {kRequest + "04 0C 0D 14 50 50 03", "A marker follows a marker, at byte 2"},
        {kRequest + "04 0C 14 3C 50 03", "Byte 2 is 14, which stands in no body so"},
        {kRequest + "04 0D 04 50 40 03", "Byte 2 is 04, which stands in no body so"},
        // Checksum.
        {kRequest + "04 0D 14 50 51 03", "Wrong checksum: 3D, the bytes before it add up to 3C"},
        {kRequest + "04 0D 14 7F 7F 03", "Unknown command 6B"},
    });
}

TEST(BadFrames, AReplyIsComparedWithItsRequest) {
    ExpectReasons({
        {kSetWeightMode, ""},
        {kReply + "02 0D 19 50 14 55 03", "The reply is of scale address 05, the request had 00"},
        {kBarcode, ""},
        {kReply + "02 0D 14 50 14 50 03", "The reply is to command 3C, the request had 4C"},
        // Another scale's exchange does not come between.
        {kSetWeightMode, ""},
        {"01 01 00 00 04 00 00 00 00 00 00 00 04 0C 20 36 56 03", ""},
        {kReply + "02 0D 14 50 14 50 03", ""},
        {"01 01 01 00 04 00 00 00 00 00 00 00 02 0C 20 36 0D 14 6A 03", ""},
    });
}

TEST(BadFrames, AReplySaysWhatTheScaleRefuses) {
    ExpectReasons({
        {kReply + "02 0D 14 5D 1B 64 03", "The scale refuses with error code 7"},
        {kReply + "02 0D 14 5D 5D 03", "The reply has no error code"},
    });
}

TEST(BadFrames, AnExchangeThatFailedSaysHow) {
    ExpectReasons({
        {"01 00 00 05 03 00 00 00 00 00 00 00 04 0D 14 50 50 03", "The request was not sent"},
        {"01 00 01 02 03 00 00 00 00 00 00 00", "No reply: time-out, 0 bytes came"},
        {"01 00 01 02 03 00 00 00 00 00 00 00 02 0D 14 50 14",
         "No reply: time-out, 5 bytes came|No end: the last byte is 14, not 03"},
        {"01 00 01 01 03 00 00 00 00 00 00 00",
         "No reply: wrong answer, an end came without a start, 0 bytes came"},
        {"01 00 01 03 03 00 00 00 00 00 00 00", "No reply: not connected, 0 bytes came"},
        {"01 00 01 04 03 00 00 00 00 00 00 00", "No reply: other failure, 0 bytes came"},
    });
}

TEST(BadFrames, DataThatDoNotSuitTheirCommandAreNamed) {
    ExpectReasons({
        // 3C with a byte too many; 49 with one too few.
        {kRequest + "04 0D 14 50 14 50 03", "The command has 0 data bytes, here are 1"},
        {kRequest + "04 0D 14 5D 14 40 15 14 14 8A 03", "The command has 6 data bytes, here are 5"},
        // 49 that does not begin with 00, and with A as the price's last digit.
        {kRequest + "04 0D 14 5D 15 40 15 14 14 14 8B 03", "The first data byte is 01, not 00"},
        {kRequest + "04 0D 14 5D 14 40 15 1E 14 14 94 03", "Price has a digit above 9: 0A0000"},
        // 4A with A0 at the front of the weight field.
        {kRequest + "04 0D 14 5E 14 40 15 14 14 14 14 14 B4 2B 03",
         "Weight field has a digit above 9: 0000A0"},
        // 4B: piece flag 2, tare 100, label 21.
        {kRequest + "04 0D 14 5F 14 40 15 14 14 14 16 78 29 0C F3 03",
         "The piece flag 2 is above 1|Tare 100 is above 99|Label 21 is above 20"},
        // 4C: no length; parameter 32; a text of 2 that is said to have 3; best before without 01.
        {kRequest + "04 0D 14 60 14 40 15 14 8D 03",
         "The command has at least 5 data bytes, here are 4"},
        {kRequest + "04 0D 14 60 14 40 15 34 14 AD 03", "Parameter 32 is above 31"},
        {kRequest + "04 0D 14 60 14 40 15 19 17 46 46 F9 03", "The text's length is 3, here are 2"},
        {kRequest + "04 0D 14 60 14 40 15 18 16 16 32 B3 03",
         "Best before is not 01 and a number of 1 to 4 bytes"},
    });
}

TEST(BadFrames, BytesOfAnotherVersionAreNotRead) {
    const std::string reason = "The bytes before the frame are not of this version";
    ExpectReasons({
        {"02 01 00 00 03 00 00 00 00 00 00 00 04 0D 14 50 50 03", reason},
        {"01 01 02 00 03 00 00 00 00 00 00 00 04 0D 14 50 50 03", reason},
        {"01 01 00 00 03 00 00 00 00 00 00", reason},
    });
}

// Frames of each command with bytes changed, taken out and put in. The fixture looks for failures
// of the dissector itself.
TEST(BadFrames, NoDamageBreaksTheDissector) {
    const std::vector<TCmdBuffer> frames = {
        {0x04, 0x0D, 0x14, 0x50, 0x50, 0x03},
        {0x04, 0x0D, 0x14, 0x5E, 0x14, 0x40, 0x15, 0x48, 0x26, 0x14, 0x14, 0x14, 0x14, 0xD1, 0x03},
        {0x04, 0x0D, 0x14, 0x5F, 0x14, 0x40, 0x15, 0xAD, 0x14, 0x14, 0x15, 0x14, 0x15, 0x27, 0x03},
        {0x04, 0x0D, 0x14, 0x60, 0x14, 0x40, 0x15, 0x18, 0x16, 0x15, 0x32, 0xB2, 0x03},
        {0x04, 0x0D, 0x14, 0x60, 0x14, 0x40, 0x15, 0x19, 0x19, 0x46, 0x46, 0x44, 0x45, 0x46, 0x8E,
         0x03},
        {0x02, 0x0D, 0x14, 0x5C, 0x14, 0x45, 0x42, 0x44, 0x48, 0x14, 0x14, 0x14,
         0x14, 0xB4, 0x23, 0x14, 0x14, 0x14, 0x14, 0x14, 0x15, 0xCF, 0x03},
    };
    constexpr std::size_t kPackets = 5000;
    const TScratchFolder folder;
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    TTraceFile trace(folder / "damaged.pcapng", std::chrono::system_clock::now);
    for (std::size_t i = 0; i < kPackets; ++i) {
        TCmdBuffer frame = frames[below(frames.size())];
        for (std::size_t n = below(4); n > 0 && !frame.empty(); --n) {
            const auto at = frame.begin() + static_cast<std::ptrdiff_t>(below(frame.size()));
            const auto byte = static_cast<std::uint8_t>(below(2) == 0 ? below(256) : below(0x16));
            const std::size_t what = below(4);
            if (what == 0) frame.erase(at);
            if (what == 1) frame.erase(at, frame.end());
            if (what == 2) frame.insert(at, byte);
            if (what == 3) *at = byte;
        }
        const auto table = static_cast<std::int32_t>(below(4));
        trace.Add(trace.AddScale({3, "", "", 0, table}),
                  {static_cast<TTraceDirection>(below(2)), static_cast<std::uint8_t>(below(7)),
                   frame, ""});
    }
    EXPECT_EQ(test::TTshark().Field(folder / "damaged.pcapng", "_ws.expert.message").size(),
              kPackets);
}

}  // namespace
}  // namespace tolvane
