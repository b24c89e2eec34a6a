#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tolvane::bench {

// A link to the peer without a channel: no checks, no time-outs.
class TBareLink {
public:
    virtual ~TBareLink() = default;
    // Sends the request and waits until the reply is full. Throws std::system_error.
    virtual void Exchange(std::span<const std::uint8_t> request, std::span<std::uint8_t> reply) = 0;
};

enum class TBareWait : std::uint8_t {
    Block,    // in a read, until bytes come
    InSteps,  // as the channels have to: 10 ms on a serial line, at most 100 ms on a socket
};

// To a port of this computer.
std::unique_ptr<TBareLink> OpenBareTcp(std::uint16_t port, TBareWait wait);
std::unique_ptr<TBareLink> OpenBareUdp(std::uint16_t port, TBareWait wait);
// At 115,200 bit/s.
std::unique_ptr<TBareLink> OpenBareSerial(const std::string& name, TBareWait wait);

}  // namespace tolvane::bench
