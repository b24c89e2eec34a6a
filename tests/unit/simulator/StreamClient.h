#pragma once

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <optional>
#include <system_error>

#include "Bytes.h"

namespace tolvane::simulator {

// How long a test waits for something that must come.
inline constexpr std::chrono::seconds kPatience{10};

// A client of a stream of bytes whose waits end. `TStream` is made from an io_context.
template <typename TStream>
class TStreamClient {
public:
    TStreamClient() : stream_(io_) {}

    TStream& Stream() { return stream_; }

    void Send(const std::string& hex) {
        const TBytes bytes = Bytes(hex);
        asio::write(stream_, asio::buffer(bytes));
    }

    // Receives `count` bytes, or fewer when the stream ends or the time is over; see Error().
    TBytes Receive(std::size_t count, std::chrono::milliseconds patience = kPatience) {
        TBytes bytes(count);
        std::size_t received = 0;
        error_.reset();
        asio::async_read(stream_, asio::buffer(bytes),
                         [&](const std::error_code& error, std::size_t transferred) {
                             error_ = error;
                             received = transferred;
                         });
        io_.restart();
        io_.run_for(patience);
        if (!error_) {
            stream_.cancel();
            io_.restart();
            io_.run();
        }
        bytes.resize(received);
        return bytes;
    }

    TBytes Ask(const std::string& request, std::size_t count) {
        Send(request);
        return Receive(count);
    }

    // How the latest Receive ended; operation_aborted when the time was over.
    std::error_code Error() const { return error_.value_or(std::error_code()); }

private:
    asio::io_context io_;
    TStream stream_;
    std::optional<std::error_code> error_;
};

}  // namespace tolvane::simulator
