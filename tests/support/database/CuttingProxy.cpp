#include "tests/support/database/CuttingProxy.h"

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>
#include <atomic>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

namespace tolvane::test {
namespace {

using asio::ip::tcp;

constexpr long kUnarmed = -1;

tcp::endpoint EndpointOf(const std::string& server) {
    const std::size_t slash = server.find('/');
    return {asio::ip::make_address(server.substr(0, slash)),
            static_cast<std::uint16_t>(std::stoi(server.substr(slash + 1)))};
}

}  // namespace

struct TCuttingProxy::TEnds {
    explicit TEnds(const std::string& serverName) : serverAddress(EndpointOf(serverName)) {
        acceptor.async_accept(client, [this](const std::error_code& error) {
            std::error_code refused = error;
            if (!refused) server.connect(serverAddress, refused);
            if (refused) return Close();
            ReadClient();
            ReadServer();
        });
        thread = std::thread([this] { io.run(); });
    }
    ~TEnds() {
        io.stop();
        thread.join();
    }
    TEnds(const TEnds&) = delete;
    TEnds& operator=(const TEnds&) = delete;

    void ReadClient() {
        client.async_read_some(asio::buffer(fromClient),
                               [this](const std::error_code& error, std::size_t size) {
                                   if (error) return Close();
                                   CountPiece();
                                   if (!swallows && !Pass(fromClient, size, server)) return Close();
                                   ReadClient();
                               });
    }
    void ReadServer() {
        server.async_read_some(
            asio::buffer(fromServer), [this](const std::error_code& error, std::size_t size) {
                // A server that is gone does not say so through a network that loses everything.
                if (swallows) return;
                if (error) return Close();
                if (bytesLeft != kUnarmed && (bytesLeft -= static_cast<long>(size)) < 0)
                    return Cut();
                // Read first: a client that has this answer may already arm the cut for the next
                // one.
                const bool isLast = lastAnswer;
                if (!Pass(fromServer, size, client)) return Close();
                if (isLast) return Cut();
                ReadServer();
            });
    }
    void CountPiece() {
        if (piecesLeft == 0 || --piecesLeft > 0) return;
        if (action) std::exchange(action, nullptr)();
    }
    template <class Buffer>
    static bool Pass(const Buffer& buffer, std::size_t size, tcp::socket& to) {
        std::error_code error;
        asio::write(to, asio::buffer(buffer, size), error);
        return !error;
    }
    void Cut() {
        cut = true;
        Close();
    }
    void Close() {
        std::error_code ignored;
        client.close(ignored);
        server.close(ignored);
    }

    tcp::endpoint serverAddress;
    asio::io_context io;
    tcp::acceptor acceptor{io, {asio::ip::address_v4::loopback(), 0}};
    tcp::socket client{io};
    tcp::socket server{io};
    std::array<char, 4096> fromClient{};
    std::array<char, 4096> fromServer{};
    std::atomic<long> bytesLeft = kUnarmed;
    std::atomic<bool> lastAnswer = false;
    std::atomic<bool> cut = false;
    std::atomic<bool> swallows = false;
    // The proxy's thread alone.
    int piecesLeft = 0;
    std::function<void()> action;
    std::thread thread;
};

TCuttingProxy::TCuttingProxy(const std::string& server) : ends_(std::make_unique<TEnds>(server)) {}

TCuttingProxy::~TCuttingProxy() = default;

std::string TCuttingProxy::Address() const {
    return "127.0.0.1/" + std::to_string(ends_->acceptor.local_endpoint().port());
}

void TCuttingProxy::CutAfter(std::size_t serverBytes) {
    ends_->bytesLeft = static_cast<long>(serverBytes);
}

void TCuttingProxy::CutAfterNextAnswer() {
    ends_->lastAnswer = true;
}

void TCuttingProxy::CutNow() {
    asio::post(ends_->io, [ends = ends_.get()] { ends->Cut(); });
}

void TCuttingProxy::BeforePiece(int number, std::function<void()> action) {
    asio::post(ends_->io, [ends = ends_.get(), number, action = std::move(action)] {
        ends->piecesLeft = number;
        ends->action = action;
    });
}

void TCuttingProxy::SwallowFromPiece(int number) {
    BeforePiece(number, [ends = ends_.get()] { ends->swallows = true; });
}

bool TCuttingProxy::HasCut() const {
    return ends_->cut;
}

bool TCuttingProxy::Swallows() const {
    return ends_->swallows;
}

}  // namespace tolvane::test
