#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/IniDocument.h"

namespace tolvane::host {

// Section [Database] of TradeHost.ini, in the program's folder. Texts are code page 1251.
struct THostSettings {
    std::string database;  // server/port:path
    std::string user;      // SYSDBA by default
    std::string password;
    std::string role;
    std::string clientLibrary;  // empty: fbclient.dll, then gds32.dll
};

THostSettings ReadHostSettings(const TIniDocument& document);
// Writes which database is opened, by whom and with what password; the other settings stay.
void WriteLogin(const THostSettings& settings, TIniDocument& document);

inline constexpr std::size_t kLastDatabases = 5;
// The databases that were opened last, the latest first: section [Databases], keys "1" to "5".
std::vector<std::string> LastDatabases(const TIniDocument& document);
// Puts a database before the others; the oldest goes when there are too many.
void AddLastDatabase(std::string_view database, TIniDocument& document);

}  // namespace tolvane::host
