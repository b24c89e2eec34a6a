#include "command/Shop.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "command/DatabaseWait.h"
#include "command/DatabaseWatch.h"
#include "command/NamedFile.h"
#include "config/IniDocument.h"
#include "database/Attachment.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"
#include "upload/RunSettings.h"

namespace tolvane {
namespace {

bool IsNamed(const TScaleRec& rec, const std::string& name) {
    if (const auto number = ParseInteger(name)) return rec.ScaleNumb == *number;
    return EqualIgnoringCase(rec.ScaleName.View(), FromUtf8(name));
}

bool IsNamed(const std::vector<TListedScale>& scales, const std::string& name) {
    return std::any_of(scales.begin(), scales.end(),
                       [&](const TListedScale& scale) { return IsNamed(scale.rec, name); });
}

// The parts between commas; of a text that has none, the text.
std::vector<std::string> PartsOf(const std::string& text) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');)
        if (const std::string_view name = Trim(part); !name.empty()) parts.emplace_back(name);
    return parts.empty() ? std::vector{text} : parts;
}

// A name may hold commas itself.
std::vector<std::string> NamesOf(const std::vector<TListedScale>& scales,
                                 const std::vector<std::string>& values) {
    std::vector<std::string> names;
    for (const std::string& value : values) {
        const std::vector<std::string> parts =
            IsNamed(scales, value) ? std::vector{value} : PartsOf(value);
        names.insert(names.end(), parts.begin(), parts.end());
    }
    return names;
}

std::string Listed(const std::vector<TListedScale>& scales) {
    std::string text;
    for (const auto& [rec, fault, cure] : scales) {
        if (!text.empty()) text += ", ";
        text += std::to_string(rec.ScaleNumb) + " " + ToUtf8(rec.ScaleName.View());
    }
    return text;
}

// The first line of the file, without the mark that some editors put before UTF-8.
std::string ReadPassword(const std::filesystem::path& file) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (file.empty()) return {};
    const std::optional<std::string> text = ReadNamedFile("password file", file);
    if (!text) throw TUsageError("There is no password file " + Utf8Path(file) + ".");
    const std::size_t begin = text->starts_with(kMark) ? kMark.size() : 0;
    return text->substr(begin, text->find_first_of("\r\n") - begin);
}

// Opens the database, reads it, and closes it.
TArticleReading ReadDatabase(const TCommandOptions& options, TWorld& world, TDatabaseWatch& watch) {
    const TDatabaseLogin login{.database = options.database,
                               .user = options.user,
                               .password = ReadPassword(options.passwordFile),
                               .clientLibrary = options.clientLibrary};
    TAttachment attachment =
        TDatabaseWait(options, world, watch).WhenFree([&] { return TAttachment(login); });
    if (options.createIndex) {
        watch.Follow(nullptr);
        CreateArticleIndex(attachment.Library(), attachment.Handle());
    }
    watch.Follow(attachment.Library().Calls());
    return ReadArticles(attachment.Library(), attachment.Handle(), world.localClock,
                        world.regional);
}

}  // namespace

TShop ReadShop(const TCommandOptions& options) {
    const std::optional<std::string> bytes = ReadNamedFile("scale list", options.ini);
    if (!bytes)
        throw TUsageError("There is no scale list " + Utf8Path(options.ini) +
                          ". Name the module's Tolvane.ini with --ini.");
    const TIniDocument document(*bytes);
    TShop shop;
    shop.scales = ListedScales(document);
    if (shop.scales.empty())
        throw TUsageError("The scale list " + Utf8Path(options.ini) +
                          " holds no scale: it has none of the sections SCALE1 to SCALE20.");
    shop.choices = LoadRunSettings(document).choices;
    shop.choices.price = options.price.value_or(shop.choices.price);
    shop.choices.name1 = options.name1.value_or(shop.choices.name1);
    shop.choices.name2 = options.name2.value_or(shop.choices.name2);
    return shop;
}

std::vector<TListedScale> ChosenScales(const std::vector<TListedScale>& scales,
                                       const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (!IsNamed(scales, name))
            throw TUsageError("There is no scale \"" + name + "\". There are: " + Listed(scales) +
                              ".");
    std::vector<TListedScale> chosen;
    for (const TListedScale& scale : scales) {
        const bool named = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return IsNamed(scale.rec, name);
        });
        if (names.empty() ? scale.rec.Checked : named) chosen.push_back(scale);
    }
    if (chosen.empty())
        throw TUsageError(
            "No scale is checked in the scale list. Name one with --scale. There are: " +
            Listed(scales) + ".");
    return chosen;
}

std::vector<TListedScale> ChosenScales(const TShop& shop, const TCommandOptions& options,
                                       TWorld& world) {
    std::vector<TListedScale> chosen =
        ChosenScales(shop.scales, NamesOf(shop.scales, options.scales));
    if (options.verbose)
        world.err << Utf8Path(options.ini) << ": " << shop.scales.size()
                  << (shop.scales.size() == 1 ? " scale" : " scales")
                  << ", chosen: " << Listed(chosen) << std::endl;
    return chosen;
}

TArticleReading ReadShopArticles(const TCommandOptions& options, TWorld& world) {
    if (options.database.empty())
        throw TUsageError("No database is named. Name it with --database.");
    std::optional<TDatabaseWatch> watch(std::in_place, options, world);
    TArticleReading reading = ReadDatabase(options, world, *watch);
    // It may write to the same stream.
    watch.reset();
    if (options.verbose)
        world.err << options.database << ": " << reading.articles.RowCount() << " articles read"
                  << std::endl;
    return reading;
}

}  // namespace tolvane
