#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tolvane {

// One speed of a serial scale.
struct TSerialSpeed {
    std::int32_t bitsPerSecond;
    std::string_view caption;     // in the settings windows
    std::string_view runCaption;  // in the run window
};

// By TScaleRec::BaudRate. The run window shows 57600 bit/s as 576000, as users know it.
inline constexpr auto kSerialSpeeds = std::to_array<TSerialSpeed>({
    {.bitsPerSecond = 9600, .caption = "9600 bps", .runCaption = "9600 bps"},
    {.bitsPerSecond = 19200, .caption = "19200 bps", .runCaption = "19200 bps"},
    {.bitsPerSecond = 38400, .caption = "38400 bps", .runCaption = "38400 bps"},
    {.bitsPerSecond = 57600, .caption = "57600 bps", .runCaption = "576000 bps"},
    {.bitsPerSecond = 115200, .caption = "115200 bps", .runCaption = "115200 bps"},
});

// Null for an index outside the table.
constexpr const TSerialSpeed* SerialSpeed(std::size_t baudRate) {
    return baudRate < kSerialSpeeds.size() ? &kSerialSpeeds[baudRate] : nullptr;
}

}  // namespace tolvane
