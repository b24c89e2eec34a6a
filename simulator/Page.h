#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/FaultSwitches.h"
#include "simulator/Label.h"
#include "simulator/RequestLog.h"
#include "simulator/ScaleState.h"

namespace tolvane::simulator {

// What the page shows.
struct TPageModel {
    TScaleState state{};
    std::vector<std::string> endpoints{};
    std::vector<TRequestLine> requests{};
    std::vector<TFaultSwitch> faults{};
    TPlate plate{};
    int from = 1;  // the article number that the table and the labels begin with

    static constexpr int kArticles = 48;  // how many are shown at once
};

// Text between tags or in an attribute: what has a meaning in HTML is written so that it has none,
// and a control character becomes U+FFFD.
std::string Html(std::string_view text);

// The part that changes, and the whole page around it. The nonce is the one that the response
// allows.
std::string RenderContent(const TPageModel& model);
std::string RenderPage(const TPageModel& model, std::string_view nonce);

}  // namespace tolvane::simulator
