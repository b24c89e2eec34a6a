// Who runs the tests offers nobody else a server with a known password.

#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <string>
#include <system_error>

#include "tests/support/Environment.h"
#include "tests/support/database/OwnServer.h"

namespace tolvane::test {
namespace {

using asio::ip::tcp;

std::error_code Connect(const std::string& host, const std::string& port) {
    asio::io_context io;
    std::error_code error;
    tcp::socket(io).connect(
        {asio::ip::make_address(host), static_cast<std::uint16_t>(std::stoi(port))}, error);
    return error;
}

// `server`: host/port
void ExpectAtItsAddressAlone(const std::string& server) {
    const std::size_t slash = server.find('/');
    const std::string port = server.substr(slash + 1);
    EXPECT_FALSE(Connect(server.substr(0, slash), port)) << server;
    EXPECT_EQ(Connect("127.0.0.9", port), asio::error::connection_refused) << server;
}

TEST(ServerAddressTest, ThePrivateServerListensAtItsAddressAlone) {
    ExpectAtItsAddressAlone(Environment("TOLVANE_FB_SERVER"));
}

TEST(ServerAddressTest, SoDoesATestsOwn) {
    const TOwnServer server;
    ExpectAtItsAddressAlone(server.Address());
}

}  // namespace
}  // namespace tolvane::test
