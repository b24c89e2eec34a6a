#include "upload/DeletePass.h"

#include <algorithm>
#include <exception>
#include <optional>

#include "config/TypesUnit.h"
#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleDelete.h"
#include "upload/ArticleLine.h"
#include "upload/LabelTexts.h"
#include "upload/LogLines.h"

namespace tolvane {
namespace {

// An article without a price counts as deleted, so a pass goes on when a scale keeps the name.
void DeleteInPass(TElicomScale& scale, std::int32_t plu, TDeleteForm form) {
    std::int32_t errCode = 0;
    DeleteArticle(scale, plu, form, errCode);
}

}  // namespace

TDeletePass::TDeletePass(const TPassParts& parts)
    : parts_(parts), mode_(parts.scale, parts.clock, parts.stop) {}

bool TDeletePass::Run(const std::vector<std::string>& lines) {
    try {
        if (!Delete(lines)) {
            LastError = "Операцията прекратена от потребителя."_cp1251;
            return false;
        }
    } catch (const std::exception& error) {
        // First the scale: there may be no memory for the text.
        mode_.Leave();
        LastError = "ProcessDelete >> " + FailureText(error);
        return false;
    }
    mode_.Leave();
    return true;
}

bool TDeletePass::Delete(const std::vector<std::string>& lines) {
    const std::optional<TScaleVersion> version = mode_.Enter();
    if (!version) return false;
    parts_.view.Log(DeleteVersionLine(*version));
    return lines.empty() ? DeleteEverything(version->maxPlu) : DeleteListed(lines, version->maxPlu);
}

bool TDeletePass::DeleteEverything(std::int32_t maxPlu) {
    parts_.view.SetProgress(std::string("Изтриване всички артикули."_cp1251));
    parts_.progress.WholeScaleHas(static_cast<std::size_t>(std::max(maxPlu, 0)));
    parts_.StartArticles();
    for (std::int32_t plu = 1; plu <= maxPlu; ++plu) {
        if (parts_.stop.IsStopped()) return false;
        parts_.view.SetProgress(std::string("Изтриване артикул #"_cp1251) + std::to_string(plu));
        DeleteInPass(parts_.scale, plu, TDeleteForm::Numbered);
        parts_.ArticleDone();
    }
    return true;
}

bool TDeletePass::DeleteListed(const std::vector<std::string>& lines, std::int32_t maxPlu) {
    parts_.StartArticles();
    for (const std::string& line : lines) {
        if (parts_.stop.IsStopped()) return false;
        DeleteLine(line, maxPlu);
        parts_.ArticleDone();
    }
    return true;
}

void TDeletePass::DeleteLine(const std::string& line, std::int32_t maxPlu) {
    TPLUD plu;
    if (!ParseArticleLine(line, parts_.decimalSeparator, plu)) return;
    plu.ScaleNumber = PluTail(plu.ScaleNumber, maxPlu);
    if (plu.ScaleNumber == 0 || plu.ScaleNumber > maxPlu) return;
    parts_.view.SetProgress(std::string("Изтриване артикул: "_cp1251) +
                            std::to_string(plu.ScaleNumber) + " " + plu.LabelName1);
    DeleteInPass(parts_.scale, plu.ScaleNumber, TDeleteForm::Listed);
}

}  // namespace tolvane
