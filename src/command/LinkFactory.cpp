#include "command/LinkFactory.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommUDP.h"
#include "comm/UdpSocket.h"
#include "system/SerialPortList.h"
#include "upload/ScaleDriver.h"

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
    static_cast<TDevCommRS232&>(*driver->Channel).SetPort(SerialPort(portNumber));
    return driver;
}

std::string TLinkFactory::SerialPort(int number) const {
    const auto named = serialPorts_.find("COM" + std::to_string(number));
    return named != serialPorts_.end() ? named->second : SerialPortOfNumber(number);
}

std::string TLinkFactory::SerialPortOf(const TScaleRec& rec) const {
    return SerialPort(SerialPortNumber(rec));
}

std::unique_ptr<TElicomScale> TLinkFactory::CreateUDP(const std::string& host) {
    // All UDP scales have one local port in turn: one that was given up may answer when the next
    // one is asked.
    auto channel = std::make_unique<TDevCommUDP>(clock_, udpPort_, ReceiveOnlyFrom(host));
    channel->SetHost(host);
    channel->SetPort(kScaleUdpPort);
    return std::make_unique<TElicomScale>(std::move(channel), false, clock_);
}

std::vector<TComputerLock> TLinkFactory::LocksOf(const TScaleRec& rec) const {
    std::vector<TComputerLock> locks;
    if (rec.CommType == kCommSerial) {
        // One port may have several names.
        std::error_code error;
        const std::string port = SerialPortOf(rec);
        const std::filesystem::path real = std::filesystem::canonical(port, error);
        locks.push_back(
            {.name = "com-" + (error ? port : real.string()), .what = "this serial port"});
    } else {
        locks.push_back({.name = RunLockName(rec), .what = "this scale"});
    }
    if (rec.CommType == kCommUdp && udpPort_ != 0)
        locks.push_back({.name = "udp-port-" + std::to_string(udpPort_),
                         .what = "the UDP port " + std::to_string(udpPort_)});
    return locks;
}

}  // namespace tolvane
