#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/ScaleTable.h"
#include "config/TypesUnit.h"

namespace tolvane {

// The slots in use, in slot order.
std::vector<TScaleObj> ListedScales(const TScaleTable& table);
// Puts the list into slots 1 to n and empties the others. Scales beyond the last slot are left out.
void StoreListedScales(std::span<const TScaleObj> scales, TScaleTable& table);

// What the editor shows about one scale; code page 1251.
struct TScaleDetails {
    std::string number;
    std::string name;
    std::string address;
    std::string_view portOrSpeedLabel;
    std::string portOrSpeed;
};
TScaleDetails DetailsOf(const TScaleRec& rec);

// "http://" and the address (code page 1251). Characters that cannot be part of a host name, a port
// or a path are written as %XX, so that the result is always a single word and always a web page.
std::string WebPageOf(std::string_view address);

}  // namespace tolvane
