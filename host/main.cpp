// TradeHost.exe [--start N]: a small trade system that runs operation modules. --start N starts the
// operation with place N in the menu (from 1 up) at once.

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <exception>
#include <filesystem>
#include <string_view>

#include "host/TradeHostForm.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/VisualStyle.h"

namespace tolvane::host {
namespace {

// The operation that the command line asks for; 0 for none.
int OperationToStart() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    int place = 0;
    for (int i = 1; i + 1 < count; ++i) {
        if (std::wstring_view(words[i]) == L"--start") place = _wtoi(words[i + 1]);
    }
    LocalFree(static_cast<void*>(words));
    return place;
}

std::filesystem::path Program() {
    std::array<wchar_t, 32768> name{};
    GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    return name.data();
}

int Run(int show) {
    const TVisualStyleScope style;
    TTradeHostForm form(Program());
    ShowWindow(form.Handle(), show);
    UpdateWindow(form.Handle());
    form.Connect();
    if (const int place = OperationToStart(); place != 0) form.StartOperation(place);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (TranslateMDISysAccel(form.MdiClient(), &message) != 0) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace
}  // namespace tolvane::host

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
    try {
        return tolvane::host::Run(show);
    } catch (const std::exception& error) {
        tolvane::ShowError(nullptr, error.what());
        return 1;
    }
}
