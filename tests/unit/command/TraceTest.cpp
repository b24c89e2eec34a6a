#include "command/Trace.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "CaptureReader.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/ScriptedChannel.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using namespace std::string_literals;
using test::TScriptedChannel;

// The bytes before those of the wire: of a request that was sent to scale 3 over TCP with code
// table 1, and of a right reply.
const std::string kSent = "\x01\x01\x00\x00\x03\0\0\0\x01\0\0\0"s;
const std::string kAnswered = "\x01\x01\x01\x00\x03\0\0\0\x01\0\0\0"s;
// The exchange of SetWeightMode with scale 0.
const std::string kWeightMode = "\x04\x0D\x14\x50\x50\x03";
const std::string kWeightModeDone = "\x02\x0D\x14\x50\x14\x50\x03";

TCmdBuffer Bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

class TCaptureTest : public testing::Test {
protected:
    std::vector<std::string> Packets() const {
        std::vector<std::string> contents;
        for (const test::TCapturedPacket& packet : test::ReadCapture(path_).packets)
            contents.push_back(packet.content);
        return contents;
    }
    std::string File() const { return GetFile(path_); }

    TScratchFolder folder_;
    std::filesystem::path path_ = folder_ / "run.pcapng";
    TTraceFile trace_{path_, [] { return std::chrono::system_clock::time_point(); }};
    test::TRecordingClock clock_;
};

class TracingChannelTest : public TCaptureTest {
protected:
    TracingChannelTest() {
        auto inner = std::make_unique<TScriptedChannel>(clock_);
        script_ = inner.get();
        const std::uint32_t scale = trace_.AddScale({3, "", "SCRIPT (peer)", 1, 1});
        channel_ = std::make_unique<TTracingChannel>(std::move(inner), trace_, scale);
    }
    // One read as the driver does it.
    std::int32_t Read(std::string& reply) {
        TCmdBuffer bytes;
        const std::int32_t result = channel_->ReadAnswer(bytes, 0x02, 0x03, 3000);
        reply.assign(bytes.begin(), bytes.end());
        return result;
    }

    TScriptedChannel* script_ = nullptr;
    std::unique_ptr<TTracingChannel> channel_;
};

TEST_F(TracingChannelTest, DoesWhatTheOtherChannelDoes) {
    EXPECT_EQ(channel_->GetDescription(), "SCRIPT (peer)");
    EXPECT_FALSE(channel_->IsConnected());
    EXPECT_TRUE(channel_->Open());
    EXPECT_TRUE(channel_->IsConnected());
    script_->script.push_back(test::Answer(Bytes(kWeightModeDone)));
    EXPECT_TRUE(channel_->SendData(Bytes(kWeightMode)));
    EXPECT_EQ(script_->sent, std::vector<TCmdBuffer>{Bytes(kWeightMode)});
    std::string reply;
    EXPECT_EQ(Read(reply), kReadOk);
    EXPECT_EQ(reply, kWeightModeDone);
    EXPECT_EQ(script_->reads.at(0).startByte, 0x02);
    EXPECT_EQ(script_->reads.at(0).endByte, 0x03);
    EXPECT_EQ(script_->reads.at(0).timeoutMs, 3000);
    channel_->Close();
    EXPECT_FALSE(script_->IsConnected());
}

TEST_F(TracingChannelTest, TheOtherChannelGoesWithIt) {
    bool freed = false;
    script_->freed = &freed;
    channel_.reset();
    EXPECT_TRUE(freed);
}

TEST_F(TracingChannelTest, TellsWhyTheOtherOneDoesNotOpen) {
    script_->openError = "no such peer";
    EXPECT_FALSE(channel_->Open());
    EXPECT_EQ(channel_->LastError, "no such peer");
}

TEST_F(TracingChannelTest, WritesRequestAndReply) {
    channel_->Open();
    script_->script.push_back(test::Answer(Bytes(kWeightModeDone)));
    channel_->SendData(Bytes(kWeightMode));
    EXPECT_EQ(Packets(), std::vector<std::string>{kSent + kWeightMode});
    std::string reply;
    Read(reply);
    EXPECT_EQ(Packets(),
              (std::vector<std::string>{kSent + kWeightMode, kAnswered + kWeightModeDone}));
}

TEST_F(TracingChannelTest, WritesARequestThatWasNotSentWithTheReason) {
    channel_->Open();
    script_->script.push_back(test::SendFailure("the cable is out"));
    EXPECT_FALSE(channel_->SendData(Bytes(kWeightMode)));
    EXPECT_EQ(channel_->LastError, "the cable is out");
    EXPECT_EQ(Packets(),
              std::vector<std::string>{"\x01\x01\x00\x05\x03\0\0\0\x01\0\0\0"s + kWeightMode});
    EXPECT_NE(File().find("the cable is out"), std::string::npos);
}

TEST_F(TracingChannelTest, WritesHowFarAReplyCameBeforeItsTimeWasUp) {
    channel_->Open();
    script_->script.push_back(test::Answer(Bytes("\x02\x0D\x14")));
    channel_->SendData(Bytes(kWeightMode));
    std::string reply;
    EXPECT_EQ(Read(reply), kReadTimeout);
    EXPECT_EQ(channel_->LastError, "[SCRIPT] Fail read data (peer) - Read timeout occured");
    EXPECT_EQ(Packets().at(1), "\x01\x01\x01\x02\x03\0\0\0\x01\0\0\0\x02\x0D\x14"s);
    EXPECT_NE(File().find("Read timeout occured"), std::string::npos);
}

