#include "command/Shop.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "config/IniFile.h"
#include "config/ScaleTable.h"
#include "database/Attachment.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"
#include "upload/RunScales.h"
#include "upload/RunSettings.h"

namespace tolvane {
namespace {

std::string Utf8Path(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool IsNamed(const TScaleRec& rec, const std::string& name) {
    if (const auto number = ParseInteger(name)) return rec.ScaleNumb == *number;
    return EqualIgnoringCase(rec.ScaleName.View(), FromUtf8(name));
}

std::string Listed(const std::vector<TScaleRec>& scales) {
    std::string text;
    for (const TScaleRec& rec : scales) {
        if (!text.empty()) text += ", ";
        text += std::to_string(rec.ScaleNumb) + " " + ToUtf8(rec.ScaleName.View());
    }
    return text;
}

// The first line of the file.
std::string ReadPassword(const std::filesystem::path& file) {
    if (file.empty()) return {};
    std::optional<std::string> text;
    try {
        text = ReadWholeFile(file);
    } catch (const std::system_error& error) {
        throw TUsageError("The password file " + Utf8Path(file) +
                          " cannot be read: " + error.code().message() + ".");
    }
    if (!text) throw TUsageError("There is no password file " + Utf8Path(file) + ".");
    return text->substr(0, text->find_first_of("\r\n"));
}

}  // namespace

TShop ReadShop(const TCommandOptions& options) {
    std::error_code error;
    const bool isThere = std::filesystem::exists(options.ini, error);
    if (error)
        throw TUsageError("The scale list " + Utf8Path(options.ini) +
                          " cannot be read: " + error.message() + ".");
    if (!isThere)
        throw TUsageError("There is no scale list " + Utf8Path(options.ini) +
                          ". Name the module's Tolvane.ini with --ini.");
    const TIniDocument document = ReadIniFile(options.ini);
    TScaleTable table;
    table.Load(document);
    TShop shop;
    for (const TScaleObj& item : RunItems(table))
        shop.scales.push_back(item.Rec);
    shop.choices = LoadRunSettings(document).choices;
    shop.choices.price = options.price.value_or(shop.choices.price);
    shop.choices.name1 = options.name1.value_or(shop.choices.name1);
    shop.choices.name2 = options.name2.value_or(shop.choices.name2);
    return shop;
}

std::vector<TScaleRec> ChosenScales(const std::vector<TScaleRec>& scales,
                                    const std::vector<std::string>& names) {
    if (scales.empty()) throw TUsageError("The scale list holds no scale.");
    for (const std::string& name : names) {
        const bool known = std::any_of(scales.begin(), scales.end(),
                                       [&](const TScaleRec& rec) { return IsNamed(rec, name); });
        if (!known)
            throw TUsageError("There is no scale \"" + name + "\". There are: " + Listed(scales) +
                              ".");
    }
    std::vector<TScaleRec> chosen;
    for (const TScaleRec& rec : scales) {
        const bool named = std::any_of(names.begin(), names.end(),
                                       [&](const std::string& name) { return IsNamed(rec, name); });
        if (names.empty() ? rec.Checked : named) chosen.push_back(rec);
    }
    if (chosen.empty())
        throw TUsageError(
            "No scale is checked in the scale list. Name one with --scale. There are: " +
            Listed(scales) + ".");
    return chosen;
}

std::vector<TScaleRec> ChosenScales(const TShop& shop, const TCommandOptions& options,
                                    TWorld& world) {
    std::vector<TScaleRec> chosen = ChosenScales(shop.scales, options.scales);
    if (options.verbose)
        world.err << Utf8Path(options.ini) << ": " << shop.scales.size()
                  << (shop.scales.size() == 1 ? " scale" : " scales")
                  << ", chosen: " << Listed(chosen) << std::endl;
    return chosen;
}

TArticleReading ReadShopArticles(const TCommandOptions& options, TWorld& world) {
    if (options.database.empty())
        throw TUsageError("No database is named. Name it with --database.");
    TAttachment attachment({.database = options.database,
                            .user = options.user,
                            .password = ReadPassword(options.passwordFile),
                            .clientLibrary = options.clientLibrary});
    if (options.createIndex) CreateArticleIndex(attachment.Library(), attachment.Handle());
    TArticleReading reading =
        ReadArticles(attachment.Library(), attachment.Handle(), world.localClock, world.regional);
    if (options.verbose)
        world.err << options.database << ": " << reading.articles.RowCount() << " articles read"
                  << std::endl;
    return reading;
}

}  // namespace tolvane
