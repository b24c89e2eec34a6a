#include "tests/support/window/Layout.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
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
// What stands before and behind the text of a list's line or of a title.
constexpr int kAroundLine = 4;

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

SIZE SizeIn(HWND window, HGDIOBJ font, const std::wstring& text, LONG width) {
    const HDC dc = GetDC(window);
    const HGDIOBJ before = SelectObject(dc, font);
    RECT needed{0, 0, width, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed,
              DT_CALCRECT | DT_NOPREFIX | (width > 0 ? DT_WORDBREAK : 0U));
    SelectObject(dc, before);
    ReleaseDC(window, dc);
    return {needed.right, needed.bottom};
}

// The size of a text in the control's font, broken into lines of that width; 0: in one line.
SIZE SizeOfText(HWND control, const std::wstring& text, LONG width) {
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    return SizeIn(control, font, text, width);
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

// The messages by which a kind of control tells its lines.
struct TLineMessages {
    UINT count;
    UINT length;
    UINT text;
};

void ExpectEachLineFits(HWND control, const TLineMessages& messages, LONG room) {
    const LRESULT count = SendMessageW(control, messages.count, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto line = static_cast<WPARAM>(i);
        std::wstring text(static_cast<std::size_t>(SendMessageW(control, messages.length, line, 0)),
                          L'\0');
        SendMessageW(control, messages.text, line, reinterpret_cast<LPARAM>(text.data()));
        EXPECT_LE(SizeOfText(control, text, 0).cx, room) << Utf8(text);
    }
}

void ExpectItemsFit(HWND combo, const RECT& client) {
    ExpectEachLineFits(combo, {CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT},
                       client.right - GetSystemMetrics(SM_CXVSCROLL) - kButtonFrame);
}

void ExpectListBoxFits(HWND list, const RECT& client) {
    ExpectEachLineFits(list, {LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT}, client.right - kAroundLine);
}

void ExpectLinesFit(HWND list) {
    if ((StyleOf(list) & LVS_NOCOLUMNHEADER) == 0) return;
    for (int i = 0; i < ListView_GetItemCount(list); ++i) {
        std::array<wchar_t, 128> text{};
        LVITEMW item{};
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&item));
        RECT label{};
        ListView_GetItemRect(list, i, &label, LVIR_LABEL);
        EXPECT_LE(SizeOfText(list, text.data(), 0).cx + kAroundLine, label.right - label.left)
            << Utf8(text.data());
    }
}

void ExpectTabsFit(HWND tabs) {
    for (int i = 0; i < TabCtrl_GetItemCount(tabs); ++i) {
        std::array<wchar_t, 128> text{};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        RECT tab{};
        SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tab));
        const SIZE needed = SizeOfText(tabs, text.data(), 0);
        EXPECT_LE(needed.cx + kAroundLine, tab.right - tab.left) << Utf8(text.data());
        EXPECT_LE(needed.cy, tab.bottom - tab.top) << Utf8(text.data());
    }
}

void ExpectFixedEditFits(HWND edit) {
    if ((StyleOf(edit) & ES_READONLY) == 0 || (StyleOf(edit) & ES_MULTILINE) != 0) return;
    RECT room{};
    SendMessageW(edit, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    const SIZE needed = SizeOfText(edit, TextIn(edit), 0);
    EXPECT_LE(needed.cx, room.right - room.left) << ComponentNameOf(edit);
    EXPECT_LE(needed.cy, room.bottom - room.top) << ComponentNameOf(edit);
}

bool IsToolWindow(HWND window) {
    return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
}

// Beside its buttons and, where it has one, its icon.
void ExpectTitleFits(HWND window) {
    const LONG style = StyleOf(window);
    if ((style & WS_CAPTION) != WS_CAPTION) return;
    const bool isTool = IsToolWindow(window);
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HFONT font =
        CreateFontIndirectW(isTool ? &metrics.lfSmCaptionFont : &metrics.lfCaptionFont);
    const LONG needed = SizeIn(window, font, TextIn(window), 0).cx;
    DeleteObject(font);
    const int close = (style & WS_SYSMENU) != 0 ? 1 : 0;
    const int size = (style & (WS_MINIMIZEBOX | WS_MAXIMIZEBOX)) != 0 ? 2 : 0;
    const LONG taken = (close + size) * GetSystemMetrics(isTool ? SM_CXSMSIZE : SM_CXSIZE) +
                       (HasCaptionIcon(window) ? GetSystemMetrics(SM_CXSMICON) : 0) +
                       2 * GetSystemMetrics(SM_CXDLGFRAME) + kAroundLine;
    const RECT outer = PlaceOf(window);
    EXPECT_LE(needed + taken, outer.right - outer.left) << Utf8(TextIn(window));
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
    ExpectTitleFits(window);
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
        } else if (className == L"ListBox") {
            ExpectListBoxFits(control, client);
        } else if (className == WC_LISTVIEWW) {
            ExpectLinesFit(control);
        } else if (className == WC_TABCONTROLW) {
            ExpectTabsFit(control);
        } else if (className == L"Edit") {
            ExpectFixedEditFits(control);
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

void ExpectWholeLines(HWND list, int moreThan) {
    RECT line{LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&line));
    RECT client{};
    GetClientRect(list, &client);
    EXPECT_GT(client.bottom, moreThan * (line.bottom - line.top));
    EXPECT_EQ(client.bottom % (line.bottom - line.top), 0);
}

bool HasCaptionIcon(HWND window) {
    return !IsToolWindow(window) && GetClassLongPtrW(window, GCLP_HICON) != 0;
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
