#include "host/HostSettings.h"

#include <algorithm>

namespace tolvane::host {
namespace {

constexpr const char* kDatabase = "Database";
constexpr const char* kDatabases = "Databases";

}  // namespace

THostSettings ReadHostSettings(const TIniDocument& document) {
    const auto text = [&](const char* key, const char* otherwise) {
        return document.ReadText(kDatabase, key, otherwise);
    };
    return {text("Database", ""), text("User", "SYSDBA"), text("Password", ""), text("Role", ""),
            text("ClientLibrary", "")};
}

void WriteLogin(const THostSettings& settings, TIniDocument& document) {
    document.WriteText(kDatabase, "Database", settings.database);
    document.WriteText(kDatabase, "User", settings.user);
    document.WriteText(kDatabase, "Password", settings.password);
}

std::vector<std::string> LastDatabases(const TIniDocument& document) {
    std::vector<std::string> databases;
    for (std::size_t number = 1; number <= kLastDatabases; ++number) {
        std::string database = document.ReadText(kDatabases, std::to_string(number), "");
        if (!database.empty()) databases.push_back(std::move(database));
    }
    return databases;
}

void AddLastDatabase(std::string_view database, TIniDocument& document) {
    std::vector<std::string> databases = LastDatabases(document);
    std::erase(databases, database);
    databases.emplace(databases.begin(), database);
    databases.resize(std::min(databases.size(), kLastDatabases));
    for (std::size_t i = 0; i < databases.size(); ++i)
        document.WriteText(kDatabases, std::to_string(i + 1), databases[i]);
}

}  // namespace tolvane::host
