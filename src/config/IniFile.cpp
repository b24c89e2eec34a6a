#include "config/IniFile.h"

#include <system_error>

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

void Save(const path& target, std::string_view bytes) {
    RemoveLeftovers(target);
    if (ReadWholeFile(target).value_or(std::string()) == bytes) return;
    RequireWritable(target);
    ReplaceWholeFile(target, bytes);
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
