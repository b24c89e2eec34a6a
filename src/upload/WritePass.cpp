#include "upload/WritePass.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleLine.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

// The label of every article that an S300 scale sells by the piece.
constexpr std::int32_t kPieceLabel = 1;
constexpr std::string_view kStopped = "Операцията прекратена от петребителя."_cp1251;

std::string_view VersionPrefix(std::int32_t scaleType) {
    switch (scaleType) {
        case kScaleTypeEvl:
            return "   Везна EVL - Ver: "_cp1251;
        case kScaleTypeEts:
            return "   Везна ETS - Ver: "_cp1251;
        case kScaleTypeS300:
            return "   Везна S300 - Ver: "_cp1251;
        default:
            return {};
    }
}

std::string ProgressText(const TPLUD& plu) {
    std::string text("Запис артикул: "_cp1251);
    text += std::to_string(plu.ScaleNumber) + " " + plu.LabelName1;
    if (plu.WholeUnits) text += " (брой)"_cp1251;
    return text;
}

}  // namespace

TWritePass::TWritePass(const TPassParts& parts, const TScaleRec& rec)
    : parts_(parts), rec_(rec), mode_(parts.scale, parts.clock, parts.stop) {}

bool TWritePass::Run(const std::vector<std::string>& lines) {
    try {
        WriteLines(lines);
        return true;
    } catch (const std::exception& error) {
        LastError = "Fail! Plu: " + std::to_string(plu_.ScaleNumber) + " \"" + plu_.LabelName1 +
                    "\" " + FailureText(error);
        return false;
    }
}

void TWritePass::WriteLines(const std::vector<std::string>& lines) {
    std::optional<TScaleVersion> version = mode_.Enter();
    if (!version) throw std::runtime_error(std::string(kStopped));
    version_ = std::move(*version);
    LogVersion();
    int written = 0;
    for (const std::string& line : lines) {
        if (parts_.stop.IsStopped()) throw std::runtime_error(std::string(kStopped));
        if (ParseArticleLine(line, parts_.decimalSeparator, plu_) && WriteArticle()) ++written;
    }
    mode_.Leave();
    parts_.view.Log(std::string("   Брой записани артикули: "_cp1251) + std::to_string(written));
}

void TWritePass::LogVersion() {
    const std::string_view prefix = VersionPrefix(rec_.ScaleType);
    if (prefix.empty()) return;
    parts_.view.Log(std::string(prefix) + version_.text + "; Max.PLU: " +
                    std::to_string(version_.maxPlu) + "; Mode: " + std::to_string(version_.mode));
}

bool TWritePass::WriteArticle() {
    const std::int32_t uncutScaleNumber = plu_.ScaleNumber;
    plu_.ScaleNumber = PluTail(uncutScaleNumber, version_.maxPlu);
    if (plu_.ScaleNumber == 0 || plu_.ScaleNumber > version_.maxPlu) return false;
    parts_.view.SetProgress(ProgressText(plu_));
    if (plu_.PriceHundredths <= 0) return false;
    WritePrice();
    WriteTexts(uncutScaleNumber);
    return true;
}

void TWritePass::WritePrice() {
    const double price = plu_.PriceHundredths / 100.0;
    std::int32_t errCode = 0;
    if (plu_.WholeUnits && rec_.ScaleType == kScaleTypeS300) {
        if (!parts_.scale.SetPriceC(errCode, plu_.ScaleNumber, price, true, plu_.Reserved7,
                                    kPieceLabel))
            throw TFailure(CommandError(parts_.scale, "[SetPriceC]", errCode));
    } else if (!parts_.scale.SetPrice(errCode, plu_.ScaleNumber, price, plu_.Reserved7)) {
        throw TFailure(CommandError(parts_.scale, "[SetPrice]", errCode));
    }
}

void TWritePass::WriteTexts(std::int32_t uncutScaleNumber) {
    for (const TLabelText& text : LabelTexts()) {
        if (!IsSent(text, rec_.ScaleType, version_.mode)) continue;
        const std::uint8_t codeTable =
            text.raw ? kCodeTableRaw : static_cast<std::uint8_t>(rec_.Encoding);
        std::int32_t errCode = 0;
        if (parts_.scale.SetParam(errCode, plu_.ScaleNumber, text.parameter,
                                  text.text(plu_, uncutScaleNumber), codeTable))
            continue;
        std::string command = "[SetParam:" + std::to_string(text.parameter) + "][";
        command += text.label;
        throw TFailure(CommandError(parts_.scale, command + "]", errCode));
    }
}

}  // namespace tolvane
