#include "simulator/VirtualScale.h"

#include <asio/io_context.hpp>
#include <exception>
#include <thread>
#include <utility>

#include "simulator/Transport.h"

namespace tolvane::simulator {

// The transports are destroyed before the io_context that they use.
struct TVirtualScale::TRuntime {
    asio::io_context io;
    std::shared_ptr<TTransport> tcp;
    std::vector<std::shared_ptr<TTransport>> others;
    std::thread thread;

    // Nothing that one request does may end the scale.
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

TVirtualScale::TVirtualScale(TScaleOptions options)
    : options_(std::move(options)), core_(options_) {}

TVirtualScale::~TVirtualScale() {
    Stop();
}

void TVirtualScale::Start() {
    Stop();
    auto runtime = std::make_unique<TRuntime>();
    const TAnswer answer = [this](const TBytes& frame) { return core_.Answer(frame); };
    if (options_.tcpPort)
        runtime->tcp = ListenTcp(runtime->io, options_.host, *options_.tcpPort, answer);
    runtime->thread = std::thread([runtime = runtime.get()] { runtime->Serve(); });
    runtime_ = std::move(runtime);
}

void TVirtualScale::Stop() noexcept {
    if (!runtime_) return;
    runtime_->io.stop();
    runtime_->thread.join();
    runtime_.reset();
}

std::uint16_t TVirtualScale::Port() const {
    return runtime_ && runtime_->tcp ? runtime_->tcp->Port() : std::uint16_t{0};
}

std::vector<std::string> TVirtualScale::Endpoints() const {
    std::vector<std::string> endpoints;
    if (!runtime_) return endpoints;
    if (runtime_->tcp) endpoints.push_back(runtime_->tcp->Endpoint());
    for (const auto& transport : runtime_->others)
        endpoints.push_back(transport->Endpoint());
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
