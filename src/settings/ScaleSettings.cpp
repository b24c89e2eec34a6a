#include "settings/ScaleSettings.h"

#include <algorithm>
#include <iterator>

#include "text/IpAddress.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::string_view kNumberTaken =
    "Такъв номер на везна вече съществува.\r\nМоля променете го."_cp1251;
constexpr std::string_view kInvalidPort = "Invalid port number.";
constexpr std::string_view kInvalidAddress = "Invalid IP Address.";
constexpr std::string_view kNoSerialPort = "Com port not selected.";
constexpr std::string_view kNoNumber = " не е цяло число."_cp1251;

constexpr std::string_view kUsualPort = "1001";
constexpr std::string_view kTcpModulePort = "100";
constexpr std::string_view kPortOfOtherTypes = "20304";
constexpr std::int32_t kPortOfNoNumber = 1001;
constexpr std::int32_t kLargestPort = 65535;
constexpr std::int32_t kLargestIpPart = 255;
constexpr int kDefaultEncoding = 2;
// One more than there are code tables: with this value the dialog opens without a choice.
constexpr int kLargestEncoding = 3;
constexpr std::string_view kUsualSerialPort = "COM1";

struct TType {
    std::int32_t code;
    std::string_view namePrefix;
};
// In the order of the dialog's list.
constexpr std::array<TType, kScaleTypeNames.size()> kTypes = {
    TType{kScaleTypeEvl, "(EVL) - "},
    TType{kScaleTypeEts, "(ETS) - "},
    TType{kScaleTypeS300, "(SI) - "},
};

// Converts each trimmed piece between the dots and joins the numbers with dots; nothing when
// `convert` refuses a piece.
template <class Convert>
std::optional<std::string> RejoinAddress(std::string_view text, Convert convert) {
    std::string joined;
    for (const std::string_view piece : SplitAtDots(text)) {
        const std::optional<std::int32_t> part = convert(Trim(piece));
        if (!part) return std::nullopt;
        joined += (joined.empty() ? "" : ".") + std::to_string(*part);
    }
    return joined;
}

std::optional<std::int32_t> IpPart(std::string_view text) {
    const auto part = ParseInteger(text);
    return part && *part >= 0 && *part <= kLargestIpPart ? part : std::nullopt;
}

bool IsNumberTaken(const TScaleSettings& settings, std::span<const std::int32_t> listed) {
    if (listed.empty()) return false;
    const bool isListed = std::find(listed.begin(), listed.end(), settings.number) != listed.end();
    return settings.number == 0 || (isListed && settings.number != settings.numberBefore);
}

TSettingsFault CheckNetwork(TScaleSettings& settings) {
    const std::int32_t port = ParseIntegerOr(settings.port, -1);
    if (port < 0 || port > kLargestPort)
        return {.field = TSettingsField::Port, .text = kInvalidPort};
    const auto address = RejoinAddress(settings.ipAddress, &IpPart);
    if (!address)
        return {.field = TSettingsField::IpAddress, .isError = true, .text = kInvalidAddress};
    settings.ipAddress = *address;
    return {};
}

std::string AddressToStore(const TScaleSettings& settings) {
    const auto convert = [](std::string_view text) {
        const auto part = ParseInteger(text);
        if (!part) throw TConversionError(text);
        return std::optional<std::int32_t>(static_cast<std::uint16_t>(*part));
    };
    return *RejoinAddress(settings.ipAddress, convert);
}

std::string SerialPortToStore(const TScaleSettings& settings, const TScaleRec& before) {
    if (settings.serialPorts.empty()) return std::string(kUsualSerialPort);
    const auto chosen = static_cast<std::size_t>(settings.serialPort);
    return chosen < settings.serialPorts.size() ? settings.serialPorts[chosen]
                                                : before.TCPAddress.Str();
}

// Copies the settings that a new and an edited scale have in common.
void ReadBack(const TScaleSettings& settings, TScaleRec& rec) {
    rec.ScaleName = settings.name;
    if (settings.encoding >= 0) rec.Encoding = settings.encoding;
    if (settings.transport == TTransport::Serial) {
        rec.TCPAddress = SerialPortToStore(settings, rec);
        if (settings.baudRate >= 0) rec.BaudRate = static_cast<std::uint8_t>(settings.baudRate);
        rec.ScaleAddr = static_cast<std::uint8_t>(settings.scaleAddress);
    } else {
        rec.TCPAddress = AddressToStore(settings);
    }
    rec.CommType = static_cast<std::uint8_t>(settings.transport);
    const auto type = static_cast<std::size_t>(settings.type);
    if (type < kTypes.size()) rec.ScaleType = kTypes[type].code;
    if (rec.ScaleName.Empty()) rec.ScaleName = DefaultScaleName(rec);
}

