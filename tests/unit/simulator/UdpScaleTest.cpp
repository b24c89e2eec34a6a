#include <gtest/gtest.h>

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include "StreamClient.h"
#include "simulator/VirtualScale.h"

namespace tolvane::simulator {
namespace {

using asio::ip::udp;
using std::chrono::milliseconds;

class TUdpClient {
public:
    explicit TUdpClient(std::uint16_t port)
        : socket_(io_, udp::endpoint(asio::ip::make_address("127.0.0.1"), 0)),
          scale_(asio::ip::make_address("127.0.0.1"), port) {}

    void Send(const TBytes& bytes) { socket_.send_to(asio::buffer(bytes), scale_); }

    // One datagram, or nothing when none comes.
    std::optional<TBytes> Receive(std::chrono::milliseconds patience = kPatience) {
        TBytes bytes(65536);
        std::optional<std::size_t> received;
        socket_.async_receive_from(asio::buffer(bytes), sender_,
                                   [&](const std::error_code& error, std::size_t count) {
                                       if (!error) received = count;
                                   });
        io_.restart();
        io_.run_for(patience);
        if (!received) {
            socket_.cancel();
            io_.restart();
            io_.run();
            return std::nullopt;
        }
        bytes.resize(*received);
        return bytes;
    }

    std::uint16_t SenderPort() const { return sender_.port(); }

private:
    asio::io_context io_;
    udp::socket socket_;
    udp::endpoint scale_;
    udp::endpoint sender_;
};

class UdpScaleTest : public testing::Test {
protected:
    static TScaleOptions Options(std::vector<TProbeOptions> probes) {
        TScaleOptions options;
        options.tcpPort.reset();
        options.udpPort = 0;
        options.probes = std::move(probes);
        return options;
    }
    void Start(TFault fault) {
        scale_.SetFaults({.faults = {std::move(fault)}});
        scale_.Start();
    }

    // NOLINTNEXTLINE: the fixture's members are its tests' own.
    TVirtualScale scale_{Options({})};
};

TEST_F(UdpScaleTest, ARequest_IsAnsweredToItsSender) {
    scale_.Start();
    EXPECT_EQ(scale_.Endpoints(), std::vector{"udp 127.0.0.1:" + std::to_string(scale_.UdpPort())});
    TUdpClient first(scale_.UdpPort());
    TUdpClient second(scale_.UdpPort());
    first.Send(Bytes(kAskPrgMode));
    EXPECT_EQ(first.Receive(), Bytes(kPrgMode));
    EXPECT_EQ(first.SenderPort(), scale_.UdpPort());
    second.Send(Bytes("FF " + kAskVersion));
    EXPECT_EQ(second.Receive(), Bytes(kVersion));
}

TEST_F(UdpScaleTest, AFrameOverTwoDatagrams_IsNoRequest) {
    scale_.Start();
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes("04 0D 14"));
    client.Send(Bytes("5C 5C 03"));
    client.Send({});
    client.Send(Bytes(kAskPrgMode));
    EXPECT_EQ(client.Receive(), Bytes(kPrgMode));
    EXPECT_EQ(scale_.State().requests.total, 1);
}

TEST_F(UdpScaleTest, Split_SendsADatagramPerByte) {
    Start({.kind = TFaultKind::Split});
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskPrgMode));
    for (const std::uint8_t byte : Bytes(kPrgMode))
        EXPECT_EQ(client.Receive(), TBytes{byte});
}

TEST_F(UdpScaleTest, RawWithoutBytes_SendsAnEmptyDatagram) {
    Start({.kind = TFaultKind::Raw});
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskPrgMode));
    EXPECT_EQ(client.Receive(), TBytes());
}

TEST_F(UdpScaleTest, NoiseAfter_FillsTheLargestDatagram) {
    Start({.kind = TFaultKind::NoiseAfter, .count = 65500, .bytes = Bytes("AA")});
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskPrgMode));
    TBytes expected = Bytes(kPrgMode);
    expected.resize(65507, 0xAA);
    EXPECT_EQ(client.Receive(), expected);
}

TEST_F(UdpScaleTest, Stray_ComesFromAnotherPort) {
    Start({.kind = TFaultKind::Stray, .bytes = Bytes("AA BB")});
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskPrgMode));
    EXPECT_EQ(client.Receive(), Bytes("AA BB"));
    EXPECT_NE(client.SenderPort(), scale_.UdpPort());
    EXPECT_EQ(client.Receive(), Bytes(kPrgMode));
    EXPECT_EQ(client.SenderPort(), scale_.UdpPort());
}

TEST_F(UdpScaleTest, Drop_IsNoAnswerAndTheNextRequestIsServed) {
    Start({.kind = TFaultKind::Drop, .request = 1});
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskPrgMode));
    client.Send(Bytes(kAskWeightMode));
    EXPECT_EQ(client.Receive(), Bytes(kWeightMode));
}

TEST_F(UdpScaleTest, AClientThatHasGone_DoesNotStopTheScale) {
    Start({.kind = TFaultKind::Slow, .request = 1, .ms = milliseconds(20)});
    {
        TUdpClient gone(scale_.UdpPort());
        gone.Send(Bytes(kAskPrgMode));
        ASSERT_TRUE(scale_.WaitForRequests(1, kPatience));
    }
    TUdpClient client(scale_.UdpPort());
    client.Send(Bytes(kAskVersion));
    EXPECT_EQ(client.Receive(), Bytes(kVersion));
}

class DiscoveryTest : public UdpScaleTest, public testing::WithParamInterface<TProbe> {};

TEST_P(DiscoveryTest, AProbe_IsAnsweredAsOftenAsWanted) {
    TVirtualScale scale(
        Options({{.probe = GetParam(), .port = 0, .replies = 2, .reply = Bytes("41 42")}}));
    scale.Start();
    TUdpClient client(scale.ProbePort(GetParam()));
    const std::vector<TBytes> requests = {
        Bytes("58"), Bytes("46 49 4E 44"),
        Bytes("43 21 30 39 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")};
    for (const TBytes& request : requests)
        client.Send(request);
    EXPECT_EQ(client.Receive(), Bytes("41 42"));
    EXPECT_EQ(client.Receive(), Bytes("41 42"));
    EXPECT_FALSE(client.Receive(milliseconds(50)));
}

INSTANTIATE_TEST_SUITE_P(All, DiscoveryTest,
                         testing::Values(TProbe::Character, TProbe::Find, TProbe::Converter));

TEST(DiscoveryPortsTest, AProbe_HasItsOwnPortUnlessAnotherIsGiven) {
    EXPECT_EQ(TProbeOptions{.probe = TProbe::Character}.Port(), 65535);
    EXPECT_EQ(TProbeOptions{.probe = TProbe::Find}.Port(), 1460);
    EXPECT_EQ(TProbeOptions{.probe = TProbe::Converter}.Port(), 36);
    EXPECT_EQ((TProbeOptions{.probe = TProbe::Find, .port = 4000}.Port()), 4000);
}

}  // namespace
}  // namespace tolvane::simulator
