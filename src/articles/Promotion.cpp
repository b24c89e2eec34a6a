#include "articles/Promotion.h"

namespace tolvane {
namespace {

enum TPacketType : std::int32_t { NewPrice = 1, PriceChange = 4, NewPriceToo = 5 };

bool IsValidDay(std::string_view days, TDate today) {
    const auto index = static_cast<std::size_t>(DayOfWeek(today) - 1);
    return index < days.size() && days[index] == '1';
}

bool IsValidTime(const TPromotionTimes& times, TTimeOfDay now, const TRegionalSettings& regional) {
    if (times.fromTime.empty() || times.toTime.empty()) return true;
    const std::optional<TTimeOfDay> from = ParseTime(times.fromTime, regional);
    const std::optional<TTimeOfDay> to = ParseTime(times.toTime, regional);
    if (!from || !to) return false;
    now.millisecond = 0;
    return *from < now && now < *to;
}

}  // namespace

bool IsPromotionValid(const TPromotionTimes& times, const TLocalDateTime& now,
                      const TRegionalSettings& regional) {
    return IsValidDay(times.days, now.date) && IsValidTime(times, now.time, regional);
}

bool IsPriceChange(std::int32_t packetType) {
    return packetType == PriceChange;
}

std::optional<double> PromotionalPrice(std::int32_t packetType, double retailPrice, double value) {
    switch (packetType) {
        case NewPrice:
        case NewPriceToo:
            return value;
        case PriceChange:
            return retailPrice + retailPrice * value / 100;
        default:
            return std::nullopt;
    }
}

}  // namespace tolvane
