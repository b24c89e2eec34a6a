#include "upload/ArticleWriter.h"

#include <string>
#include <string_view>

namespace tolvane {
namespace {

// The label of every article that an S300 scale sells by the piece.
constexpr std::int32_t kPieceLabel = 1;

}  // namespace

void FailCommand(const TElicomScale& scale, std::string_view command, std::int32_t errCode) {
    const std::string text = CommandError(scale, command, errCode);
    if (errCode != 0) throw TScaleRefusal(text);
    throw TFailure(text);
}

bool TArticleWriter::CutNumber(TPLUD& plu) const {
    plu.ScaleNumber = PluTail(plu.ScaleNumber, maxPlu_);
    return plu.ScaleNumber != 0 && plu.ScaleNumber <= maxPlu_;
}

bool TArticleWriter::Write(const TPLUD& plu, std::int32_t uncutScaleNumber,
                           const std::function<bool()>& goesOn) {
    WritePrice(plu);
    for (const TLabelText& text : LabelTexts()) {
        if (!IsSent(text, rec_.ScaleType, mode_)) continue;
        if (goesOn && !goesOn()) return false;
        WriteText(text, plu, uncutScaleNumber);
    }
    return true;
}

void TArticleWriter::WritePrice(const TPLUD& plu) {
    const double price = plu.PriceHundredths / 100.0;
    std::int32_t errCode = 0;
    if (plu.WholeUnits && rec_.ScaleType == kScaleTypeS300) {
        if (!scale_.SetPriceC(errCode, plu.ScaleNumber, price, true, plu.Reserved7, kPieceLabel))
            FailCommand(scale_, "[SetPriceC]", errCode);
    } else if (!scale_.SetPrice(errCode, plu.ScaleNumber, price, plu.Reserved7)) {
        FailCommand(scale_, "[SetPrice]", errCode);
    }
}

void TArticleWriter::WriteText(const TLabelText& text, const TPLUD& plu,
                               std::int32_t uncutScaleNumber) {
    const std::uint8_t codeTable =
        text.raw ? kCodeTableRaw : static_cast<std::uint8_t>(rec_.Encoding);
    std::int32_t errCode = 0;
    if (scale_.SetParam(errCode, plu.ScaleNumber, text.parameter, text.text(plu, uncutScaleNumber),
                        codeTable))
        return;
    std::string command = "[SetParam:" + std::to_string(text.parameter) + "][";
    command += text.label;
    FailCommand(scale_, command + "]", errCode);
}

}  // namespace tolvane
