#include "host/OperationModule.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

template <class Function>
Function Export(HMODULE library, const char* name) {
    const auto function =
        reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    if (function == nullptr) throw std::runtime_error(std::string("няма функция "_cp1251) + name);
    return function;
}

// A text as a module returns it: the length is four bytes before the characters.
std::string TextOf(const char* characters) {
    if (characters == nullptr) return {};
    std::int32_t length = 0;
    std::memcpy(&length, characters - 4, sizeof length);
    return {characters, static_cast<std::size_t>(std::max(length, 0))};
}

std::string ModuleFailure(DWORD error) {
    switch (error) {
        case ERROR_BAD_EXE_FORMAT:
            return std::string("не е 32-битова библиотека за Windows"_cp1251);
        case ERROR_MOD_NOT_FOUND:
            return std::string("липсва библиотека, от която се нуждае"_cp1251);
        default:
            return WindowsErrorText(error);
    }
}

std::vector<std::filesystem::path> LibrariesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    std::filesystem::directory_iterator at(folder, error);
    for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        if (EqualIgnoringCase(Narrow(at->path().extension().wstring()), ".dll"))
            files.push_back(at->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string AskText(void(TOLVANE_STDCALL* function)(const char**)) {
    const char* text = nullptr;
    function(&text);
    return TextOf(text);
}

// A text of the host that a module may read for as long as it is loaded.
const char* ModuleString() {
    struct TText {
        THostTextHeader header{1251, 1, -1, 9};
        char characters[10] = "TradeHost";
    };
    static const TText kText;
    return kText.characters;
}

}  // namespace

TOperationModule::TOperationModule(const std::filesystem::path& file, std::int32_t number)
    : file_(file),
      library_(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)),
      number_(number) {
    if (!library_) throw std::runtime_error(ModuleFailure(GetLastError()));
    const HMODULE library = library_.Get();
    const auto askTitle = Export<TGetOperationTitle>(library, "GetOperationTitle");
    const auto askType = Export<TGetOperationType>(library, "GetOperationType");
    const auto setString = Export<TSetTQ4ModuleString>(library, "SetTQ4ModuleString");
    procedure_ = Export<TOperationProcedure>(library, "OperationProcedure");
    const std::string type = AskText(askType);
    if (type != "Operation")
        throw std::runtime_error(std::string("видът на модула е \""_cp1251) + type + "\"");
    title_ = AskText(askTitle);
    setString(ModuleString(), number);
}

void TOperationModule::Start(HWND frame, std::uint32_t& messageId, const THostDatabase& database,
                             TPrintProc print) const {
    procedure_(frame, number_, &messageId, frame, &database, nullptr, print);
}

TFoundModules FindModules(const std::filesystem::path& folder) {
    TFoundModules found;
    for (const std::filesystem::path& file : LibrariesIn(folder)) {
        try {
            found.modules.emplace_back(file, static_cast<std::int32_t>(found.modules.size()) + 1);
        } catch (const std::exception& error) {
            found.refused.push_back(Narrow(file.filename().wstring()) + ": " + MessageOf(error));
        }
    }
    return found;
}

}  // namespace tolvane::host
