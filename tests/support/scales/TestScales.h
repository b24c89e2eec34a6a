#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/TypesUnit.h"

namespace tolvane {

// A checked EVL on TCP at 10.0.0.<number>:100, with code table 2.
TScaleRec NetworkScale(int number, std::string_view name);
// The same at another address and port.
TScaleRec NetworkScale(int number, std::string_view name, std::string_view address,
                       std::uint16_t port);
// A checked EVL on a serial port ("COM3") at 9600 bps, with code table 2.
TScaleRec SerialScale(int number, std::string_view name, std::string_view port);

// The section of NetworkScale(number, name) in a slot, as the module writes it.
std::string NetworkScaleSection(int slot, int number, const std::string& name, bool checked = true);

}  // namespace tolvane
