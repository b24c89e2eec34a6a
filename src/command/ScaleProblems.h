#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "comm/UdpSocket.h"
#include "command/Problem.h"
#include "command/ScaleList.h"

namespace tolvane {

// A problem of the scale itself.
TProblem OfScale(const TScaleRec& rec, std::string problem, std::string cure,
                 TSeverity severity = TSeverity::Error);

// Of the list of scales: those that no run can use, addresses, ports and numbers that are there
// twice, models, speeds and code tables that do not exist, networks that this computer does not
// reach. Sends nothing. `hasRoute` answers for an IPv4 address.
std::vector<TProblem> ProblemsOfScales(
    const std::vector<TListedScale>& scales,
    const std::function<bool(std::uint32_t)>& hasRoute = &HasRoute);

}  // namespace tolvane
