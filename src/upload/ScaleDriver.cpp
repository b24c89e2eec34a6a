#include "upload/ScaleDriver.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "config/SerialSpeeds.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::uint8_t kSerialRetries = 10;
constexpr std::int32_t kSpeedOfUnknownIndex = 38400;

std::int32_t BitsPerSecond(std::uint8_t baudRate) {
    const TSerialSpeed* speed = SerialSpeed(baudRate);
    return speed != nullptr ? speed->bitsPerSecond : kSpeedOfUnknownIndex;
}

}  // namespace

std::int32_t SerialPortNumber(const TScaleRec& rec) {
    const std::string_view name = rec.TCPAddress.View();
    if (name.size() <= 3) return 1;
    return ParseIntegerOr(name.substr(3, 3), 1);
}

std::unique_ptr<TElicomScale> MakeScaleDriver(TScaleFactory& factory, const TScaleRec& rec) {
    std::unique_ptr<TElicomScale> driver;
    switch (rec.CommType) {
        case kCommSerial:
            driver = factory.CreateRS232(SerialPortNumber(rec), BitsPerSecond(rec.BaudRate));
            // A network scale keeps the driver's address 0 and three repeats.
            driver->Retries = kSerialRetries;
            driver->Address = rec.ScaleAddr;
            break;
        case kCommTcp:
            driver = factory.CreateTCP(rec.TCPAddress.Str(), rec.TCPPort);
            break;
        case kCommUdp:
            driver = factory.CreateUDP(rec.TCPAddress.Str());
            break;
        default:
            throw std::runtime_error("Invalid communication type.");
    }
    driver->ScaleType = rec.ScaleType;
    return driver;
}

}  // namespace tolvane
