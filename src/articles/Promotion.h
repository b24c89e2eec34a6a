#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "system/LocalTime.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// When a promotion is valid, as the database holds it.
struct TPromotionTimes {
    std::string_view days;      // one character per day, Monday first; "1": valid on that day
    std::string_view fromTime;  // time of day as text; empty: the whole day
    std::string_view toTime;
};

// Whether the promotion is valid now, by day of the week and time of day. Times count to the
// second, and both ends are exclusive. With an invalid time a promotion is never valid.
bool IsPromotionValid(const TPromotionTimes& times, const TLocalDateTime& now,
                      const TRegionalSettings& regional);

// Whether the promotion changes the selling price by per cents instead of naming a new one.
bool IsPriceChange(std::int32_t packetType);

// The promotional price of an article; nothing for a packet type that leaves the price alone.
// `value` is the new price, or for packet type 4 the change in per cent.
std::optional<double> PromotionalPrice(std::int32_t packetType, double retailPrice, double value);

}  // namespace tolvane
