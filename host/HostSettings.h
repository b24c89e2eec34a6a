#pragma once

#include <filesystem>
#include <string>

namespace tolvane::host {

// Section [Database] of TradeHost.ini, in the program's folder. Texts are code page 1251.
struct THostSettings {
    std::string database;  // server/port:path
    std::string user;      // SYSDBA by default
    std::string password;
    std::string role;
    std::string clientLibrary;  // empty: fbclient.dll, then gds32.dll
};

// Throws TFileError (config/IniFile.h) when the file exists but cannot be read.
THostSettings ReadHostSettings(const std::filesystem::path& file);

}  // namespace tolvane::host
