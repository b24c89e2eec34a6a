// Whatever answers at a scale's address costs its own scale some seconds at most, claims nothing,
// and leaves the others alone.

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

using asio::ip::tcp;
using TBytes = std::vector<unsigned char>;

// What is sent without being asked, from the connection on.
struct THostility {
    const char* name;
    TBytes bytes;
    std::chrono::milliseconds every;
    bool resets;
};

const TBytes kDone3C = {0x02, 0x0D, 0x14, 0x50, 0x14, 0x50, 0x03};

const std::array<THostility, 5> kHostilities = {{
    {"a flood without an end", TBytes(4096, 0x55), std::chrono::milliseconds(1), false},
    {"a byte each second", {0x02}, std::chrono::seconds(1), false},
    {"answers before the requests", kDone3C, std::chrono::milliseconds(10), false},
    {"a listener that says nothing", {}, std::chrono::seconds(1), false},
    {"a reset", {}, {}, true},
}};

// Takes any number of connections, on a thread of its own.
class THostileScale {
public:
    explicit THostileScale(const THostility& hostility) : hostility_(hostility) {
        Accept();
        thread_ = std::thread([this] { io_.run(); });
    }
    THostileScale(const THostileScale&) = delete;
    THostileScale& operator=(const THostileScale&) = delete;
    ~THostileScale() {
        io_.stop();
        thread_.join();
    }
    std::uint16_t Port() const { return acceptor_.local_endpoint().port(); }

private:
    struct TVictim {
        explicit TVictim(tcp::socket taken)
            : socket(std::move(taken)), timer(socket.get_executor()) {}
        tcp::socket socket;
        asio::steady_timer timer;
    };

    void Accept() {
        acceptor_.async_accept([this](const std::error_code& error, tcp::socket socket) {
            if (error) return;
            auto victim = std::make_shared<TVictim>(std::move(socket));
            if (hostility_.resets)
                victim->socket.set_option(asio::socket_base::linger(true, 0));
            else
                Annoy(victim);
            kept_.push_back(victim);
            if (hostility_.resets) victim->socket.close();
            Accept();
        });
    }
    void Annoy(const std::shared_ptr<TVictim>& victim) {
        asio::async_write(
            victim->socket, asio::buffer(hostility_.bytes),
            [this, victim](const std::error_code& error, std::size_t) {
                if (error) return;
                victim->timer.expires_after(hostility_.every);
                victim->timer.async_wait([this, victim](const std::error_code&) { Annoy(victim); });
            });
    }

    const THostility& hostility_;
    asio::io_context io_;
    tcp::acceptor acceptor_{io_, {asio::ip::address_v4::loopback(), 0}};
    std::vector<std::shared_ptr<TVictim>> kept_;
    std::thread thread_;
};

using HostileScalesTest = TProgramTest;

// Each request may take its three seconds; the scale's first failure ends it.
TEST_F(HostileScalesTest, CostTheRunSomeSecondsAndNoOtherScaleAnything) {
    std::vector<std::unique_ptr<THostileScale>> hostile;
    for (const THostility& hostility : kHostilities) {
        hostile.push_back(std::make_unique<THostileScale>(hostility));
        AddToList(static_cast<int>(hostile.size()), TModel::S300, "127.0.0.1",
                  hostile.back()->Port(), 1);
    }
    const int good = static_cast<int>(hostile.size()) + 1;
    const TVirtualScale& scale = AddScale(good);
    const auto begin = std::chrono::steady_clock::now();
    const TRun run = Run({"write", "--json"});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(good).at("outcome"), "done") << run.out;
    EXPECT_FALSE(scale.State().articles.empty());
    for (int number = 1; number < good; ++number) {
        const char* const name = kHostilities.at(static_cast<std::size_t>(number) - 1).name;
        EXPECT_NE(run.Scale(number).at("outcome"), "done") << name;
        EXPECT_NE(run.Scale(number).at("error"), "") << name;
    }
    // Nothing is claimed of them.
    const TRun status = Run({"status", "--json"});
    for (int number = 1; number < good; ++number)
        EXPECT_EQ(status.Scale(number).value("held", 0), 0) << status.out;
    EXPECT_GT(status.Scale(good).value("held", 0), 0) << status.out;
}

}  // namespace
}  // namespace tolvane::test
