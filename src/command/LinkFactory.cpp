#include "command/LinkFactory.h"

#include <utility>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommUDP.h"
#include "system/SerialPortList.h"

namespace tolvane {

TLinkFactory::TLinkFactory(TClock& clock, std::map<std::string, std::string> serialPorts,
                           std::uint16_t udpPort)
    : TRealScaleFactory(clock),
      clock_(clock),
      serialPorts_(std::move(serialPorts)),
      udpPort_(udpPort) {}

std::unique_ptr<TElicomScale> TLinkFactory::CreateRS232(std::int32_t portNumber,
                                                        std::int32_t bitsPerSecond) {
    std::unique_ptr<TElicomScale> driver =
        TRealScaleFactory::CreateRS232(portNumber, bitsPerSecond);
    const auto named = serialPorts_.find("COM" + std::to_string(portNumber));
    static_cast<TDevCommRS232&>(*driver->Channel)
        .SetPort(named != serialPorts_.end() ? named->second : SerialPortOfNumber(portNumber));
    return driver;
}

std::unique_ptr<TElicomScale> TLinkFactory::CreateUDP(const std::string& host) {
    auto channel = std::make_unique<TDevCommUDP>(clock_, udpPort_);
    channel->SetHost(host);
    channel->SetPort(kScaleUdpPort);
    return std::make_unique<TElicomScale>(std::move(channel), false, clock_);
}

}  // namespace tolvane
