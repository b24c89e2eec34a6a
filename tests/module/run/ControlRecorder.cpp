#include "ControlRecorder.h"

#include <commctrl.h>

#include <cstddef>

#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane::test {

void TControlRecorder::Watch(HWND control, const char* name) {
    SetWindowSubclass(control, &Procedure, reinterpret_cast<UINT_PTR>(name),
                      reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK TControlRecorder::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR name, DWORD_PTR recorder) {
    reinterpret_cast<TControlRecorder*>(recorder)->Record(reinterpret_cast<const char*>(name), id,
                                                          wParam, lParam);
    if (id == WM_NCDESTROY) RemoveWindowSubclass(window, &Procedure, name);
    return DefSubclassProc(window, id, wParam, lParam);
}

void TControlRecorder::Record(const std::string& name, UINT id, WPARAM wParam, LPARAM lParam) {
    const auto* text = reinterpret_cast<const wchar_t*>(lParam);
    switch (id) {
        case WM_SETTEXT:
            events.push_back(name + ":" + ToUtf8(Narrow(text == nullptr ? L"" : text)));
            break;
        case EM_REPLACESEL:
            RecordLines(name, text);
            break;
        case WM_ENABLE:
            events.push_back(name + (wParam != 0 ? " on" : " off"));
            break;
        case WM_PAINT:
            ++paintings;
            break;
        default:
            break;
    }
}

void TControlRecorder::RecordLines(const std::string& name, std::wstring text) {
    for (std::size_t end = 0; (end = text.find(L"\r\n")) != std::wstring::npos;) {
        events.push_back(name + ">" + ToUtf8(Narrow(text.substr(0, end))));
        text.erase(0, end + 2);
    }
    if (!text.empty()) events.push_back(name + "+" + ToUtf8(Narrow(text)));
}

}  // namespace tolvane::test
