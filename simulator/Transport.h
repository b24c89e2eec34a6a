#pragma once

#include <asio/io_context.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "simulator/Link.h"
#include "simulator/Probes.h"

namespace tolvane::simulator {

// Something that a scale listens on.
class TTransport {
public:
    TTransport() = default;
    virtual ~TTransport() = default;
    TTransport(const TTransport&) = delete;
    TTransport& operator=(const TTransport&) = delete;

    // On the io_context's thread: cancels all operations. The context's run then notifies each of
    // them that it was aborted; no new ones follow.
    virtual void Close() = 0;
    // "tcp 127.0.0.1:1001", "udp ...", "serial /dev/pts/3"
    virtual std::string Endpoint() const = 0;
    virtual std::uint16_t Port() const { return 0; }
    // What a client opens to reach a serial link; otherwise empty.
    virtual std::string Device() const { return {}; }
};

// Serves any number of clients at once. Port 0 takes any free one. Throws std::system_error.
std::shared_ptr<TTransport> ListenTcp(asio::io_context& io, const std::string& host,
                                      std::uint16_t port, TAnswer answer);

// Answers each datagram's requests to its sender. Port 0 takes any free one. Throws
// std::system_error.
std::shared_ptr<TTransport> ListenUdp(asio::io_context& io, const std::string& host,
                                      std::uint16_t port, TAnswer answer);

// Answers a search for scales as TProbeOptions say, on every address of the machine. Throws
// std::system_error.
std::shared_ptr<TTransport> AnswerProbe(asio::io_context& io, const TProbeOptions& options);

// A serial port by its device path or port name, 8 data bits, one stop bit, no parity. When its
// other end disappears, it is opened again as soon as that is possible. Throws std::system_error.
std::shared_ptr<TTransport> ListenSerial(asio::io_context& io, const std::string& device,
                                         unsigned baudRate, TAnswer answer);

// The scale's end of a new pseudo terminal. Clients open the other end: Device() returns its name,
// and `link`, unless empty, becomes a symbolic link to it. Throws std::system_error, or
// std::runtime_error on a system that has no pseudo terminals.
std::shared_ptr<TTransport> ListenPty(asio::io_context& io, const std::string& link,
                                      TAnswer answer);

}  // namespace tolvane::simulator
