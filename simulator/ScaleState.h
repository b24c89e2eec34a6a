#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "simulator/CodePages.h"
#include "simulator/Commands.h"
#include "simulator/Frame.h"

namespace tolvane::simulator {

// What kind of scale it is.
struct TScaleProperties {
    TModel model = TModel::Evl;
    std::string version = std::string(PropertiesOf(TModel::Evl).versionText);  // 4 characters
    int capacity = PropertiesOf(TModel::Evl).capacity;  // highest article number, up to 65535
    int labelMode = 2;                                  // byte 16 of the version reply, 0 to 255
    int address = 0;
    TCodeTable codeTable = TCodeTable::Pc866;

    bool operator==(const TScaleProperties&) const = default;
};

// A model with the version text and the capacity that it has by default.
TScaleProperties DefaultProperties(TModel model);

struct TTextParameter {
    TBytes bytes;
    int writes = 0;

    bool operator==(const TTextParameter&) const = default;
};

// One article as the scale holds it. A field that no command has carried yet is empty.
struct TArticle {
    int number = 0;
    std::optional<int> price;   // hundredths
    std::optional<int> weight;  // thousandths: the six digits of the weight field
    std::optional<bool> pieces;
    std::optional<int> tare;
    std::optional<int> label;
    int priceWrites = 0;
    std::map<int, TTextParameter> texts;  // by parameter number

    // Text parameter 0 to 31 as UTF-8, empty when it was never written.
    std::string Text(int parameter, TCodeTable table) const;
    // The days in parameter 4: the bytes after its first, the most significant first.
    std::optional<int> BestBefore() const;
    // Cleared by a delete: price 0 and a name that begins with a zero byte.
    bool IsCleared() const;

    bool operator==(const TArticle&) const = default;
};

struct TRequestCounts {
    int total = 0;      // all frames that came
    int refused = 0;    // answered with an error code of the scale's own
    int ignored = 0;    // arrived while a fault kept the scale silent
    int malformed = 0;  // stuffing wrong or too short
    int badChecksum = 0;
    int wrongAddress = 0;
    std::map<int, int> byCommand;  // well-formed requests to this scale, by command code

    bool operator==(const TRequestCounts&) const = default;
};

struct TScaleState {
    TScaleProperties scale;
    bool programming = false;
    TRequestCounts requests;
    std::map<int, TArticle> articles;  // by number

    bool operator==(const TScaleState&) const = default;
};

// JSON as simulator/README.md describes it. FromJson takes the bytes of a text from "hex" and
// ignores "text"; it throws std::runtime_error that names what is wrong.
nlohmann::json ToJson(const TScaleState& state);
TScaleState FromJson(const nlohmann::json& json);

// SaveState writes a temporary file first, so that a reader finds either the old or the new file.
// Both throw std::runtime_error with the file's name.
void SaveState(const TScaleState& state, const std::string& path);
TScaleState LoadState(const std::string& path);

// A table for people, UTF-8: one line per article that is not cleared, then the counts.
std::string PrintState(const TScaleState& state);

}  // namespace tolvane::simulator
