#include "upload/ScaleSession.h"

#include <exception>
#include <stdexcept>
#include <string_view>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleLine.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

// The only label that a whole-units article of an S300 scale is given.
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

bool TScaleSession::ProcessUpload(const std::vector<std::string>& Lines, const TScaleRec& Rec) {
    if (driver_ == nullptr) return false;
    TPLUD plu;
    try {
        UploadLines(Lines, Rec, plu);
        return true;
    } catch (const std::exception& error) {
        LastError = "Fail! Plu: " + std::to_string(plu.ScaleNumber) + " \"" + plu.LabelName1 +
                    "\" " + FailureText(error);
        return false;
    }
}

void TScaleSession::UploadLines(const std::vector<std::string>& lines, const TScaleRec& rec,
                                TPLUD& plu) {
    const std::optional<TVersion> version = EnterProgramming();
    if (!version) throw std::runtime_error(std::string(kStopped));
    const std::string_view prefix = VersionPrefix(rec.ScaleType);
    if (!prefix.empty())
        view_.Log(std::string(prefix) + version->text + "; Max.PLU: " +
                  std::to_string(version->maxPlu) + "; Mode: " + std::to_string(version->mode));
    int written = 0;
    for (const std::string& line : lines) {
        if (stop_.IsStopped()) throw std::runtime_error(std::string(kStopped));
        if (ParseArticleLine(line, decimalSeparator_, plu) && UploadArticle(rec, *version, plu))
            ++written;
    }
    LeaveProgramming();
    view_.Log(std::string("   Брой записани артикули: "_cp1251) + std::to_string(written));
}

bool TScaleSession::UploadArticle(const TScaleRec& rec, const TVersion& version, TPLUD& plu) {
    const std::int32_t uncutScaleNumber = plu.ScaleNumber;
    plu.ScaleNumber = PluTail(uncutScaleNumber, version.maxPlu);
    if (plu.ScaleNumber == 0 || plu.ScaleNumber > version.maxPlu) return false;
    view_.SetProgress(ProgressText(plu));
    if (plu.PriceHundredths <= 0) return false;
    WritePrice(rec, plu);
    WriteTexts(rec, version, plu, uncutScaleNumber);
    return true;
}

void TScaleSession::WritePrice(const TScaleRec& rec, const TPLUD& plu) {
    const double price = plu.PriceHundredths / 100.0;
    std::int32_t errCode = 0;
    if (plu.WholeUnits && rec.ScaleType == kScaleTypeS300) {
        if (!driver_->SetPriceC(errCode, plu.ScaleNumber, price, true, plu.Reserved7, kPieceLabel))
            throw TFailure(CommandError("[SetPriceC]", errCode));
    } else if (!driver_->SetPrice(errCode, plu.ScaleNumber, price, plu.Reserved7)) {
        throw TFailure(CommandError("[SetPrice]", errCode));
    }
}

void TScaleSession::WriteTexts(const TScaleRec& rec, const TVersion& version, const TPLUD& plu,
                               std::int32_t uncutScaleNumber) {
    for (const TLabelText& text : LabelTexts()) {
        if (!IsSent(text, rec.ScaleType, version.mode)) continue;
        const std::uint8_t codeTable =
            text.raw ? kCodeTableRaw : static_cast<std::uint8_t>(rec.Encoding);
        std::int32_t errCode = 0;
        if (driver_->SetParam(errCode, plu.ScaleNumber, text.parameter,
                              text.text(plu, uncutScaleNumber), codeTable))
            continue;
        std::string operation = "[SetParam:" + std::to_string(text.parameter) + "][";
        operation += text.label;
        throw TFailure(CommandError(operation + "]", errCode));
    }
}

}  // namespace tolvane
