#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Probes.h"
#include "simulator/ScaleCore.h"

namespace tolvane::simulator {

// Where a scale listens. Any number of links share one scale.
struct TScaleOptions : TCoreOptions {
    std::string host = "127.0.0.1";            // an IP address
    std::optional<std::uint16_t> tcpPort = 0;  // 0: any free one
    std::optional<std::uint16_t> udpPort{};    // the same
    std::string serialDevice{};                // "/dev/ttyS0", "COM5"
    unsigned baudRate = 9600;
    // On Linux: a pseudo terminal of its own, with a symbolic link to the client's end at ptyLink.
    bool pty = false;
    std::string ptyLink{};
    std::vector<TProbeOptions> probes{};  // the searches for scales that it answers
};

// A scale in software, served by a thread of its own. Its operations may be called from any
// thread, Start and Stop from one at a time.
class TVirtualScale {
public:
    TVirtualScale();  // an EVL on any free TCP port
    explicit TVirtualScale(TScaleOptions options);
    ~TVirtualScale();  // NOLINT(bugprone-exception-escape)
    TVirtualScale(const TVirtualScale&) = delete;
    TVirtualScale& operator=(const TVirtualScale&) = delete;

    // Opens all links and serves them. When one cannot be opened, opens none and throws
    // std::system_error or std::runtime_error.
    void Start();
    // Closes all links at once, even during a reply. The scale keeps its contents and can be
    // started again.
    void Stop() noexcept;  // NOLINT(bugprone-exception-escape)

    // For a started scale; 0 or empty when it has no such link.
    std::uint16_t Port() const;
    std::uint16_t UdpPort() const;
    std::uint16_t ProbePort(TProbe probe) const;
    // What a client opens to reach the pseudo terminal or, without one, the serial device.
    std::string SerialDevice() const;
    // "tcp 127.0.0.1:1001" and so on, one for each link.
    std::vector<std::string> Endpoints() const;

    TScaleState State() const;
    std::vector<TRecordedRequest> Requests() const;
    // Replaces all faults, ends a silence and numbers the requests from 1 again.
    void SetFaults(TFaultScript faults);
    // Waits until that many frames have come since the scale was made; false when they have not.
    bool WaitForRequests(int count, std::chrono::milliseconds timeout) const;

private:
    struct TRuntime;

    TScaleOptions options_;
    TScaleCore core_;
    std::unique_ptr<TRuntime> runtime_;
};

}  // namespace tolvane::simulator
