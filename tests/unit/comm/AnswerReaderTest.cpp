#include "comm/AnswerReader.h"

#include <gtest/gtest.h>

#include <deque>
#include <stdexcept>

#include "tests/support/RecordingClock.h"

namespace tolvane {
namespace {

using test::TRecordingClock;

// Gives one piece per call, during which the clock stands still. When none is left, each call waits
// for 100 ms of the clock and gives nothing.
class TPieces : public TByteReceiver {
public:
    explicit TPieces(TRecordingClock& clock) : clock_(clock) {}
    void CheckConnected() override {
        if (!connected) throw CommException(kReadNotConnected, "no link");
    }
    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        limits.push_back(limit);
        if (pieces.empty()) {
            if (failure) failure();
            clock_.Sleep(std::min(limit, TMilliseconds(100)));
            return {};
        }
        piece_ = pieces.front();
        pieces.pop_front();
        return piece_;
    }

    bool connected = true;
    std::deque<TCmdBuffer> pieces;
    std::vector<TMilliseconds> limits;
    void (*failure)() = nullptr;

private:
    TRecordingClock& clock_;
    TCmdBuffer piece_;
};

class AnswerReaderTest : public testing::Test {
public:
    std::int32_t Read(std::uint8_t startByte, std::uint8_t endByte, std::int32_t timeoutMs) {
        return ReceiveAnswer(receiver, {startByte, endByte, timeoutMs, "too late"}, clock, reply,
                             failure);
    }

    TRecordingClock clock;
    TPieces receiver{clock};
    TCmdBuffer reply = {0xEE, 0xEE};
    std::string failure = "untouched";
};

TEST_F(AnswerReaderTest, AFrameIsReturnedAtOnceWithBothMarkers) {
    receiver.pieces = {{0x02, 0x41, 0x03}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
    EXPECT_EQ(failure, "untouched");
}

TEST_F(AnswerReaderTest, NoiseBeforeTheStartByteYieldsOnlyTheFrame) {
    receiver.pieces = {{0x00, 0xFF}, {0x04, 0x55, 0x02, 0x41}, {0x03}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
}

TEST_F(AnswerReaderTest, AnEndByteBeforeAnyStartByteFailsAtOnceWithCode1) {
    receiver.pieces = {{0x55, 0x03, 0x02, 0x41, 0x03}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadWrongAnswer);
    EXPECT_EQ(failure, "Wrong answer. No STX byte.");
    EXPECT_TRUE(reply.empty());
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
}

TEST_F(AnswerReaderTest, ASecondStartByteInsideTheFrameIsKept) {
    receiver.pieces = {{0x02, 0x02, 0x03}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x02, 0x03}));
}

TEST_F(AnswerReaderTest, BytesAfterTheEndByteAreNotKept) {
    receiver.pieces = {{0x02, 0x03, 0x41, 0x42}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x03}));
}

TEST_F(AnswerReaderTest, WithoutAnEndByteTheReadReturns0OnlyWhenTheDeadlinePasses) {
    receiver.pieces = {{0x02, 0x03}, {0x03}};
    EXPECT_EQ(Read(0x02, 0, 250), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x03, 0x03}));
    EXPECT_EQ(clock.Passed(), TMilliseconds(250));
}

TEST_F(AnswerReaderTest, WithoutAnEndByteAndWithNothingReceivedTheReadTimesOut) {
    EXPECT_EQ(Read(0x02, 0, 250), kReadTimeout);
    EXPECT_EQ(failure, "too late");
    EXPECT_EQ(clock.Passed(), TMilliseconds(250));
}

TEST_F(AnswerReaderTest, WithoutAStartByteEveryByteIsKeptFromTheFirstOn) {
    receiver.pieces = {{0x55, 0x41, 0x03}};
    EXPECT_EQ(Read(0, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x55, 0x41, 0x03}));
}

TEST_F(AnswerReaderTest, WithoutAStartByteAnEndByteAloneIsAnAnswer) {
    receiver.pieces = {{0x03}};
    EXPECT_EQ(Read(0, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply, TCmdBuffer{0x03});
}

TEST_F(AnswerReaderTest, WithoutBothMarkersTheReadRunsUntilTheDeadlineAndKeepsAll) {
    receiver.pieces = {{0x00, 0x03}, {0x02}};
    EXPECT_EQ(Read(0, 0, 300), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x00, 0x03, 0x02}));
    EXPECT_EQ(clock.Passed(), TMilliseconds(300));
}

TEST_F(AnswerReaderTest, AFrameWithoutItsEndTimesOutAndLeavesThePartialReply) {
    receiver.pieces = {{0x02, 0x41}};
    EXPECT_EQ(Read(0x02, 0x03, 300), kReadTimeout);
    EXPECT_EQ(failure, "too late");
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
}

TEST_F(AnswerReaderTest, WithoutALinkTheReadReturns3WithoutWaiting) {
    receiver.connected = false;
    receiver.pieces = {{0x02, 0x41, 0x03}};
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadNotConnected);
    EXPECT_EQ(failure, "no link");
    EXPECT_TRUE(reply.empty());
    EXPECT_TRUE(receiver.limits.empty());
}

TEST_F(AnswerReaderTest, NoTimeAtAllReadsNothing) {
    for (const std::int32_t timeout : {0, -1, -2147483647 - 1}) {
        receiver.pieces = {{0x02, 0x03}};
        EXPECT_EQ(Read(0x02, 0x03, timeout), kReadTimeout) << timeout;
        EXPECT_TRUE(receiver.limits.empty()) << timeout;
    }
}

TEST_F(AnswerReaderTest, NoWaitReachesBeyondTheDeadline) {
    EXPECT_EQ(Read(0x02, 0x03, 250), kReadTimeout);
    EXPECT_EQ(receiver.limits, (std::vector<TMilliseconds>{TMilliseconds(250), TMilliseconds(150),
                                                           TMilliseconds(50)}));
}

TEST_F(AnswerReaderTest, NoiseWithoutEndDoesNotProlongTheRead) {
    clock.perLook = TMilliseconds(10);
    receiver.pieces.assign(1000, TCmdBuffer{0x55});
    EXPECT_EQ(Read(0x02, 0x03, 200), kReadTimeout);
    EXPECT_LE(receiver.limits.size(), 20U);
}

TEST_F(AnswerReaderTest, AFloodIsNotKeptBeyondAMebibyte) {
    receiver.pieces = {{0x02}};
    receiver.pieces.insert(receiver.pieces.end(), 1100, TCmdBuffer(1000, 0x41));
    receiver.pieces.push_back({0x03});
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOk);
    EXPECT_EQ(reply.size(), 1048576U);
    EXPECT_EQ(reply.back(), 0x41);
}

TEST_F(AnswerReaderTest, AnyOtherFailureIsCode4WithItsMessage) {
    receiver.pieces = {{0x02, 0x41}};
    receiver.failure = [] { throw std::out_of_range("something else"); };
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadOtherFailure);
    EXPECT_EQ(failure, "something else");
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
}

TEST_F(AnswerReaderTest, ADroppedLinkDuringTheReadIsCode3) {
    receiver.pieces = {{0x02}};
    receiver.failure = [] { throw CommException(kReadNotConnected, "gone"); };
    EXPECT_EQ(Read(0x02, 0x03, 1000), kReadNotConnected);
    EXPECT_EQ(failure, "gone");
}

}  // namespace
}  // namespace tolvane
