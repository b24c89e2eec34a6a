#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "config/SerialSpeeds.h"
#include "config/TypesUnit.h"
#include "text/Cp1251.h"

namespace tolvane {

// The choices of the connection dialog, in the order of their lists.
inline constexpr std::array<std::string_view, 3> kScaleTypeNames = {"ELICOM EVL/EEP", "ELICOM ETS",
                                                                    "ELICOM SI/S300"};
inline constexpr std::array<std::string_view, 3> kEncodingNames = {"WIN-1252", "PC-855 (DOS CYR)",
                                                                   "PC-866 (RUS CYR)"};
inline constexpr auto kBaudRateNames = [] {
    std::array<std::string_view, kSerialSpeeds.size()> names;
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = kSerialSpeeds[i].caption;
    return names;
}();

inline constexpr std::int32_t kLowestScaleNumber = 1;
inline constexpr std::int32_t kHighestScaleNumber = 60;
inline constexpr std::int32_t kHighestScaleAddress = 255;

// With the values of TScaleRec::CommType.
enum class TTransport : std::uint8_t { Serial = kCommSerial, Tcp = kCommTcp, Udp = kCommUdp };

// What the connection dialog shows and the user changes. A choice is an index, -1 when nothing is
// chosen.
struct TScaleSettings {
    std::int32_t number = kLowestScaleNumber;
    std::int32_t numberBefore = 0;  // the scale's number when the dialog was opened
    std::string name;
    int type = 0;
    int encoding = 2;
    TTransport transport = TTransport::Serial;
    std::int32_t scaleAddress = 0;
    std::vector<std::string> serialPorts;
    int serialPort = -1;
    int baudRate = 0;
    std::string ipAddress;  // dots, with or without the blanks of the address field
    std::string port;
};

// Which controls a transport needs.
struct TTransportRules {
    bool serialControls = false;  // address, port list with its button, speed
    bool ipControls = false;      // address, search
    bool portField = false;
    std::string_view portText{};  // what a switch to the transport puts into the port field
};
TTransportRules RulesOf(TTransport transport);

enum class TSettingsField { None, Number, Port, IpAddress, SerialPort };

// The first fault in the settings; the text is empty when there is no fault.
struct TSettingsFault {
    TSettingsField field = TSettingsField::None;
    bool isError = false;  // otherwise a warning
    std::string_view text{};
};

// Checks the settings in the dialog's order; `listed` are the numbers of all scales in the list,
// the edited one's included. A good address is rewritten without leading zeros and blanks.
TSettingsFault CheckSettings(TScaleSettings& settings, std::span<const std::int32_t> listed);

// A dialog field that must be a number is not one; the message quotes it.
class TConversionError : public std::runtime_error {
public:
    explicit TConversionError(std::string_view text);
};

// What a spin edit accepts: the numbers within the limits, and the number that it was first given.
struct TSpinLimits {
    std::int32_t lowest = 0;
    std::int32_t highest = 0;
    std::optional<std::int32_t> kept;

    // The number itself if it is allowed, else the nearest limit.
    std::int32_t Nearest(std::int32_t value) const;
    // The typed number or its nearest limit. 0 stays 0; a text that is not a number gives the lower
    // limit.
    std::int32_t ValueOf(std::string_view text) const;
};

// The index of a serial port in the list, without regard to the case of its name; -1 when the list
// does not have it.
int SerialPortIndex(std::span<const std::string> ports, std::string_view name);

// The settings with which the dialog opens for a new scale.
TScaleSettings SettingsOfNewScale(std::vector<std::string> serialPorts);
// The settings with which the dialog opens for a listed scale. Only a serial scale gets
// `serialPorts`.
TScaleSettings SettingsOf(const TScaleRec& rec, std::vector<std::string> serialPorts);

// The scale that the confirmed settings describe: with its check mark set, and with a default name
// if it has no name. Throws TConversionError.
TScaleRec NewScale(const TScaleSettings& settings);
// Copies confirmed settings into a listed scale. A field without a choice keeps its value. Throws
// TConversionError and then leaves the scale as it was.
void ApplySettings(const TScaleSettings& settings, TScaleRec& rec);

// "(EVL) - 192.168.1.10 (3)"; empty for an unknown type.
std::string DefaultScaleName(const TScaleRec& rec);

}  // namespace tolvane