TEST_F(TracingChannelTest, WritesThatNothingCame) {
    channel_->Open();
    channel_->SendData(Bytes(kWeightMode));
    std::string reply;
    EXPECT_EQ(Read(reply), kReadTimeout);
    EXPECT_EQ(Packets().at(1), "\x01\x01\x01\x02\x03\0\0\0\x01\0\0\0"s);
}

TEST_F(TracingChannelTest, ADriverOverItRepeatsAsBeforeAndEachAttemptIsWritten) {
    TElicomScale scale(std::move(channel_), false, clock_);
    ASSERT_TRUE(scale.OpenChannel());
    script_->script = {test::Answer({0x03}), test::Answer(Bytes(kWeightModeDone))};
    std::int32_t errCode = -1;
    EXPECT_TRUE(scale.SetWeightMode(errCode));
    EXPECT_EQ(errCode, 0);
    const std::string wrongAnswer = "\x01\x01\x01\x01\x03\0\0\0\x01\0\0\0"s;
    EXPECT_EQ(Packets(),
              (std::vector<std::string>{kSent + kWeightMode, wrongAnswer, kSent + kWeightMode,
                                        kAnswered + kWeightModeDone}));
}

// Drivers over scripted channels, and what they were asked for.
class TScriptedFactory : public TScaleFactory {
public:
    explicit TScriptedFactory(TClock& clock) : clock_(clock) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override {
        return Made("COM" + std::to_string(portNumber) + " " + std::to_string(bitsPerSecond));
    }
    std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) override {
        return Made("TCP " + host + " " + std::to_string(port));
    }
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override {
        return Made("UDP " + host);
    }

    std::vector<std::string> asked;

private:
    std::unique_ptr<TElicomScale> Made(std::string what) {
        asked.push_back(std::move(what));
        return std::make_unique<TElicomScale>(std::make_unique<TScriptedChannel>(clock_), false,
                                              clock_);
    }

    TClock& clock_;
};

class TracingFactoryTest : public TCaptureTest {
protected:
    static TScaleRec Scale(std::int32_t number, std::string_view name, std::int32_t encoding) {
        TScaleRec rec;
        rec.ScaleNumb = number;
        rec.ScaleName = name;
        rec.Encoding = encoding;
        return rec;
    }
    // One request through a driver that was just made.
    static void Use(std::unique_ptr<TElicomScale> driver) {
        std::int32_t errCode = 0;
        EXPECT_TRUE(driver->OpenChannel());
        driver->SetWeightMode(errCode);
    }

    TScriptedFactory drivers_{clock_};
    TTracingFactory factory_{drivers_, trace_};
};

TEST_F(TracingFactoryTest, AsksTheOtherFactory) {
    factory_.CreateRS232(4, 19200);
    factory_.CreateTCP("10.0.0.5", 100);
    factory_.CreateUDP("10.0.0.6");
    EXPECT_EQ(drivers_.asked,
              (std::vector<std::string>{"COM4 19200", "TCP 10.0.0.5 100", "UDP 10.0.0.6"}));
}

TEST_F(TracingFactoryTest, ADriverIsTracedAsTheScaleThatWasTold) {
    factory_.SetScale(Scale(3, "Щанд"_cp1251, 2));
    Use(factory_.CreateRS232(4, 19200));
    factory_.SetScale(Scale(7, "", 0));
    Use(factory_.CreateTCP("10.0.0.5", 100));
    Use(factory_.CreateUDP("10.0.0.6"));

    const std::vector<std::string> packets = Packets();
    ASSERT_EQ(packets.size(), 6U);
    EXPECT_EQ(packets[0], "\x01\x00\x00\x00\x03\0\0\0\x02\0\0\0"s + kWeightMode);
    EXPECT_EQ(packets[1], "\x01\x00\x01\x02\x03\0\0\0\x02\0\0\0"s);
    EXPECT_EQ(packets[2], "\x01\x01\x00\x00\x07\0\0\0\x00\0\0\0"s + kWeightMode);
    EXPECT_EQ(packets[4], "\x01\x02\x00\x00\x07\0\0\0\x00\0\0\0"s + kWeightMode);
    const std::vector<std::string> interfaces = test::ReadCapture(path_).interfaces;
    ASSERT_EQ(interfaces.size(), 3U);
    EXPECT_NE(interfaces[0].find("scale 3 \xD0\xA9\xD0\xB0\xD0\xBD\xD0\xB4"), std::string::npos);
    EXPECT_NE(interfaces[1].find("scale 7\0"s), std::string::npos);
    EXPECT_NE(interfaces[1].find("SCRIPT (peer)"), std::string::npos);
}

TEST_F(TracingFactoryTest, AScaleThatIsOpenedAgainStaysTheSame) {
    factory_.SetScale(Scale(3, "a", 2));
    Use(factory_.CreateUDP("10.0.0.6"));
    factory_.SetScale(Scale(4, "b", 2));
    Use(factory_.CreateUDP("10.0.0.7"));
    factory_.SetScale(Scale(3, "a", 2));
    Use(factory_.CreateUDP("10.0.0.6"));
    const test::TCapture capture = test::ReadCapture(path_);
    EXPECT_EQ(capture.interfaces.size(), 2U);
    ASSERT_EQ(capture.packets.size(), 6U);
    EXPECT_EQ(capture.packets[0].interfaceId, 0U);
    EXPECT_EQ(capture.packets[2].interfaceId, 1U);
    EXPECT_EQ(capture.packets[4].interfaceId, 0U);
}

}  // namespace
}  // namespace tolvane
