#include <gtest/gtest.h>

#include <asio/ip/tcp.hpp>

#include "StreamClient.h"
#include "simulator/VirtualScale.h"

namespace tolvane::simulator {
namespace {

using asio::ip::tcp;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class TTcpClient : public TStreamClient<tcp::socket> {
public:
    explicit TTcpClient(const TVirtualScale& scale) {
        Stream().connect({asio::ip::make_address("127.0.0.1"), scale.Port()});
    }
};

// A started scale with these faults.
class TcpScaleTest : public testing::Test {
protected:
    void Start(TFaultScript faults = {}) {
        scale_.SetFaults(std::move(faults));
        scale_.Start();
    }
    void Start(TFault fault) { Start(TFaultScript{.faults = {std::move(fault)}}); }

    // NOLINTNEXTLINE: the fixture's members are its tests' own.
    TVirtualScale scale_;
};

TEST_F(TcpScaleTest, Endpoints_NameTheFreePortThatWasTaken) {
    EXPECT_EQ(scale_.Port(), 0);
    EXPECT_TRUE(scale_.Endpoints().empty());
    Start();
    EXPECT_NE(scale_.Port(), 0);
    EXPECT_EQ(scale_.Endpoints(), std::vector{"tcp 127.0.0.1:" + std::to_string(scale_.Port())});
}

TEST_F(TcpScaleTest, Start_FailsOnAPortThatIsTaken) {
    Start();
    TScaleOptions options;
    options.tcpPort = scale_.Port();
    TVirtualScale other(options);
    EXPECT_THROW(other.Start(), std::system_error);
    EXPECT_TRUE(other.Endpoints().empty());
}

TEST_F(TcpScaleTest, ARequest_IsAnswered) {
    Start();
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskVersion, 23), Bytes(kVersion));
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    EXPECT_TRUE(scale_.State().programming);
}

TEST_F(TcpScaleTest, ARequestInPiecesAmongNoise_IsAnswered) {
    Start();
    TTcpClient client(scale_);
    client.Stream().set_option(tcp::no_delay(true));
    client.Send("FF 03 00 04 0D");
    client.Send("14 5C 5C");
    EXPECT_EQ(client.Ask("03 AA", 23), Bytes(kVersion));
}

TEST_F(TcpScaleTest, TwoRequestsAtOnce_AreAnsweredInOrder) {
    Start();
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode + " " + kAskWeightMode, 14),
              Bytes(kPrgMode + " " + kWeightMode));
}

TEST_F(TcpScaleTest, ClientsComeAndGo_AndTheScaleKeepsWhatTheyWrote) {
    Start();
    for (int i = 0; i < 3; ++i) {
        TTcpClient client(scale_);
        EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    }
    {
        TTcpClient dropped(scale_);
        dropped.Send("04 0D 14");
        dropped.Stream().set_option(asio::socket_base::linger(true, 0));
    }
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask("04 0D 14 5D 14 40 15 64 15 14 DB 03", 7), Bytes("02 0D 14 5D 14 5D 03"));
    EXPECT_EQ(scale_.State().articles.at(300).price, 150);
    EXPECT_EQ(scale_.State().requests.total, 4);
}

TEST_F(TcpScaleTest, AnIdleClient_DoesNotKeepAnotherWaiting) {
    Start();
    TTcpClient idle(scale_);
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
}

TEST_F(TcpScaleTest, WaitForRequests_ReturnsWhenTheyHaveCome) {
    Start();
    TTcpClient client(scale_);
    client.Send(kAskPrgMode);
    EXPECT_TRUE(scale_.WaitForRequests(1, kPatience));
    EXPECT_FALSE(scale_.WaitForRequests(2, milliseconds(1)));
    EXPECT_EQ(scale_.Requests().at(0).frame, Bytes(kAskPrgMode));
}

TEST_F(TcpScaleTest, StopAndStart_KeepWhatTheScaleHolds) {
    Start();
    {
        TTcpClient client(scale_);
        EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    }
    scale_.Stop();
    scale_.Stop();
    EXPECT_TRUE(scale_.State().programming);
    scale_.Start();
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask("04 0D 14 5D 14 40 15 64 15 14 DB 03", 7), Bytes("02 0D 14 5D 14 5D 03"));
}

TEST_F(TcpScaleTest, Stop_ClosesTheConnection) {
    Start();
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    scale_.Stop();
    EXPECT_TRUE(client.Receive(1).empty());
    EXPECT_EQ(client.Error(), asio::error::eof);
}

