#pragma once

#include <string>
#include <vector>

#include "config/IniDocument.h"
#include "config/TypesUnit.h"

namespace tolvane {

// A scale of the module's configuration file. Texts are code page 1251.
struct TListedScale {
    TScaleRec rec{};
    std::string fault{};  // why no run can use it; empty when one can
    std::string cure{};

    bool IsUsable() const { return fault.empty(); }
};

// The scales of sections SCALE1 to SCALE20, in their order. A scale that the window would leave out
// without a word, or whose numbers it would take for others, has a fault.
std::vector<TListedScale> ListedScales(const TIniDocument& document);

// Without their faults.
std::vector<TScaleRec> RecordsOf(const std::vector<TListedScale>& scales);
// The scales without a fault.
std::vector<TScaleRec> UsableOf(const std::vector<TListedScale>& scales);

// How a scale is connected, UTF-8: "COM5, 115200 bit/s, address 5", "TCP 10.0.0.5:1001".
std::string ConnectionName(const TScaleRec& rec);

}  // namespace tolvane
