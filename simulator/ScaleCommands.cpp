#include <optional>

#include "simulator/ScaleCore.h"

namespace tolvane::simulator {

namespace {

constexpr int kHighestTare = 99;
constexpr int kHighestLabel = 20;
constexpr std::size_t kArticleHead = 3;  // 00, article number low, high
constexpr std::size_t kDecimalLength = 3;

// Three bytes of packed decimal, least significant pair first.
std::optional<int> Decimal(std::span<const std::uint8_t> bytes) {
    int value = 0;
    for (std::size_t i = kDecimalLength; i-- > 0;) {
        const int high = bytes[i] >> 4;
        const int low = bytes[i] & 0x0F;
        if (high > 9 || low > 9) return std::nullopt;
        value = value * 100 + high * 10 + low;
    }
    return value;
}

// The number of data bytes of this command; nothing for SetParam, whose requests contain their
// length.
std::optional<std::size_t> DataLength(std::uint8_t command) {
    switch (command) {
        case kSetPrice:
            return kArticleHead + kDecimalLength;
        case kSetPriceWeight:
            return kArticleHead + 2 * kDecimalLength;
        case kSetPriceC:
            return kArticleHead + kDecimalLength + 3;
        case kSetParam:
            return std::nullopt;
        default:
            return 0;
    }
}

}  // namespace

TBytes TScaleCore::Obey(const TRequest& request) {
    TRefusal refusal = TRefusal::None;
    switch (request.command) {
        case kGetVersion:
            return Version(request.data.empty() ? TRefusal::None : TRefusal::WrongLength);
        case kSetPrgMode:
        case kSetWeightMode:
            refusal = ChangeMode(request);
            break;
        case kSetPrice:
        case kSetPriceWeight:
        case kSetPriceC:
        case kSetParam:
            refusal = WriteArticle(request);
            break;
        default:
            refusal = TRefusal::UnknownCommand;
    }
    return {static_cast<std::uint8_t>(refusal)};
}

TRefusal TScaleCore::ChangeMode(const TRequest& request) {
    if (!request.data.empty()) return TRefusal::WrongLength;
    state_.programming = request.command == kSetPrgMode;
    return TRefusal::None;
}

TBytes TScaleCore::Version(TRefusal refusal) const {
    constexpr std::size_t kVersionLength = 4;
    TBytes data(static_cast<std::size_t>(options_.versionReplyLength), 0);
    const auto set = [&](std::size_t index, int value) {
        if (index < data.size()) data[index] = static_cast<std::uint8_t>(value & 0xFF);
    };
    const std::string& version = state_.scale.version;
    set(0, static_cast<int>(refusal));
    for (std::size_t i = 0; i < kVersionLength; ++i)
        set(1 + i, i < version.size() ? version[i] : ' ');
    set(9, state_.scale.capacity);
    set(10, state_.scale.capacity >> 8);
    set(16, state_.scale.labelMode);
    return data;
}

TRefusal TScaleCore::WriteArticle(const TRequest& request) {
    const TBytes& data = request.data;
    const std::optional<std::size_t> length = DataLength(request.command);
    if (length ? data.size() != *length : data.size() < kArticleHead + 2)
        return TRefusal::WrongLength;
    if (data[0] != 0) return TRefusal::WrongLength;
    if (!state_.programming) return TRefusal::NotProgramming;
    const int number = data[1] + 256 * data[2];
    if (number == 0 || number > state_.scale.capacity) return TRefusal::WrongNumber;

    const auto held = state_.articles.find(number);
    TArticle article = held == state_.articles.end() ? TArticle{} : held->second;
    article.number = number;
    const TRefusal refusal =
        request.command == kSetParam ? WriteText(request, article) : WritePrice(request, article);
    if (refusal == TRefusal::None) state_.articles[number] = std::move(article);
    return refusal;
}

TRefusal TScaleCore::WritePrice(const TRequest& request, TArticle& article) const {
    const std::span<const std::uint8_t> data(request.data);
    const std::optional<int> price = Decimal(data.subspan(kArticleHead, kDecimalLength));
    if (!price) return TRefusal::WrongDecimal;
    const auto rest = data.subspan(kArticleHead + kDecimalLength);
    if (request.command == kSetPriceWeight) {
        const std::optional<int> weight = Decimal(rest);
        if (!weight) return TRefusal::WrongDecimal;
        article.weight = weight;
    }
    if (request.command == kSetPriceC) {
        if (rest[0] > 1 || rest[1] > kHighestTare || rest[2] > kHighestLabel)
            return TRefusal::OutOfRange;
        article.pieces = rest[0] == 1;
        article.tare = rest[1];
        article.label = rest[2];
    }
    article.price = price;
    ++article.priceWrites;
    return TRefusal::None;
}

TRefusal TScaleCore::WriteText(const TRequest& request, TArticle& article) const {
    const int parameter = request.data[kArticleHead];
    const std::size_t announced = request.data[kArticleHead + 1];
    const auto text = std::span(request.data).subspan(kArticleHead + 2);
    if (parameter > kHighestParameter) return TRefusal::UnknownParameter;
    const std::optional<int> length = TextLength(state_.scale.model, parameter);
    if (text.size() != announced || (length && static_cast<std::size_t>(*length) != announced))
        return TRefusal::WrongTextLength;
    TTextParameter& held = article.texts[parameter];
    held.bytes.assign(text.begin(), text.end());
    ++held.writes;
    return TRefusal::None;
}

}  // namespace tolvane::simulator
