#include "settings/ScaleListEdit.h"

#include <algorithm>

#include "config/SerialSpeeds.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::string_view kPortLabel = "Порт на устройството за комуникация."_cp1251;
constexpr std::string_view kSpeedLabel = "Скорост на устройството за комуникация."_cp1251;
constexpr std::string_view kUnknownSpeed = "unknown bps";
constexpr std::string_view kWebPage = "http://";

bool StandsForItself(char c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    const bool isDigit = c >= '0' && c <= '9';
    constexpr std::string_view kOthers = "-._:/";
    return isLetter || isDigit || kOthers.find(c) != std::string_view::npos;
}

}  // namespace

std::vector<TScaleObj> ListedScales(const TScaleTable& table) {
    std::vector<TScaleObj> scales;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsInUse(table[slot])) scales.push_back({table[slot]});
    }
    return scales;
}

void StoreListedScales(std::span<const TScaleObj> scales, TScaleTable& table) {
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        const auto index = static_cast<std::size_t>(slot - 1);
        if (index < scales.size())
            table[slot] = scales[index].Rec;
        else
            table[slot].TCPPort = 0;
    }
}

TScaleDetails DetailsOf(const TScaleRec& rec) {
    TScaleDetails details;
    details.number = std::to_string(rec.ScaleNumb);
    details.name = rec.ScaleName.Str();
    details.address = rec.TCPAddress.Str();
    if (rec.CommType != kCommSerial) {
        details.portOrSpeedLabel = kPortLabel;
        details.portOrSpeed = std::to_string(rec.TCPPort);
    } else {
        const TSerialSpeed* speed = SerialSpeed(rec.BaudRate);
        details.portOrSpeedLabel = kSpeedLabel;
        details.portOrSpeed = speed != nullptr ? speed->caption : kUnknownSpeed;
    }
    return details;
}

std::string WebPageOf(std::string_view address) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string page(kWebPage);
    for (const char c : ToUtf8(address)) {
        if (StandsForItself(c)) {
            page += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        page += '%';
        page += kHex[byte >> 4];
        page += kHex[byte & 0xF];
    }
    return page;
}

}  // namespace tolvane
