#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "command/RunLock.h"
#include "config/TypesUnit.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// Real links as the options name them.
class TLinkFactory : public TRealScaleFactory {
public:
    // `serialPorts`: what "COM1" and the like are here; one that is not named is the system's own
    // port of that number. `udpPort`: the local one, 0 for any.
    TLinkFactory(TClock& clock, std::map<std::string, std::string> serialPorts,
                 std::uint16_t udpPort);

    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override;
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override;

    // What only one run on this computer can use at a time: the scale, and the local UDP port.
    std::vector<TComputerLock> LocksOf(const TScaleRec& rec) const;
    // What opens the port of a serial scale: "/dev/ttyS0", "COM1".
    std::string SerialPortOf(const TScaleRec& rec) const;

private:
    std::string SerialPort(int number) const;

    TClock& clock_;
    std::map<std::string, std::string> serialPorts_;
    std::uint16_t udpPort_;
};

}  // namespace tolvane
