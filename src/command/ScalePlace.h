#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/TypesUnit.h"

namespace tolvane {

// What the name of a serial port begins with, in any case of letters.
inline constexpr std::string_view kSerialPrefix = "COM";

// Where a scale is reached, written in one way: two records that lead to the same scale, or to the
// same serial line, have the same place.
struct TScalePlace {
    std::string connection;  // "serial", "tcp", "udp"; "unknown" for any other
    std::string address;     // "10.0.0.5", "COM1"; a text that is neither stays as it is
    std::int32_t port = 0;   // of TCP; the port of UDP is fixed
};
TScalePlace PlaceOf(const TScaleRec& scale);

}  // namespace tolvane
