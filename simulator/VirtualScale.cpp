#include "simulator/VirtualScale.h"

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <chrono>
#include <exception>
#include <map>
#include <thread>
#include <utility>

#include "simulator/Transport.h"

namespace tolvane::simulator {

// The transports are destroyed before the io_context that they use.
struct TVirtualScale::TRuntime {
    asio::io_context io;
    std::shared_ptr<TTransport> tcp;
    std::shared_ptr<TTransport> udp;
    std::shared_ptr<TTransport> serial;
    std::shared_ptr<TTransport> pty;
    std::map<TProbe, std::shared_ptr<TTransport>> probes;
    std::thread thread;
    bool closing = false;

    void Open(const TScaleOptions& options, const TAnswer& answer) {
        if (options.tcpPort) tcp = ListenTcp(io, options.host, *options.tcpPort, answer);
        if (options.udpPort) udp = ListenUdp(io, options.host, *options.udpPort, answer);
        if (!options.serialDevice.empty())
            serial = ListenSerial(io, options.serialDevice, options.baudRate, answer);
        if (options.pty) pty = ListenPty(io, options.ptyLink, answer);
        for (const TProbeOptions& probe : options.probes)
            probes[probe.probe] = AnswerProbe(io, probe);
    }

    // The end of an operation is reported on the thread that started it.
    void Serve() {
        Run([this] { io.run(); });
        if (!closing) return;
        io.restart();
        // Operations that still wait for a time are dropped.
        Run([this] { io.run_for(std::chrono::milliseconds(100)); });
    }

    void Close() {
        closing = true;
        io.stop();
        for (const auto& link : {tcp, udp, serial, pty}) {
            if (link) link->Close();
        }
        for (const auto& entry : probes)
            entry.second->Close();
    }

private:
    // No request may end the scale.
    template <class Body>
    static void Run(Body body) {
        for (;;) {
            try {
                body();
                return;
            } catch (const std::exception&) {
                continue;
            }
        }
    }
};

TVirtualScale::TVirtualScale() : TVirtualScale(TScaleOptions()) {}

TVirtualScale::TVirtualScale(TScaleOptions options)
    : options_(std::move(options)), core_(options_) {}

// NOLINTNEXTLINE(bugprone-exception-escape): a failed join ends the program, as it must
TVirtualScale::~TVirtualScale() {
    Stop();
}

void TVirtualScale::Start() {
    Stop();
    auto runtime = std::make_unique<TRuntime>();
    runtime->Open(options_, [this](const TBytes& frame) { return core_.Answer(frame); });
    runtime->thread = std::thread([runtime = runtime.get()] { runtime->Serve(); });
    runtime_ = std::move(runtime);
}

// NOLINTNEXTLINE(bugprone-exception-escape): a failed join ends the program, as it must
void TVirtualScale::Stop() noexcept {
    if (!runtime_) return;
    asio::post(runtime_->io, [runtime = runtime_.get()] { runtime->Close(); });
    runtime_->thread.join();
    runtime_.reset();
}

std::uint16_t TVirtualScale::Port() const {
    return runtime_ && runtime_->tcp ? runtime_->tcp->Port() : std::uint16_t{0};
}

std::uint16_t TVirtualScale::UdpPort() const {
    return runtime_ && runtime_->udp ? runtime_->udp->Port() : std::uint16_t{0};
}

std::uint16_t TVirtualScale::ProbePort(TProbe probe) const {
    if (!runtime_) return 0;
    const auto found = runtime_->probes.find(probe);
    return found == runtime_->probes.end() ? std::uint16_t{0} : found->second->Port();
}

std::string TVirtualScale::SerialDevice() const {
    if (runtime_ && runtime_->pty) return runtime_->pty->Device();
    if (runtime_ && runtime_->serial) return runtime_->serial->Device();
    return {};
}

std::vector<std::string> TVirtualScale::Endpoints() const {
    std::vector<std::string> endpoints;
    if (!runtime_) return endpoints;
    for (const auto& link : {runtime_->tcp, runtime_->udp, runtime_->serial, runtime_->pty}) {
        if (link) endpoints.push_back(link->Endpoint());
    }
    for (const auto& entry : runtime_->probes)
        endpoints.push_back(entry.second->Endpoint());
    return endpoints;
}

TScaleState TVirtualScale::State() const {
    return core_.State();
}
std::vector<TRecordedRequest> TVirtualScale::Requests() const {
    return core_.Requests();
}
void TVirtualScale::SetFaults(TFaultScript faults) {
    core_.SetFaults(std::move(faults));
}
bool TVirtualScale::WaitForRequests(int count, std::chrono::milliseconds timeout) const {
    return core_.WaitForRequests(count, timeout);
}

}  // namespace tolvane::simulator
