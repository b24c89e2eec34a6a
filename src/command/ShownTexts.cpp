#include "command/ShownTexts.h"

#include <algorithm>
#include <cstddef>

#include "comm/DevCommBaseUnit.h"
#include "scale/TextLengths.h"
#include "text/Cp1251.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

// What comes back out of a scale's code table.
std::string ThroughCodeTable(const std::string& text, std::uint8_t codeTable) {
    TCmdBuffer bytes;
    TDevCommBase::TextToBytes(text, static_cast<std::int32_t>(text.size()), codeTable, bytes);
    return TDevCommBase::BytesToText(bytes, 0, static_cast<std::uint8_t>(bytes.size()), codeTable);
}

void AddLost(const std::string& cut, TShownText& shown) {
    if (shown.shown.size() != cut.size()) {
        shown.lost = cut;
        return;
    }
    for (std::size_t i = 0; i < cut.size(); ++i)
        if (cut[i] != shown.shown[i] && shown.lost.find(cut[i]) == std::string::npos)
            shown.lost += cut[i];
}

TShownText Shown(const TLabelText& text, std::string wanted, const TScaleRec& rec) {
    TShownText shown{
        .parameter = text.parameter, .label = std::string(text.label), .wanted = wanted};
    if (const auto length = ParameterLength(text.parameter, rec.ScaleType)) {
        shown.isCut = wanted.size() > static_cast<std::size_t>(*length);
        if (shown.isCut) wanted.resize(static_cast<std::size_t>(*length));
    }
    shown.shown = ThroughCodeTable(wanted, static_cast<std::uint8_t>(rec.Encoding));
    AddLost(wanted, shown);
    return shown;
}

// The days as a number; they travel as bytes.
TShownText ShownDays(const TLabelText& text, std::int32_t days) {
    const std::string number = std::to_string(days);
    return {.parameter = text.parameter,
            .label = std::string(text.label),
            .wanted = number,
            .shown = number};
}

}  // namespace

std::vector<TShownText> ShownTexts(const TPLUD& plu, std::int32_t uncutScaleNumber,
                                   const TScaleRec& rec, const TScaleVersion& version) {
    std::vector<TShownText> texts;
    for (const TLabelText& text : LabelTexts()) {
        if (!IsSent(text, rec.ScaleType, version.mode)) continue;
        if (text.raw)
            texts.push_back(ShownDays(text, plu.BestBeforeDays));
        else
            texts.push_back(Shown(text, text.text(plu, uncutScaleNumber), rec));
    }
    return texts;
}

}  // namespace tolvane
