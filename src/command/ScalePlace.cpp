#include "command/ScalePlace.h"

#include <optional>
#include <string_view>

#include "text/Cp1251.h"
#include "text/IpAddress.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

std::string NetworkAddress(std::string_view text) {
    const std::optional<std::uint32_t> address = ParseIpV4(text);
    return address ? IpV4Text(*address) : std::string(Trim(text));
}

std::string SerialPort(std::string_view text) {
    text = Trim(text);
    if (!EqualIgnoringCase(text.substr(0, kSerialPrefix.size()), kSerialPrefix))
        return std::string(text);
    const auto number = ParseInteger(text.substr(kSerialPrefix.size()));
    return number ? std::string(kSerialPrefix) + std::to_string(*number) : std::string(text);
}

}  // namespace

TScalePlace PlaceOf(const TScaleRec& scale) {
    const std::string_view address = scale.TCPAddress.View();
    switch (scale.CommType) {
        case kCommSerial:
            return {.connection = "serial", .address = SerialPort(address)};
        case kCommTcp:
            return {.connection = "tcp", .address = NetworkAddress(address), .port = scale.TCPPort};
        case kCommUdp:
            return {.connection = "udp", .address = NetworkAddress(address)};
        default:
            return {.connection = "unknown", .address = std::string(Trim(address))};
    }
}

}  // namespace tolvane
