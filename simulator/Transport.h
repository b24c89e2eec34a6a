#pragma once

#include <asio/io_context.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "simulator/Link.h"

namespace tolvane::simulator {

// Something that a scale listens on; it stops when it is destroyed, after its io_context has been
// stopped.
class TTransport {
public:
    TTransport() = default;
    virtual ~TTransport() = default;
    TTransport(const TTransport&) = delete;
    TTransport& operator=(const TTransport&) = delete;

    // "tcp 127.0.0.1:1001", "udp ...", "serial /dev/pts/3"
    virtual std::string Endpoint() const = 0;
    virtual std::uint16_t Port() const { return 0; }
};

// Serves any number of clients at once. Port 0 takes any free one. Throws std::system_error.
std::shared_ptr<TTransport> ListenTcp(asio::io_context& io, const std::string& host,
                                      std::uint16_t port, TAnswer answer);

}  // namespace tolvane::simulator