TEST_F(TcpScaleTest, Silent_IsSilentUntilStopped) {
    Start({.kind = TFaultKind::Silent});
    TTcpClient client(scale_);
    client.Send(kAskPrgMode);
    ASSERT_TRUE(scale_.WaitForRequests(1, kPatience));
    EXPECT_TRUE(client.Receive(1, milliseconds(50)).empty());
    const auto before = steady_clock::now();
    scale_.Stop();
    EXPECT_LT(steady_clock::now() - before, std::chrono::seconds(1));
}

class StopTest : public TcpScaleTest, public testing::WithParamInterface<TFaultKind> {};

TEST_P(StopTest, Stop_ReturnsAtOnceInTheMiddleOfALongFault) {
    Start({.kind = GetParam(), .ms = std::chrono::hours(1)});
    TTcpClient client(scale_);
    client.Send(kAskPrgMode + " " + kAskPrgMode);
    ASSERT_TRUE(scale_.WaitForRequests(2, kPatience));
    const auto before = steady_clock::now();
    scale_.Stop();
    EXPECT_LT(steady_clock::now() - before, std::chrono::seconds(1));
}

INSTANTIATE_TEST_SUITE_P(All, StopTest,
                         testing::Values(TFaultKind::Silent, TFaultKind::Slow, TFaultKind::Late,
                                         TFaultKind::Split, TFaultKind::SplitAt),
                         [](const auto& entry) {
                             std::string name(FaultName(entry.param));
                             std::erase(name, '-');
                             return name;
                         });

TEST_F(TcpScaleTest, Slow_KeepsLaterRepliesBehind) {
    Start({.kind = TFaultKind::Slow, .request = 1, .ms = milliseconds(150)});
    TTcpClient client(scale_);
    const auto before = steady_clock::now();
    EXPECT_EQ(client.Ask(kAskPrgMode + " " + kAskWeightMode, 14),
              Bytes(kPrgMode + " " + kWeightMode));
    EXPECT_GE(steady_clock::now() - before, milliseconds(150));
}

TEST_F(TcpScaleTest, Late_LetsLaterRepliesPassAndComesTwice) {
    Start({.kind = TFaultKind::Late, .request = 1, .ms = milliseconds(150), .times = 2});
    TTcpClient client(scale_);
    const auto before = steady_clock::now();
    client.Send(kAskPrgMode + " " + kAskWeightMode);
    EXPECT_EQ(client.Receive(7), Bytes(kWeightMode));
    EXPECT_EQ(client.Receive(14), Bytes(kPrgMode + " " + kPrgMode));
    EXPECT_GE(steady_clock::now() - before, milliseconds(150));
}

TEST_F(TcpScaleTest, Split_ArrivesWholeInTheEnd) {
    Start({.kind = TFaultKind::Split});
    TTcpClient client(scale_);
    const auto before = steady_clock::now();
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    EXPECT_GE(steady_clock::now() - before, milliseconds(12));
}

TEST_F(TcpScaleTest, Disconnect_AnswersAndClosesAndServesTheNextClient) {
    Start({.kind = TFaultKind::Disconnect, .request = 2});
    {
        TTcpClient client(scale_);
        EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
        EXPECT_EQ(client.Ask(kAskPrgMode, 8), Bytes(kPrgMode));
        EXPECT_EQ(client.Error(), asio::error::eof);
    }
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
}

TEST_F(TcpScaleTest, Drop_ClosesInsteadOfAnswering) {
    Start({.kind = TFaultKind::Drop});
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 1), TBytes());
    EXPECT_EQ(client.Error(), asio::error::eof);
}

TEST_F(TcpScaleTest, Cut_ClosesInMidFrame) {
    Start({.kind = TFaultKind::Cut});
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes("02 0D 14"));
    EXPECT_EQ(client.Error(), asio::error::eof);
}

TEST_F(TcpScaleTest, HalfClose_StillReadsRequests) {
    Start({.kind = TFaultKind::HalfClose, .request = 1});
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 8), Bytes(kPrgMode));
    EXPECT_EQ(client.Error(), asio::error::eof);
    client.Send(kAskWeightMode);
    EXPECT_TRUE(scale_.WaitForRequests(2, kPatience));
}

TEST_F(TcpScaleTest, Reset_ResetsInsteadOfAnswering) {
    Start({.kind = TFaultKind::Reset});
    TTcpClient client(scale_);
    EXPECT_EQ(client.Ask(kAskPrgMode, 1), TBytes());
    EXPECT_EQ(client.Error(), asio::error::connection_reset);
}

}  // namespace
}  // namespace tolvane::simulator
