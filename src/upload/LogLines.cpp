#include "upload/LogLines.h"

#include "config/TypesUnit.h"
#include "text/Cp1251.h"
#include "text/Joined.h"

namespace tolvane {
namespace {

std::string ArticleLine(std::string_view article, std::string_view fault, std::string_view choice) {
    return Joined({"  Артикул \""_cp1251, article, "\"", fault, choice});
}

std::string CountLine(std::string_view words, std::size_t articles) {
    return Joined({words, std::to_string(articles), " артикула."_cp1251});
}

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

}  // namespace

std::string SeparatorLine() {
    return "-----------------------------------------";
}

std::string NoScalesLine() {
    return std::string("Не е дефинирана нито една везна."_cp1251);
}

std::string NoScaleCheckedLine() {
    return std::string("Не е избрана нито една везна."_cp1251);
}

std::string StartLine(std::string_view scale) {
    return Joined({"Старт на запис във везна: "_cp1251, scale});
}

std::string ConnectedLine() {
    return std::string("Осъществена връзка с устройството за комуникация"_cp1251);
}

std::string WrittenLine(std::string_view scale) {
    return Joined({"Успешно записани артикули във везна: "_cp1251, scale});
}

std::string NotWrittenLine(std::string_view scale) {
    return Joined({"Грешка при запис артикули във везна: "_cp1251, scale});
}

std::string AllDeletedLine(std::string_view scale) {
    return Joined({"Успешно изтрити артикули от везна: "_cp1251, scale});
}

std::string NotAllDeletedLine(std::string_view scale) {
    return Joined({"Грешка при изтриване артикули от везна: "_cp1251, scale});
}

std::string WriteVersionLine(std::int32_t scaleType, const TScaleVersion& version) {
    const std::string_view prefix = VersionPrefix(scaleType);
    if (prefix.empty()) return {};
    return Joined({prefix, version.text, "; Max.PLU: ", std::to_string(version.maxPlu),
                   "; Mode: ", std::to_string(version.mode)});
}

std::string DeleteVersionLine(const TScaleVersion& version) {
    return Joined({"   - Ver: ", version.text, "; Max.PLU: ", std::to_string(version.maxPlu),
                   "; Mode:", std::to_string(version.mode)});
}

std::string WrittenCountLine(int written) {
    return Joined({"   Брой записани артикули: "_cp1251, std::to_string(written)});
}

std::string ProcessedCountLine(std::size_t articles) {
    return CountLine("Обработени "_cp1251, articles);
}

std::string ValidCountLine(std::size_t articles) {
    return CountLine("Валидни са "_cp1251, articles);
}

std::string OnlyValidLine() {
    return std::string("Ще бъдат записани само валидните артикули"_cp1251);
}

std::string NoBarcodeLine(std::string_view article) {
    return ArticleLine(article, " няма коректен баркод"_cp1251, {});
}

std::string NoNameLine(std::string_view article, std::string_view choice) {
    return ArticleLine(article, " няма коректно "_cp1251, choice);
}

std::string ZeroPriceLine(std::string_view article, std::string_view choice) {
    return ArticleLine(article, " има нулева "_cp1251, choice);
}

std::string IgnoredLine() {
    return std::string("  ->> и ще бъде игнориран"_cp1251);
}

std::string NotMarkableLine() {
    return std::string("  ->> и няма да може да бъде маркиран от везната"_cp1251);
}

}  // namespace tolvane