// The absolute value; the smallest integer, which has none, becomes the largest.
std::int32_t Positive(std::int32_t number) {
    if (number >= 0) return number;
    return number == INT32_MIN ? INT32_MAX : -number;
}

}  // namespace

TTransportRules RulesOf(TTransport transport) {
    switch (transport) {
        case TTransport::Tcp:
            return {.ipControls = true, .portField = true, .portText = kTcpModulePort};
        case TTransport::Udp:
            return {.ipControls = true, .portText = kUsualPort};
        default:
            return {.serialControls = true};
    }
}

TSettingsFault CheckSettings(TScaleSettings& settings, std::span<const std::int32_t> listed) {
    if (IsNumberTaken(settings, listed))
        return {.field = TSettingsField::Number, .text = kNumberTaken};
    if (IsNetworkConnection(static_cast<std::uint8_t>(settings.transport)))
        return CheckNetwork(settings);
    if (settings.serialPorts.empty() || settings.serialPort < 0)
        return {.field = TSettingsField::SerialPort, .text = kNoSerialPort};
    return {};
}

TConversionError::TConversionError(std::string_view text)
    : std::runtime_error("\"" + std::string(text) + "\"" + std::string(kNoNumber)) {}

std::int32_t TSpinLimits::Nearest(std::int32_t value) const {
    return value == kept ? value : std::clamp(value, lowest, highest);
}

std::int32_t TSpinLimits::ValueOf(std::string_view text) const {
    const std::int32_t value = ParseIntegerOr(text, lowest);
    return value == 0 ? 0 : Nearest(value);
}

int SerialPortIndex(std::span<const std::string> ports, std::string_view name) {
    const auto isNamed = [&](const std::string& port) { return EqualIgnoringCase(port, name); };
    const auto found = std::find_if(ports.begin(), ports.end(), isNamed);
    return found == ports.end() ? -1 : static_cast<int>(std::distance(ports.begin(), found));
}

TScaleSettings SettingsOfNewScale(std::vector<std::string> serialPorts) {
    TScaleSettings settings;
    settings.serialPorts = std::move(serialPorts);
    settings.port = settings.type == 0 ? kUsualPort : kPortOfOtherTypes;
    return settings;
}

TScaleSettings SettingsOf(const TScaleRec& rec, std::vector<std::string> serialPorts) {
    TScaleSettings settings;
    settings.number = Positive(rec.ScaleNumb);
    settings.numberBefore = settings.number;
    settings.name = rec.ScaleName.Str();
    settings.port = std::to_string(rec.TCPPort);
    const bool isChoice = rec.Encoding >= 0 && rec.Encoding <= kLargestEncoding;
    settings.encoding = isChoice ? rec.Encoding : kDefaultEncoding;
    if (settings.encoding == kLargestEncoding) settings.encoding = -1;
    for (std::size_t i = 0; i < kTypes.size(); ++i) {
        if (kTypes[i].code == rec.ScaleType) settings.type = static_cast<int>(i);
    }
    settings.baudRate = SerialSpeed(rec.BaudRate) != nullptr ? rec.BaudRate : -1;
    if (IsNetworkConnection(rec.CommType)) {
        settings.transport = static_cast<TTransport>(rec.CommType);
        settings.ipAddress = rec.TCPAddress.Str();
        return settings;
    }
    settings.scaleAddress = rec.ScaleAddr;
    settings.serialPorts = std::move(serialPorts);
    settings.serialPort = SerialPortIndex(settings.serialPorts, rec.TCPAddress.View());
    return settings;
}

TScaleRec NewScale(const TScaleSettings& settings) {
    const auto port = ParseInteger(settings.port);
    if (!port) throw TConversionError(settings.port);
    TScaleRec rec;
    rec.Checked = true;
    rec.TCPPort = static_cast<std::uint16_t>(*port);
    rec.ScaleNumb = Positive(settings.number);
    ReadBack(settings, rec);
    return rec;
}

void ApplySettings(const TScaleSettings& settings, TScaleRec& rec) {
    TScaleRec changed = rec;
    changed.TCPPort = static_cast<std::uint16_t>(ParseIntegerOr(settings.port, kPortOfNoNumber));
    changed.ScaleNumb = settings.number;
    ReadBack(settings, changed);
    rec = changed;
}

std::string DefaultScaleName(const TScaleRec& rec) {
    for (const TType& type : kTypes) {
        if (type.code == rec.ScaleType)
            return std::string(type.namePrefix) + rec.TCPAddress.Str() + " (" +
                   std::to_string(rec.ScaleNumb) + ")";
    }
    return {};
}

}  // namespace tolvane
