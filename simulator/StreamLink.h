#pragma once

#include <array>
#include <asio/buffer.hpp>
#include <asio/write.hpp>
#include <memory>
#include <span>
#include <system_error>
#include <utility>

#include "simulator/Link.h"

namespace tolvane::simulator {

// The link of a client on a stream of bytes: a TCP connection or a serial port.
template <typename TStream>
class TStreamLink : public TLink {
public:
    TStreamLink(TStream stream, TAnswer answer)
        : TLink(stream.get_executor()), stream_(std::move(stream)), answer_(std::move(answer)) {}

    // Reads requests until the stream ends. The link exists as long as it reads.
    void Read() {
        const auto self = std::static_pointer_cast<TStreamLink>(shared_from_this());
        stream_.async_read_some(asio::buffer(buffer_),
                                [self](const std::error_code& error, std::size_t count) {
                                    if (error)
                                        self->Broken();
                                    else
                                        self->Take(count);
                                });
    }

protected:
    void Write(const TBytes& bytes, TDone done) override {
        asio::async_write(
            stream_, asio::buffer(bytes),
            [done = std::move(done)](const std::error_code& error, std::size_t) { done(!error); });
    }

    // Is called when the stream has ended or a fault has closed it.
    virtual void Broken() {}

    TStream& Stream() { return stream_; }

private:
    void Take(std::size_t count) {
        for (const TBytes& frame : parser_.Feed(std::span(buffer_).first(count)))
            Perform(answer_(frame));
        if (stream_.is_open()) Read();
    }

    TStream stream_;
    TAnswer answer_;
    TRequestParser parser_;
    std::array<std::uint8_t, 4096> buffer_{};
};

}  // namespace tolvane::simulator
