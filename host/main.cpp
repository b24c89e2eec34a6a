// TradeHost.exe [--start N]: a small trade system that runs operation modules. --start N starts the
// operation with number N (its position in the menu, from 1 on) at once.

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostMenu.h"
#include "host/TradeHostForm.h"
#include "system/Library.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/Handles.h"
#include "window/MessageBoxes.h"

namespace tolvane::host {
namespace {

std::vector<std::wstring> Arguments() {
    int count = 0;
    const TOwned<THandleTraits<wchar_t**, &LocalFree>> words(
        CommandLineToArgvW(GetCommandLineW(), &count));
    if (!words) return {};
    return {words.Get() + std::min(count, 1), words.Get() + count};
}

// The number of the operation to start, 0 for no operation; nothing when the arguments are wrong.
std::optional<int> OperationToStart(const std::vector<std::wstring>& arguments) {
    if (arguments.empty()) return 0;
    if (arguments.size() != 2 || arguments[0] != L"--start") return std::nullopt;
    const int number = _wtoi(arguments[1].c_str());
    return number > 0 ? std::optional(number) : std::nullopt;
}

std::filesystem::path Program() {
    constexpr std::size_t kLongestPath = 32768;
    std::wstring name(kLongestPath, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

int RunMessages(const TTradeHostForm& form) {
    const TOwnedAccelerators keys = MakeHostAccelerators();
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (TranslateMDISysAccel(form.MdiClient(), &message) != 0) continue;
        if (TranslateAcceleratorW(form.Handle(), keys.Get(), &message) != 0) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

int Run(int show) {
    // When a library cannot be loaded, this program says so; the system must not show its own box.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    IgnoreLibrariesOfCurrentFolder();
    TTradeHostForm form(Program());
    form.Show(show);
    const std::optional<int> operation = OperationToStart(Arguments());
    if (!operation)
        ShowError(form.Handle(), "Непознати аргументи. Употреба: TradeHost.exe [--start N]"_cp1251);
    form.Connect();
    if (operation.value_or(0) != 0 && form.IsConnected()) form.StartOperation(*operation);
    return RunMessages(form);
}

}  // namespace
}  // namespace tolvane::host

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
    try {
        return tolvane::host::Run(show);
    } catch (const std::exception& error) {
        tolvane::ShowError(nullptr, tolvane::MessageOf(error));
        return 1;
    }
}
