#include "comm/UdpSocket.h"

#include <gtest/gtest.h>

#include <array>
#include <asio/error.hpp>
#include <string>
#include <utility>

#include "tests/support/FreeUdpPort.h"

namespace tolvane::test {
namespace {

constexpr std::array<std::uint8_t, 2> kDatagram = {1, 2};
constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr TMilliseconds kLongestWait{5000};

// A socket whose receiving the test plays, and to which a datagram has been sent.
class UdpSocketTest : public ::testing::Test {
protected:
    static std::optional<TReceived> Receive(TDatagramReceive receive) {
        const std::uint16_t port = FreeUdpPort();
        TUdpSocket socket(std::move(receive));
        socket.Open(port, false);
        TUdpSocket sender;
        sender.Open(0, false);
        sender.Send(kDatagram, "127.0.0.1", port);
        std::array<std::uint8_t, 16> buffer{};
        return socket.Receive(buffer, kLongestWait);
    }
    static std::optional<TReceived> ReceiveWith(const std::error_code& told) {
        return Receive([told](std::uintptr_t, std::span<std::uint8_t>, std::error_code& error) {
            error = told;
            return TReceived{};
        });
    }
};

TEST_F(UdpSocketTest, OnlyFromAPeerADatagramOfThePeerCounts) {
    const auto received = Receive(ReceiveOnlyFrom("127.0.0.1"));
    ASSERT_TRUE(received);
    EXPECT_EQ(received->length, kDatagram.size());
    EXPECT_EQ(received->sender, kLoopback);
}

TEST_F(UdpSocketTest, OnlyFromAPeerADatagramOfAnotherIsDropped) {
    EXPECT_FALSE(Receive(ReceiveOnlyFrom("127.0.0.2")));
}

TEST_F(UdpSocketTest, OnlyFromAHostWithoutAddressEveryDatagramCounts) {
    EXPECT_TRUE(Receive(ReceiveOnlyFrom("scale")));
}

TEST_F(UdpSocketTest, OnlyFromAPeerADatagramThatHasGoneIsNone) {
    EXPECT_FALSE(
        Receive([](std::uintptr_t socket, std::span<std::uint8_t> buffer, std::error_code& error) {
            ReceiveDatagram(socket, buffer, error);
            return ReceiveOnlyFrom("127.0.0.1")(socket, buffer, error);
        }));
}

TEST_F(UdpSocketTest, NobodyWhoTookAnEarlierDatagramIsNoFailure) {
    for (const asio::error::basic_errors error :
         {asio::error::connection_reset, asio::error::connection_refused,
          asio::error::network_reset, asio::error::would_block})
        EXPECT_FALSE(ReceiveWith(error)) << error;
}

TEST_F(UdpSocketTest, AnotherErrorIsThrown) {
    try {
        ReceiveWith(asio::error::network_down);
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), asio::error::network_down);
    }
}

TEST_F(UdpSocketTest, ANumberThatIsNoPortIsRefused) {
    TUdpSocket socket;
    socket.Open(0, false);
    for (const std::int32_t port : {-1, 0, 65536}) {
        try {
            socket.Send(kDatagram, "127.0.0.1", port);
            FAIL() << port;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), std::to_string(port) + " is not a port number.");
        }
    }
}

TEST(HasRouteTest, ThisComputerIsReached) {
    EXPECT_TRUE(HasRoute(kLoopback));
}

// Who wants to send to all has to say so, which this question does not.
TEST(HasRouteTest, AnAddressThatTheSystemRefusesIsNot) {
    EXPECT_FALSE(HasRoute(0xFFFFFFFF));
}

}  // namespace
}  // namespace tolvane::test
