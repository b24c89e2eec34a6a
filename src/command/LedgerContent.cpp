#include "command/LedgerContent.h"

#include <utility>

#include "command/LedgerFields.h"
#include "command/ScalePlace.h"
#include "config/SerialSpeeds.h"

namespace tolvane {
namespace {

std::string PriceName(int choice) {
    switch (choice) {
        case kRetailPrice:
            return "retail";
        case kWholesalePrice:
            return "wholesale";
        default:
            return std::to_string(choice);
    }
}

std::string TextOf(const std::string& value) {
    return value.empty() ? "none" : value;
}

std::string TextOf(std::int32_t value) {
    return std::to_string(value);
}

template <class T>
std::string Difference(std::string_view words, const T& now, const T& before) {
    if (now == before) return {};
    return "the " + std::string(words) + " differs: " + TextOf(now) + ", before " + TextOf(before);
}

}  // namespace

std::string ModelName(std::int32_t code) {
    switch (code) {
        case kScaleTypeEvl:
            return "EVL";
        case kScaleTypeEts:
            return "ETS";
        case kScaleTypeS300:
            return "S300";
        default:
            return std::to_string(code);
    }
}

TLedgerIdentity IdentityOf(const TScaleRec& scale, const TLineChoices& choices) {
    const TScalePlace place = PlaceOf(scale);
    TLedgerIdentity identity{.number = scale.ScaleNumb,
                             .connection = place.connection,
                             .address = place.address,
                             .port = place.port,
                             .model = ModelName(scale.ScaleType),
                             .encoding = scale.Encoding,
                             .price = PriceName(choices.price),
                             .name1 = choices.name1,
                             .name2 = choices.name2};
    if (scale.CommType == kCommSerial) {
        const TSerialSpeed* speed = SerialSpeed(scale.BaudRate);
        identity.speed = speed != nullptr ? speed->bitsPerSecond : 0;
        identity.busAddress = scale.ScaleAddr;
    }
    return identity;
}

std::string_view OutcomeName(TRunOutcome outcome) {
    return kOutcomeNames[static_cast<std::size_t>(outcome)];
}

std::optional<TLedgerDifference> DifferenceOf(const TLedgerIdentity& now,
                                              const TLedgerIdentity& before) {
    TLedgerDifference difference;
    for (const TLedgerField& field : kLedgerFields) {
        const std::string text = std::visit(
            [&](auto member) { return Difference(field.words, now.*member, before.*member); },
            field.member);
        if (text.empty()) continue;
        if (difference.text.empty()) difference.text = text;
        difference.isOtherScale = difference.isOtherScale || field.isTheScale;
    }
    if (difference.text.empty()) return std::nullopt;
    return difference;
}

std::optional<TLedgerDifference> DifferenceOf(const TScaleReport& now, const TScaleReport& before) {
    std::string text = Difference("version of the scale", now.version, before.version);
    if (text.empty()) text = Difference("capacity of the scale", now.maxPlu, before.maxPlu);
    if (text.empty()) text = Difference("label mode of the scale", now.labelMode, before.labelMode);
    if (text.empty()) return std::nullopt;
    return TLedgerDifference{.text = std::move(text), .isOtherScale = now.maxPlu != before.maxPlu};
}

}  // namespace tolvane
