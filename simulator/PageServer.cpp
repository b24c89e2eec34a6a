#include "simulator/PageServer.h"

#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <exception>
#include <thread>
#include <utility>

namespace tolvane::simulator {

namespace {

using asio::ip::tcp;

constexpr int kMostConnections = 32;
constexpr std::chrono::seconds kPatience{10};

// One connection: reads a request, answers it, and ends. Exists as long as one of its operations.
class TPageConnection : public std::enable_shared_from_this<TPageConnection> {
public:
    TPageConnection(tcp::socket socket, TPageSite& site, int& connections)
        : socket_(std::move(socket)),
          deadline_(socket_.get_executor()),
          site_(site),
          connections_(connections) {
        ++connections_;
    }
    ~TPageConnection() { --connections_; }
    TPageConnection(const TPageConnection&) = delete;
    TPageConnection& operator=(const TPageConnection&) = delete;

    void Start() {
        deadline_.expires_after(kPatience);
        deadline_.async_wait([self = shared_from_this()](const std::error_code& error) {
            if (!error) self->Close();
        });
        Read();
    }

private:
    void Close() {
        std::error_code ignored;
        socket_.close(ignored);
        deadline_.cancel();
    }

    void Read() {
        socket_.async_read_some(
            asio::buffer(buffer_),
            [self = shared_from_this()](const std::error_code& error, std::size_t count) {
                if (error)
                    self->Close();
                else
                    self->Take(count);
            });
    }

    void Take(std::size_t count) {
        // What follows the request is read and dropped, since closing before it is read would take
        // the response from the other side.
        if (!response_.empty()) return Read();
        const int status = reader_.Feed({buffer_.data(), count});
        if (status == 0) return Read();
        if (status == 200)
            response_ = ResponseBytes(Answer(), reader_.Request().method != "HEAD");
        else
            response_ = ResponseBytes(Refusal(status));
        asio::async_write(socket_, asio::buffer(response_),
                          [self = shared_from_this()](const std::error_code& error, std::size_t) {
                              std::error_code failed = error;
                              if (!failed)
                                  self->socket_.shutdown(tcp::socket::shutdown_send, failed);
                              if (failed)
                                  self->Close();
                              else
                                  self->Read();
                          });
    }

    static THttpResponse Refusal(int status) {
        return {.status = status,
                .contentType = "text/plain; charset=utf-8",
                .body = "This is no request for the page.\n"};
    }

    THttpResponse Answer() {
        try {
            return site_.Answer(reader_.Request());
        } catch (const std::exception& error) {
            return {.status = 500,
                    .contentType = "text/plain; charset=utf-8",
                    .body = std::string(error.what()) + "\n"};
        }
    }

    tcp::socket socket_;
    asio::steady_timer deadline_;
    TPageSite& site_;
    int& connections_;
    THttpReader reader_;
    std::array<char, 4096> buffer_{};
    std::string response_;
};

}  // namespace

// The connections are destroyed with the io_context that holds their operations, before what they
// use.
struct TPageServer::TRuntime {
    TPageSite site;
    int connections = 0;
    asio::io_context io;
    tcp::acceptor acceptor{io};
    asio::steady_timer retry{io};
    tcp::endpoint endpoint{};
    std::thread thread{};

    TRuntime(const TPageOptions& options, TPageScale scale, const TFaultScript& faults)
        : site(std::move(scale), faults, options.barcodePrefix) {
        const tcp::endpoint wanted(asio::ip::make_address(options.host), options.port);
        acceptor.open(wanted.protocol());
#ifndef _WIN32
        // On Windows this option would let two programs share the port.
        acceptor.set_option(asio::socket_base::reuse_address(true));
#endif
        acceptor.bind(wanted);
        acceptor.listen();
        endpoint = acceptor.local_endpoint();
    }

    void Accept() {
        acceptor.async_accept([this](const std::error_code& error, tcp::socket socket) {
            if (error) return AcceptLater();
            if (connections < kMostConnections)
                std::make_shared<TPageConnection>(std::move(socket), site, connections)->Start();
            Accept();
        });
    }

    // The system may be out of descriptors; trying again at once would only keep the processor
    // busy.
    void AcceptLater() {
        retry.expires_after(std::chrono::milliseconds(100));
        retry.async_wait([this](const std::error_code& error) {
            if (!error) Accept();
        });
    }

    // No request may end the page.
    void Serve() {
        for (;;) {
            try {
                io.run();
                return;
            } catch (const std::exception&) {
                continue;
            }
        }
    }
};

TPageServer::TPageServer(const TPageOptions& options, TPageScale scale, const TFaultScript& faults)
    : runtime_(std::make_unique<TRuntime>(options, std::move(scale), faults)) {
    runtime_->Accept();
    runtime_->thread = std::thread([runtime = runtime_.get()] { runtime->Serve(); });
}

// NOLINTNEXTLINE(bugprone-exception-escape): a failed join ends the program, as it must
TPageServer::~TPageServer() {
    runtime_->io.stop();
    runtime_->thread.join();
}

std::uint16_t TPageServer::Port() const {
    return runtime_->endpoint.port();
}

std::string TPageServer::Endpoint() const {
    std::string address = runtime_->endpoint.address().to_string();
    if (runtime_->endpoint.address().is_v6()) address = "[" + address + "]";
    return "http " + address + ":" + std::to_string(Port());
}

}  // namespace tolvane::simulator
