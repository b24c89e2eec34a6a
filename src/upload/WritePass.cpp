#include "upload/WritePass.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleLine.h"
#include "upload/ArticleWriter.h"
#include "upload/LogLines.h"

namespace tolvane {
namespace {

constexpr std::string_view kStopped = "Операцията прекратена от петребителя."_cp1251;

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
    const std::optional<TScaleVersion> version = mode_.Enter();
    if (!version) throw std::runtime_error(std::string(kStopped));
    LogVersion(*version);
    TArticleWriter writer(parts_.scale, rec_, *version);
    int written = 0;
    parts_.StartArticles();
    for (const std::string& line : lines) {
        if (parts_.stop.IsStopped()) throw std::runtime_error(std::string(kStopped));
        if (ParseArticleLine(line, parts_.decimalSeparator, plu_) && WriteArticle(writer))
            ++written;
        parts_.ArticleDone();
    }
    mode_.Leave();
    parts_.view.Log(WrittenCountLine(written));
}

void TWritePass::LogVersion(const TScaleVersion& version) {
    const std::string line = WriteVersionLine(rec_.ScaleType, version);
    if (!line.empty()) parts_.view.Log(line);
}

bool TWritePass::WriteArticle(TArticleWriter& writer) {
    const std::int32_t uncutScaleNumber = plu_.ScaleNumber;
    if (!writer.CutNumber(plu_)) return false;
    parts_.view.SetProgress(ProgressText(plu_));
    if (plu_.PriceHundredths <= 0) return false;
    writer.Write(plu_, uncutScaleNumber);
    return true;
}

}  // namespace tolvane
