#include "simulator/Faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "simulator/Commands.h"
#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

using nlohmann::json;

constexpr std::array<std::string_view, 26> kKindNames = {
    "error",      "empty",  "wrong-address", "wrong-command", "bad-checksum", "no-stx", "bad-etx",
    "truncated",  "raw",    "etx-first",     "noise-before",  "noise-after",  "double", "stray",
    "no-reply",   "silent", "slow",          "late",          "held",         "split",  "split-at",
    "disconnect", "drop",   "cut",           "half-close",    "reset"};
static_assert(kKindNames.size() == static_cast<std::size_t>(TFaultKind::Reset) + 1);

[[noreturn]] void RejectFault(const std::string& what) {
    throw std::runtime_error("bad fault: " + what);
}

TFaultKind KindByName(const std::string& name) {
    const auto found = std::find(kKindNames.begin(), kKindNames.end(), name);
    if (found == kKindNames.end()) RejectFault("unknown kind \"" + name + "\"");
    return static_cast<TFaultKind>(found - kKindNames.begin());
}

int Number(const json& value, const std::string& key, int low, int high) {
    if (!value.is_number_integer()) RejectFault("\"" + key + "\" must be a whole number");
    const auto number = value.get<std::int64_t>();
    if (number < low || number > high)
        RejectFault("\"" + key + "\" must be " + std::to_string(low) + " to " +
                    std::to_string(high));
    return static_cast<int>(number);
}

std::uint8_t Command(const json& value) {
    if (value.is_number_integer())
        return static_cast<std::uint8_t>(Number(value, "command", 0, 255));
    const auto text = value.get<std::string>();
    const std::optional<std::uint8_t> code = CommandByText(text);
    if (!code) RejectFault("unknown command \"" + text + "\"");
    return *code;
}

TBytes Bytes(const json& value) {
    const auto bytes = FromHex(value.get<std::string>());
    if (!bytes) RejectFault("\"bytes\" must be pairs of hexadecimal digits");
    return *bytes;
}

void SetKey(TFault& fault, const std::string& key, const json& value) {
    constexpr int kMany = 1'000'000'000;
    if (key == "fault")
        fault.kind = KindByName(value.get<std::string>());
    else if (key == "request")
        fault.request = Number(value, key, 1, kMany);
    else if (key == "from")
        fault.from = Number(value, key, 1, kMany);
    else if (key == "to")
        fault.to = Number(value, key, 1, kMany);
    else if (key == "command")
        fault.command = Command(value);
    else if (key == "percent")
        fault.percent = value.get<double>();
    else if (key == "code")
        fault.code = Number(value, key, 0, 255);
    else if (key == "ms")
        fault.ms = std::chrono::milliseconds(Number(value, key, 0, kMany));
    else if (key == "count")
        fault.count = Number(value, key, 0, 100'000);
    else if (key == "times")
        fault.times = Number(value, key, 1, 100);
    else if (key == "bytes")
        fault.bytes = Bytes(value);
    else
        RejectFault("unknown key \"" + key + "\"");
}

TFault FaultFromJson(const json& from) {
    if (!from.is_object() || !from.contains("fault")) RejectFault("no \"fault\" in " + from.dump());
    TFault fault;
    try {
        for (const auto& [key, value] : from.items())
            SetKey(fault, key, value);
    } catch (const json::exception& error) {
        RejectFault(from.dump() + ": " + error.what());
    }
    if (!(fault.percent >= 0 && fault.percent <= 100)) RejectFault("\"percent\" must be 0 to 100");
    if (fault.request != 0 && (fault.from != 0 || fault.to != 0))
        RejectFault("\"request\" excludes \"from\" and \"to\"");
    return fault;
}

// A number where the whole text is one, otherwise a text.
json Value(const std::string& key, const std::string& text) {
    if (key == "bytes" || key == "fault") return text;
    json number = json::parse(text, nullptr, false);
    return number.is_number() ? number : json(text);
}

}  // namespace

std::string_view FaultName(TFaultKind kind) {
    return kKindNames[static_cast<std::size_t>(kind)];
}

TFaultScript FaultsFromJson(const json& from) {
    TFaultScript script;
    const json* list = &from;
    if (from.is_object()) {
        for (const auto& [key, value] : from.items()) {
            if (key == "seed" && value.is_number_unsigned())
                script.seed = value.get<std::uint32_t>();
            else if (key != "faults")
                RejectFault("unknown key \"" + key + "\" of the script");
        }
        if (!from.contains("faults")) RejectFault("the script has no \"faults\"");
        list = &from["faults"];
    }
    if (!list->is_array()) RejectFault("the script is not a list");
    for (const json& fault : *list)
        script.faults.push_back(FaultFromJson(fault));
    return script;
}

TFaultScript LoadFaults(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    try {
        return FaultsFromJson(json::parse(file));
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

TFault FaultFromText(std::string_view text) {
    json fault = json::object();
    std::string rest(text);
    for (bool first = true; first || !rest.empty(); first = false) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string part = rest.substr(0, comma);
        rest.erase(0, comma + 1);
        const std::size_t equals = part.find('=');
        if (first) {
            fault["fault"] = part;
        } else if (equals == std::string::npos) {
            RejectFault("\"" + part + "\" is not key=value");
        } else {
            const std::string key = part.substr(0, equals);
            fault[key] = Value(key, part.substr(equals + 1));
        }
    }
    return FaultFromJson(fault);
}

}  // namespace tolvane::simulator
