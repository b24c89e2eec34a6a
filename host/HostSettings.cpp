#include "host/HostSettings.h"

#include "config/IniFile.h"

namespace tolvane::host {

THostSettings ReadHostSettings(const std::filesystem::path& file) {
    constexpr const char* kSection = "Database";
    const TIniDocument document = ReadIniFile(file);
    const auto text = [&](const char* key, const char* otherwise) {
        return document.ReadText(kSection, key, otherwise);
    };
    return {text("Database", ""), text("User", "SYSDBA"), text("Password", ""), text("Role", ""),
            text("ClientLibrary", "")};
}

}  // namespace tolvane::host
