#include "host/SqlScript.h"

#include <algorithm>
#include <cstddef>

#include "text/Cp1251.h"

namespace tolvane::host {
namespace {

// Behind the text in quotes that begins at `at`. A doubled quote ends one text and begins another,
// which comes to the same.
std::size_t EndOfText(std::string_view script, std::size_t at) {
    return std::min(script.find(script[at], at + 1), script.size() - 1) + 1;
}

}  // namespace

std::vector<std::string> SqlStatements(std::string_view script) {
    std::vector<std::string> statements;
    std::string statement;
    const auto end = [&] {
        const std::string_view trimmed = Trim(statement);
        if (!trimmed.empty()) statements.emplace_back(trimmed);
        statement.clear();
    };
    std::size_t at = 0;
    while (at < script.size()) {
        const char c = script[at];
        if (script.substr(at).starts_with("--")) {
            at = std::min(script.find('\n', at), script.size());
        } else if (c == '\'' || c == '"') {
            const std::size_t next = EndOfText(script, at);
            statement += script.substr(at, next - at);
            at = next;
        } else {
            if (c == ';')
                end();
            else
                statement += c;
            ++at;
        }
    }
    end();
    return statements;
}

}  // namespace tolvane::host
