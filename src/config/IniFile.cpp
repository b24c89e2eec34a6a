#include "config/IniFile.h"

#include <system_error>
#include <vector>

#include "system/FileLock.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"

namespace tolvane {

namespace {

using std::filesystem::path;

TFileError ErrorOf(const path& file, std::string_view whatFailed, int number) {
    std::string text("Файлът "_cp1251);
    text += PathText(file) + ' ';
    text += whatFailed;
    text += ": " + SystemErrorText({number, std::system_category()});
    return TFileError(text);
}

void RemoveLeftovers(const path& target) {
    std::error_code ignored;
    std::vector<path> leftovers;
    const path folder = target.has_parent_path() ? target.parent_path() : path(".");
    std::filesystem::directory_iterator entry(folder, ignored);
    for (; !ignored && entry != std::filesystem::directory_iterator(); entry.increment(ignored)) {
        if (IsTemporaryOf(target, entry->path())) leftovers.push_back(entry->path());
    }
    for (const path& leftover : leftovers)
        RemoveLeftover(leftover);
}

void Replace(const path& target, std::string_view bytes) {
    constexpr int kTries = 3;  // another program may remove a new file as a leftover
    for (int i = 0; i < kTries; ++i) {
        TTemporaryFile temporary(target);
        temporary.Write(bytes);
        if (temporary.TakePlaceOfTarget()) return;
    }
    throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
}

void Save(const path& target, std::string_view bytes) {
    RemoveLeftovers(target);
    if (ReadWholeFile(target).value_or(std::string()) == bytes) return;
    RequireWritable(target);
    Replace(target, bytes);
}

}  // namespace

TIniDocument ReadIniFile(const path& file) {
    try {
        return TIniDocument(ReadWholeFile(file).value_or(std::string()));
    } catch (const std::system_error& error) {
        throw ErrorOf(file, "не може да бъде прочетен"_cp1251, error.code().value());
    }
}

void WriteIniFile(const path& file, const TIniDocument& document) {
    try {
        Save(ResolveLink(file), document.Bytes());
    } catch (const std::system_error& error) {
        throw ErrorOf(file, "не може да бъде записан"_cp1251, error.code().value());
    }
}

void UpdateIniFile(const path& file, const std::function<void(TIniDocument&)>& change) {
    const TFileLock lock(ResolveLink(file));
    TIniDocument document = ReadIniFile(file);
    change(document);
    WriteIniFile(file, document);
}

}  // namespace tolvane
