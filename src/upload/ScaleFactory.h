#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"

namespace tolvane {

// Makes drivers whose channels are not open yet. Tests supply their own channels.
class TScaleFactory {
public:
    virtual ~TScaleFactory() = default;
    virtual std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                                      std::int32_t bitsPerSecond) = 0;
    virtual std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) = 0;
    virtual std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) = 0;
};

// Drivers over real lines and sockets.
class TRealScaleFactory : public TScaleFactory {
public:
    explicit TRealScaleFactory(TClock& clock) : clock_(clock) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override;
    std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) override;
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override;

private:
    TClock& clock_;
};

}  // namespace tolvane
