#include "tests/support/window/HintText.h"

#include <commctrl.h>

#include <array>

#include "tests/support/window/Controls.h"

namespace tolvane::test {
namespace {

struct THintSearch {
    HWND form;
    HWND control;
    std::string text;
};

BOOL CALLBACK LookForHint(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<THintSearch*>(parameter);
    if (ClassOf(window) != TOOLTIPS_CLASSW) return TRUE;
    std::array<wchar_t, 256> text{};
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = search.form;
    tool.uId = reinterpret_cast<UINT_PTR>(search.control);
    tool.lpszText = text.data();
    SendMessageW(window, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
    search.text = Utf8(text.data());
    return search.text.empty() ? TRUE : FALSE;
}

}  // namespace

std::string HintText(HWND form, const std::string& control) {
    THintSearch search{form, ControlOf(form, control), {}};
    EnumThreadWindows(GetCurrentThreadId(), &LookForHint, reinterpret_cast<LPARAM>(&search));
    return search.text;
}

}  // namespace tolvane::test
