#include "upload/ScaleFactory.h"

namespace tolvane {

std::unique_ptr<TElicomScale> TRealScaleFactory::CreateRS232(std::int32_t portNumber,
                                                             std::int32_t bitsPerSecond) {
    return TElicomScale::CreateRS232(portNumber, bitsPerSecond, clock_);
}

std::unique_ptr<TElicomScale> TRealScaleFactory::CreateTCP(const std::string& host,
                                                           std::int32_t port) {
    return TElicomScale::CreateTCP(host, port, clock_);
}

std::unique_ptr<TElicomScale> TRealScaleFactory::CreateUDP(const std::string& host) {
    return TElicomScale::CreateUDP(host, clock_);
}

}  // namespace tolvane
