#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "command/LinkFactory.h"
#include "command/Problem.h"
#include "command/ScaleList.h"

namespace tolvane {

// A problem of the scale itself.
TProblem OfScale(const TScaleRec& rec, std::string problem, std::string cure,
                 TSeverity severity = TSeverity::Error);

// What this computer offers to reach scales.
struct TReach {
    std::function<bool(std::uint32_t)> hasRoute;                // to an IPv4 address
    std::function<bool(const std::string&)> hasSerialPort;      // by the name that opens it
    std::function<std::string(const TScaleRec&)> serialPortOf;  // the name that opens it
    std::function<std::string(const TScaleRec&)> linkOf;        // the same for what shares a link
};
// As a run with these links would find it. The links outlive the result.
TReach ReachBy(const TLinkFactory& links);

// Of the list of scales: those that no run can use, addresses, ports and numbers that are there
// twice, models, speeds and code tables that do not exist, networks and serial ports that this
// computer does not reach. Sends nothing and opens no port.
std::vector<TProblem> ProblemsOfScales(const std::vector<TListedScale>& scales,
                                       const TReach& reach);

}  // namespace tolvane
