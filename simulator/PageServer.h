#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "simulator/PageSite.h"

namespace tolvane::simulator {

struct TPageOptions {
    std::string host = "127.0.0.1";  // an IP address
    std::uint16_t port = 0;          // 0: any free one
    std::string barcodePrefix = "20";
};

// Serves a scale's page over HTTP, on a thread of its own.
class TPageServer {
public:
    // Listens when it returns. Throws std::system_error.
    TPageServer(const TPageOptions& options, TPageScale scale, const TFaultScript& faults);
    // Closes all connections at once.
    ~TPageServer();  // NOLINT(bugprone-exception-escape)
    TPageServer(const TPageServer&) = delete;
    TPageServer& operator=(const TPageServer&) = delete;

    std::uint16_t Port() const;
    std::string Endpoint() const;  // "http 127.0.0.1:8080"

private:
    struct TRuntime;

    std::unique_ptr<TRuntime> runtime_;
};

}  // namespace tolvane::simulator
