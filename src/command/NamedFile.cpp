#include "command/NamedFile.h"

#include <system_error>

#include "command/UsageError.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"

namespace tolvane {

std::optional<std::string> ReadNamedFile(const std::string& what,
                                         const std::filesystem::path& file) {
    try {
        return ReadWholeFile(file);
    } catch (const std::system_error& error) {
        throw TUsageError("The " + what + " " + Utf8Path(file) +
                          " cannot be read: " + ToUtf8(SystemErrorText(error.code())) + ".");
    }
}

std::string Utf8Path(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace tolvane
