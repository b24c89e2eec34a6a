#include "tests/support/window/Controls.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace tolvane::test {
namespace {

struct TNameSearch {
    std::string name;
    HWND found = nullptr;
};

BOOL CALLBACK CompareName(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TNameSearch*>(parameter);
    if (ComponentNameOf(window) == search.name) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
}

struct TClassSearch {
    const std::wstring& className;
    HWND found = nullptr;
};

BOOL CALLBACK CompareClass(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TClassSearch*>(parameter);
    if (IsWindowVisible(window) != 0 && ClassOf(window) == search.className) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
}

}  // namespace

std::string Utf8(const std::wstring& text) {
    std::string result(text.size() * 3, '\0');
    result.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

std::string Utf8TextOf(HWND window) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return Utf8(text);
}

std::wstring ClassOf(HWND window) {
    std::array<wchar_t, 256> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

HWND ThreadWindow(const std::wstring& className) {
    TClassSearch search{className};
    EnumThreadWindows(GetCurrentThreadId(), &CompareClass, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND Component(HWND parent, const std::string& name) {
    TNameSearch search{name};
    EnumChildWindows(parent, CompareName, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string ComponentNameOf(HWND window) {
    const auto* name = static_cast<const char*>(GetPropW(window, L"ComponentName"));
    return name == nullptr ? std::string() : std::string(name);
}

HWND ControlOf(HWND window, const std::string& name) {
    const HWND control = Component(window, name);
    EXPECT_NE(control, nullptr) << name;
    return control;
}

std::string TextOf(HWND window, const std::string& name) {
    return Utf8TextOf(ControlOf(window, name));
}

bool IsEnabledIn(HWND window, const std::string& name) {
    return IsWindowEnabled(ControlOf(window, name)) != 0;
}

std::vector<std::string> ComboItems(HWND window, const std::string& name) {
    const HWND combo = ControlOf(window, name);
    std::vector<std::string> items;
    const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        std::wstring text(static_cast<std::size_t>(
                              SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0)) +
                              1,
                          L'\0');
        text.resize(static_cast<std::size_t>(SendMessageW(
            combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()))));
        items.push_back(Utf8(text));
    }
    return items;
}

int ComboChoice(HWND window, const std::string& name) {
    return static_cast<int>(SendMessageW(ControlOf(window, name), CB_GETCURSEL, 0, 0));
}

bool IsRadioOn(HWND window, const std::string& name) {
    return SendMessageW(ControlOf(window, name), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

}  // namespace tolvane::test
