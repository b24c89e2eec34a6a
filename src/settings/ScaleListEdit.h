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

// What the editor shows of one scale, code page 1251.
struct TScaleDetails {
    std::string number;
    std::string name;
    std::string address;
    std::string_view portOrSpeedLabel;
    std::string portOrSpeed;
};
TScaleDetails DetailsOf(const TScaleRec& rec);

// "http://" and the address (code page 1251). Whatever is not part of a host's name, a port or a
// path is written as %XX, so that the result is always one word and always a web page.
std::string WebPageOf(std::string_view address);

}  // namespace tolvane
