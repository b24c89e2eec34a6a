#include "simulator/FaultSwitches.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include "simulator/Commands.h"
#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

std::string PercentText(double percent) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.10g", percent);
    return text.data();
}

}  // namespace

std::string FaultText(const TFault& fault) {
    const TFault plain;
    std::string text(FaultName(fault.kind));
    const auto add = [&](std::string_view key, const std::string& value) {
        text += "," + std::string(key) + "=" + value;
    };
    if (fault.command) add("command", CommandText(*fault.command));
    if (fault.request != plain.request) add("request", std::to_string(fault.request));
    if (fault.from != plain.from) add("from", std::to_string(fault.from));
    if (fault.to != plain.to) add("to", std::to_string(fault.to));
    if (fault.percent < plain.percent) add("percent", PercentText(fault.percent));
    if (fault.code != plain.code) add("code", std::to_string(fault.code));
    if (fault.ms) add("ms", std::to_string(fault.ms->count()));
    if (fault.count) add("count", std::to_string(*fault.count));
    if (fault.times != plain.times) add("times", std::to_string(fault.times));
    if (!fault.bytes.empty()) add("bytes", ToHex(fault.bytes));
    return text;
}

TFaultSwitches::TFaultSwitches(const TFaultScript& initial) : seed_(initial.seed) {
    for (const TFault& fault : initial.faults)
        switches_.push_back({FaultText(fault), fault, true});
    for (int kind = 0; kind <= static_cast<int>(TFaultKind::Reset); ++kind) {
        const TFault fault{.kind = static_cast<TFaultKind>(kind)};
        const std::string text = FaultText(fault);
        const bool there = std::any_of(switches_.begin(), switches_.end(),
                                       [&](const auto& entry) { return entry.text == text; });
        if (!there) switches_.push_back({text, fault, false});
    }
}

void TFaultSwitches::Set(const std::string& text, bool on) {
    const TFault fault = FaultFromText(text);
    const std::string plain = FaultText(fault);
    bool found = false;
    for (TFaultSwitch& entry : switches_) {
        if (entry.text != plain) continue;
        entry.on = on;
        found = true;
    }
    if (found) return;
    if (switches_.size() >= kMost) throw std::runtime_error("there are too many faults");
    switches_.push_back({plain, fault, on});
}

TFaultScript TFaultSwitches::Script() const {
    TFaultScript script;
    script.seed = seed_;
    for (const TFaultSwitch& entry : switches_) {
        if (entry.on) script.faults.push_back(entry.fault);
    }
    return script;
}

}  // namespace tolvane::simulator
