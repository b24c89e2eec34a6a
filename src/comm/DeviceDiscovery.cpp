#include "comm/DeviceDiscovery.h"

#include <algorithm>
#include <unordered_set>

#include "comm/SocketSupport.h"
#include "comm/UdpSocket.h"
#include "system/SystemError.h"
#include "text/IpAddress.h"

namespace tolvane {
namespace {

constexpr TMilliseconds kProbeTime{1000};
// Room for any datagram, because systems report a datagram that is longer than the buffer
// differently.
constexpr std::size_t kLargestDatagram = 65536;

constexpr std::array<std::uint8_t, 1> kCharacter = {'X'};
constexpr std::array<std::uint8_t, 4> kFind = {'F', 'I', 'N', 'D'};
// Sixteen zero bytes follow the four.
constexpr std::array<std::uint8_t, 20> kConverter = {0x43, 0x21, 0x30, 0x39};

struct TProbe {
    std::span<const std::uint8_t> request;
    std::uint16_t localPort = 0;  // 0: any free one
    TDeviceKind kind;
};

// What one probe has found, in the order of the answers.
class TAnswers {
public:
    explicit TAnswers(TDeviceKind kind) : kind_(kind) {}

    void Add(const TProbeSocket::TDatagram& datagram) {
        if (datagram.size == 0 || datagram.sender.empty()) return;
        if (seen_.insert(datagram.sender).second) found_.push_back({datagram.sender, kind_});
    }
    const std::vector<TFoundDevice>& Found() const { return found_; }

private:
    TDeviceKind kind_;
    std::unordered_set<std::string> seen_;
    std::vector<TFoundDevice> found_;
};

struct TSearch {
    TClock& clock;
    const std::atomic<bool>& stop;
    const TDiscoveryTarget& target;
    const TProbeSocketFactory& makeSocket;

    // `step` is always what is done now.
    void Run(const TProbe& probe, std::uint16_t port, TAnswers& answers, TProbeStep& step) const {
        const auto socket = makeSocket();
        socket->Open(probe.localPort);
        step = TProbeStep::Send;
        Send(*socket, probe.request, port);
        step = TProbeStep::Receive;
        const TTimePoint deadline = clock.Now() + kProbeTime;
        for (TTimePoint now = clock.Now(); now < deadline && !stop; now = clock.Now()) {
            const auto left = std::chrono::ceil<TMilliseconds>(deadline - now);
            if (const auto datagram = socket->Receive(std::min(left, kLongestSocketWait)))
                answers.Add(*datagram);
        }
    }
    void Send(TProbeSocket& socket, std::span<const std::uint8_t> request,
              std::uint16_t port) const {
        try {
            socket.Broadcast(request, target.address, port);
        } catch (const std::exception&) {
            if (!SendOtherwise(socket, request, port)) throw;
        }
    }
    // Whether anything was sent.
    bool SendOtherwise(TProbeSocket& socket, std::span<const std::uint8_t> request,
                       std::uint16_t port) const {
        bool sent = false;
        for (const std::string& address : target.otherwise) {
            try {
                socket.Broadcast(request, address, port);
                sent = true;
            } catch (const std::exception&) {
                // The others may do.
            }
        }
        return sent;
    }
};

class TUdpProbeSocket : public TProbeSocket {
public:
    void Open(std::uint16_t localPort) override { socket_.Open(localPort, true); }

    void Broadcast(std::span<const std::uint8_t> request, const std::string& address,
                   std::uint16_t port) override {
        socket_.Send(request, address, port);
    }

    std::optional<TDatagram> Receive(TMilliseconds limit) override {
        const auto datagram = socket_.Receive(received_, limit);
        if (!datagram) return std::nullopt;
        return TDatagram{datagram->sender == 0 ? std::string() : IpV4Text(datagram->sender),
                         datagram->length};
    }

private:
    TUdpSocket socket_;
    std::array<std::uint8_t, kLargestDatagram> received_;
};

}  // namespace

std::unique_ptr<TProbeSocket> MakeProbeSocket() {
    return std::make_unique<TUdpProbeSocket>();
}

void FindDevices(TClock& clock, const std::atomic<bool>& stop, const TProbeReport& report,
                 const TDiscoveryTarget& target, const TProbeSocketFactory& makeSocket,
                 const TProbeFailureReport& failed) {
    const std::array<TProbe, 3> probes = {
        TProbe{.request = kCharacter, .kind = TDeviceKind::UdpModule},
        TProbe{.request = kFind, .localPort = target.findLocalPort, .kind = TDeviceKind::UdpModule},
        TProbe{.request = kConverter, .kind = TDeviceKind::TcpModule},
    };
    const TSearch search{clock, stop, target, makeSocket};
    for (std::size_t i = 0; i < probes.size() && !stop; ++i) {
        TAnswers answers(probes[i].kind);
        std::optional<TProbeFailure> failure;
        TProbeStep step = TProbeStep::Open;
        try {
            search.Run(probes[i], target.ports[i], answers, step);
        } catch (const std::exception& error) {
            // The probe ends; what it has found so far counts.
            failure = {.step = step, .localPort = probes[i].localPort, .text = FailureText(error)};
        }
        if (failure && failed) failed(*failure);
        if (!answers.Found().empty()) report(answers.Found());
    }
}

}  // namespace tolvane
