#include "upload/ScaleSession.h"

#include <exception>
#include <string_view>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleLine.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

constexpr std::int32_t kNameParameter = 0;
// One character with code 0; the driver pads it with spaces.
constexpr std::string_view kClearedName("\0", 1);

}  // namespace

bool TScaleSession::ProcessDelete(const std::vector<std::string>& Lines) {
    if (driver_ == nullptr) return false;
    bool succeeded = false;
    try {
        if (!DeleteArticles(Lines)) {
            LastError = "Операцията прекратена от потребителя."_cp1251;
            return false;
        }
        succeeded = true;
    } catch (const std::exception& error) {
        LastError = "ProcessDelete >> " + FailureText(error);
    }
    LeaveProgramming();
    return succeeded;
}

bool TScaleSession::DeleteArticles(const std::vector<std::string>& lines) {
    const std::optional<TVersion> version = EnterProgramming();
    if (!version) return false;
    view_.Log("   - Ver: " + version->text + "; Max.PLU: " + std::to_string(version->maxPlu) +
              "; Mode:" + std::to_string(version->mode));
    return lines.empty() ? DeleteEverything(version->maxPlu) : DeleteListed(lines, version->maxPlu);
}

bool TScaleSession::DeleteEverything(std::int32_t maxPlu) {
    view_.SetProgress(std::string("Изтриване всички артикули."_cp1251));
    for (std::int32_t plu = 1; plu <= maxPlu; ++plu) {
        if (stop_.IsStopped()) return false;
        view_.SetProgress(std::string("Изтриване артикул #"_cp1251) + std::to_string(plu));
        std::int32_t errCode = 0;
        if (!driver_->SetPrice(errCode, plu, 0.0, 0.0))
            throw TFailure(CommandError("[SetPrice]", errCode));
        ClearName(plu);
    }
    return true;
}

bool TScaleSession::DeleteListed(const std::vector<std::string>& lines, std::int32_t maxPlu) {
    TPLUD plu;
    for (const std::string& line : lines) {
        if (stop_.IsStopped()) return false;
        if (!ParseArticleLine(line, decimalSeparator_, plu)) continue;
        plu.ScaleNumber = PluTail(plu.ScaleNumber, maxPlu);
        if (plu.ScaleNumber == 0 || plu.ScaleNumber > maxPlu) continue;
        view_.SetProgress(std::string("Изтриване артикул: "_cp1251) +
                          std::to_string(plu.ScaleNumber) + " " + plu.LabelName1);
        std::int32_t errCode = 0;
        if (!driver_->SetPrice(errCode, plu.ScaleNumber, 0.0))
            throw TFailure(CommandError("[SetPrice]", errCode));
        ClearName(plu.ScaleNumber);
    }
    return true;
}

void TScaleSession::ClearName(std::int32_t plu) {
    // An article without a price is deleted; a scale that keeps its name is no reason to stop.
    std::int32_t errCode = 0;
    driver_->SetParam(errCode, plu, kNameParameter, kClearedName, kCodeTableRaw);
}

}  // namespace tolvane
