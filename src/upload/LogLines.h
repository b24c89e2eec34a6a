#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "upload/ProgrammingMode.h"

namespace tolvane {

// Every line of a run's log, code page 1251; only a failure's own text comes from where it was
// found. `scale` is a scale's name, `article` an article's.

std::string SeparatorLine();
std::string NoScalesLine();
std::string NoScaleCheckedLine();

// Lines about one scale of a run.
std::string StartLine(std::string_view scale);
std::string ConnectedLine();
std::string WrittenLine(std::string_view scale);
std::string NotWrittenLine(std::string_view scale);
std::string AllDeletedLine(std::string_view scale);
std::string NotAllDeletedLine(std::string_view scale);

// Lines of the passes. A write pass has no version line, but an empty text, for a scale of an
// unknown type.
std::string WriteVersionLine(std::int32_t scaleType, const TScaleVersion& version);
std::string DeleteVersionLine(const TScaleVersion& version);
std::string WrittenCountLine(int written);

// Lines of the article line builder: the counts, and each article that it leaves out, in two lines.
// `choice` is the caption of the chosen name or price.
std::string ProcessedCountLine(std::size_t articles);
std::string ValidCountLine(std::size_t articles);
std::string OnlyValidLine();
std::string NoBarcodeLine(std::string_view article);
std::string NoNameLine(std::string_view article, std::string_view choice);
std::string ZeroPriceLine(std::string_view article, std::string_view choice);
std::string IgnoredLine();
std::string NotMarkableLine();

}  // namespace tolvane
