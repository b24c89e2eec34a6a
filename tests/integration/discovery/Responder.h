#pragma once

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace tolvane::test {

// Waits for one probe on a loopback port and answers it from other addresses.
class TResponder {
public:
    struct TReply {
        std::string from;  // a loopback address
        int datagrams = 1;
        std::string content = "SCALE";
    };

    explicit TResponder(std::vector<TReply> replies)
        : replies_(std::move(replies)), thread_([this] { Answer(); }) {}
    ~TResponder() {
        // If no probe has come, this one ends the wait for it.
        asio::ip::udp::socket(io_, {loopback_, 0})
            .send_to(asio::buffer("x", 1), {loopback_, Port()});
        thread_.join();
    }

    std::uint16_t Port() const { return socket_.local_endpoint().port(); }

private:
    using TProtocol = asio::ip::udp;

    void Answer() {
        std::array<char, 64> request{};
        TProtocol::endpoint asker;
        socket_.receive_from(asio::buffer(request), asker);
        for (const TReply& reply : replies_) {
            TProtocol::socket out(io_, {asio::ip::make_address_v4(reply.from), 0});
            for (int i = 0; i < reply.datagrams; ++i)
                out.send_to(asio::buffer(reply.content), asker);
        }
    }

    asio::io_context io_;
    asio::ip::address_v4 loopback_ = asio::ip::address_v4::loopback();
    TProtocol::socket socket_{io_, {loopback_, 0}};
    std::vector<TReply> replies_;
    std::thread thread_;
};

}  // namespace tolvane::test
