#pragma once

#include <string>
#include <vector>

#include "simulator/Faults.h"

namespace tolvane::simulator {

// The fault as FaultFromText reads it, with the keys that are not at their default.
std::string FaultText(const TFault& fault);

struct TFaultSwitch {
    std::string text{};
    TFault fault{};
    bool on = false;
};

// Faults that somebody switches on and off: those that the scale begins with, then every kind with
// its defaults, then what has been added. For one thread.
class TFaultSwitches {
public:
    explicit TFaultSwitches(const TFaultScript& initial);

    const std::vector<TFaultSwitch>& All() const { return switches_; }
    // By a fault's text; one that is not there yet is added. Throws std::runtime_error for a text
    // that is no fault, and when there are too many.
    void Set(const std::string& text, bool on);
    // The faults that are on.
    TFaultScript Script() const;

    static constexpr std::size_t kMost = 200;

private:
    std::uint32_t seed_;
    std::vector<TFaultSwitch> switches_;
};

}  // namespace tolvane::simulator
