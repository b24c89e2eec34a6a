#include "tests/support/window/Layout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/window/Controls.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

// What a frame takes of a push button's width, and what stands before a group's caption.
constexpr int kButtonFrame = 6;
constexpr int kBeforeCaption = 9;

// Those that are not hidden.
std::vector<HWND> Children(HWND window) {
    std::vector<HWND> children;
    for (HWND at = GetWindow(window, GW_CHILD); at != nullptr; at = GetWindow(at, GW_HWNDNEXT)) {
        if ((GetWindowLongW(at, GWL_STYLE) & WS_VISIBLE) != 0) children.push_back(at);
    }
    return children;
}

RECT PlaceOf(HWND control) {
    RECT rect{};
    GetWindowRect(control, &rect);
    return rect;
}

// The size of a text in the control's font, broken into lines of that width; 0: in one line.
SIZE SizeOfText(HWND control, const std::wstring& text, LONG width) {
    const HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    RECT needed{0, 0, width, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed,
              DT_CALCRECT | DT_NOPREFIX | (width > 0 ? DT_WORDBREAK : 0U));
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    return {needed.right, needed.bottom};
}

std::wstring TextIn(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

LONG StyleOf(HWND control) {
    return GetWindowLongW(control, GWL_STYLE);
}

bool IsGroupBox(HWND control) {
    return ClassOf(control) == L"Button" && (StyleOf(control) & BS_TYPEMASK) == BS_GROUPBOX;
}

// A check box or radio button.
bool HasMark(HWND control) {
    const LONG type = StyleOf(control) & BS_TYPEMASK;
    return type == BS_AUTOCHECKBOX || type == BS_AUTORADIOBUTTON;
}

void ExpectLabelFits(HWND label, const RECT& client) {
    // A line is a label without a text, and without a font of its own.
    if (TextIn(label).empty()) return;
    const SIZE needed = SizeOfText(label, TextIn(label), client.right);
    EXPECT_LE(needed.cx, client.right) << ComponentNameOf(label);
    EXPECT_LE(needed.cy, client.bottom) << ComponentNameOf(label);
}

void ExpectButtonFits(HWND button, const RECT& client) {
    const SIZE needed = SizeOfText(button, TextIn(button), 0);
    const LONG frame = HasMark(button) ? GetSystemMetrics(SM_CXMENUCHECK) + 4 : kButtonFrame;
    EXPECT_LE(needed.cx + frame, client.right) << ComponentNameOf(button);
    EXPECT_LE(needed.cy, client.bottom) << ComponentNameOf(button);
}

void ExpectItemsFit(HWND combo, const RECT& client) {
    const LONG room = client.right - GetSystemMetrics(SM_CXVSCROLL) - kButtonFrame;
    const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto item = static_cast<WPARAM>(i);
        std::wstring text(static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, item, 0)),
                          L'\0');
        SendMessageW(combo, CB_GETLBTEXT, item, reinterpret_cast<LPARAM>(text.data()));
        EXPECT_LE(SizeOfText(combo, text, 0).cx, room) << Utf8(text);
    }
}

bool Overlap(const RECT& a, const RECT& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Arrows lie inside the edit line that they belong to.
bool MayOverlap(HWND control) {
    return IsGroupBox(control) || ClassOf(control) == L"msctls_updown32";
}

}  // namespace

void ExpectTextsFit(HWND window) {
    for (const HWND control : Children(window)) {
        RECT client{};
        GetClientRect(control, &client);
        const std::wstring className = ClassOf(control);
        if (IsGroupBox(control)) {
            const SIZE needed = SizeOfText(control, TextIn(control), 0);
            EXPECT_LE(needed.cx + 2 * kBeforeCaption, client.right) << ComponentNameOf(control);
        } else if (className == L"Static") {
            ExpectLabelFits(control, client);
        } else if (className == L"Button") {
            ExpectButtonFits(control, client);
        } else if (className == L"ComboBox") {
            ExpectItemsFit(control, client);
        }
    }
}

void ExpectControlsApart(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const std::vector<HWND> children = Children(window);
    for (std::size_t i = 0; i < children.size(); ++i) {
        const RECT a = PlaceOf(children[i]);
        EXPECT_TRUE(a.left >= client.left && a.top >= client.top && a.right <= client.right &&
                    a.bottom <= client.bottom)
            << ComponentNameOf(children[i]);
        for (std::size_t j = i + 1; j < children.size(); ++j) {
            const bool mayOverlap = MayOverlap(children[i]) || MayOverlap(children[j]);
            EXPECT_TRUE(mayOverlap || !Overlap(a, PlaceOf(children[j])))
                << ComponentNameOf(children[i]) << " and " << ComponentNameOf(children[j]);
        }
    }
}

std::vector<TControlPlace> ControlPlaces(HWND window) {
    std::vector<TControlPlace> places;
    for (const HWND control : Children(window)) {
        TControlPlace place{ComponentNameOf(control), PlaceOf(control)};
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place.place), 2);
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font,
                   &font);
        place.letters = std::abs(font.lfHeight);
        places.push_back(place);
    }
    return places;
}

void TellDpi(HWND window, int dotsPerInch) {
    RECT place{};
    GetWindowRect(window, &place);
    SendMessageW(window, WM_DPICHANGED,
                 MAKEWPARAM(static_cast<WORD>(dotsPerInch), static_cast<WORD>(dotsPerInch)),
                 reinterpret_cast<LPARAM>(&place));
}

void ExpectFollowsMonitors(HWND window, bool controlsApart) {
    const int system = TDpi::System().DotsPerInch();
    const std::vector<TControlPlace> before = ControlPlaces(window);
    const RECT outer = PlaceOf(window);
    for (const int dotsPerInch : {120, 144, 192}) {
        // No window gets larger than the screen.
        if (MulDiv(outer.bottom - outer.top, dotsPerInch, system) > GetSystemMetrics(SM_CYSCREEN) ||
            MulDiv(outer.right - outer.left, dotsPerInch, system) > GetSystemMetrics(SM_CXSCREEN))
            continue;
        TellDpi(window, dotsPerInch);
        const std::vector<TControlPlace> now = ControlPlaces(window);
        ASSERT_EQ(now.size(), before.size());
        EXPECT_EQ(now[0].letters, MulDiv(8, dotsPerInch, 72)) << now[0].name;
        ExpectTextsFit(window);
        if (controlsApart) ExpectControlsApart(window);
    }
    TellDpi(window, system);
    const std::vector<TControlPlace> after = ControlPlaces(window);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
        EXPECT_EQ(after[i].letters, before[i].letters) << after[i].name;
        EXPECT_NEAR(after[i].place.left, before[i].place.left, 1) << after[i].name;
        EXPECT_NEAR(after[i].place.top, before[i].place.top, 1) << after[i].name;
        EXPECT_NEAR(after[i].place.right, before[i].place.right, 2) << after[i].name;
        // Some lists end with a whole line, which may be a pixel higher with its check box.
        EXPECT_NEAR(after[i].place.bottom, before[i].place.bottom, before[i].letters)
            << after[i].name;
    }
}

}  // namespace tolvane::test
