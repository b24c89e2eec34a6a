#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "system/Clock.h"

namespace tolvane {

enum class TDeviceKind : std::uint8_t {
    UdpModule = 1,
    TcpModule = 2,
};

struct TFoundDevice {
    std::string address;  // dotted IPv4
    TDeviceKind kind = TDeviceKind::UdpModule;

    bool operator==(const TFoundDevice&) const = default;
};

// Where the probes go; the defaults are those of real modules.
struct TDiscoveryTarget {
    std::string address = "255.255.255.255";
    // Where nothing can be sent to `address`: what is asked instead. Usually nothing.
    std::vector<std::string> otherwise{};
    std::array<std::uint16_t, 3> ports = {65535, 1460, 36};
    std::uint16_t findLocalPort = 5001;  // the second probe is sent from it
};

// One probe's socket. Failures are exceptions, which end that probe.
class TProbeSocket {
public:
    struct TDatagram {
        std::string sender;  // dotted IPv4; empty when it is not known
        std::size_t size = 0;
    };

    virtual ~TProbeSocket() = default;
    // Local port 0 means any free one.
    virtual void Open(std::uint16_t localPort) = 0;
    virtual void Broadcast(std::span<const std::uint8_t> request, const std::string& address,
                           std::uint16_t port) = 0;
    // Nothing when no datagram came within the limit.
    virtual std::optional<TDatagram> Receive(TMilliseconds limit) = 0;
};

using TProbeSocketFactory = std::function<std::unique_ptr<TProbeSocket>()>;

// A UDP socket of the system.
std::unique_ptr<TProbeSocket> MakeProbeSocket();

// Takes what one probe has found, in the order of the answers. Called on the searching thread.
using TProbeReport = std::function<void(const std::vector<TFoundDevice>& found)>;

// What a probe could not do, and the words for it, code page 1251.
enum class TProbeStep : std::uint8_t { Open, Send, Receive };
struct TProbeFailure {
    TProbeStep step = TProbeStep::Open;
    std::uint16_t localPort = 0;  // 0: any free one
    std::string text{};
};
// Called on the searching thread for each probe that fails.
using TProbeFailureReport = std::function<void(const TProbeFailure& failure)>;

// Sends the three probes one after the other and collects the answers to each for a second; an
// address counts once per probe. Calls `report` at the end of each probe that was answered. A
// failure ends only the probe in which it happens; `failed` may be empty. After `stop` the search
// returns within a tenth of a second and reports what it has. Any thread; throws only what `report`
// and `failed` throw, and std::bad_alloc.
void FindDevices(TClock& clock, const std::atomic<bool>& stop, const TProbeReport& report,
                 const TDiscoveryTarget& target = {},
                 const TProbeSocketFactory& makeSocket = &MakeProbeSocket,
                 const TProbeFailureReport& failed = {});

}  // namespace tolvane
