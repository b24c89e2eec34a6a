#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulator/FaultSwitches.h"
#include "simulator/HttpRequest.h"
#include "simulator/Page.h"
#include "simulator/RequestLog.h"
#include "simulator/ScaleState.h"

namespace tolvane::simulator {

// The scale as its page sees it.
struct TPageScale {
    std::function<TScaleState()> state{};
    std::function<std::vector<std::string>()> endpoints{};
    std::function<std::vector<TRequestLine>()> requests{};
    std::function<void(const TFaultScript&)> setFaults{};
};

// What each request to the page is answered. For one thread.
//
// A browser may be brought to send requests here by any page that it shows. So nothing is answered
// to a host name but localhost, since a name can be made to mean this computer; and what changes
// something is not obeyed when the browser says that it comes from another page.
class TPageSite {
public:
    TPageSite(TPageScale scale, const TFaultScript& faults, std::string barcodePrefix);

    THttpResponse Answer(const THttpRequest& request);

private:
    TPageModel Model(const THttpRequest& request) const;
    THttpResponse Whole(const THttpRequest& request) const;
    THttpResponse SwitchFault(const THttpRequest& request);

    TPageScale scale_;
    TFaultSwitches switches_;
    std::string barcodePrefix_;
};

}  // namespace tolvane::simulator
