#include "window/Hints.h"

#include <commctrl.h>

#include <string>

#include "window/Module.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {

void THints::Add(HWND form, HWND control, std::string_view text) {
    if (!window_) {
        const TVisualStyleScope style;
        window_.Reset(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                      WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr,
                                      ModuleInstance(), nullptr));
        if (!window_) throw TWindowError("CreateWindowEx: " + WindowsErrorText(GetLastError()));
    }
    std::wstring wide = Wide(text);
    TTTOOLINFOW tool{};
    // The plain controls know no longer form of it.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = wide.data();
    SendMessageW(window_.Get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace tolvane
