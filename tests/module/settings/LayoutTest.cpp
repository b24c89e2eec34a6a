#include <gtest/gtest.h>

#include <windows.h>

#include "settings/forms/ScaleComunicationForm.h"
#include "settings/forms/uHint.h"
#include "tests/support/window/HintText.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

std::vector<HWND> Children(HWND window) {
    std::vector<HWND> children;
    for (HWND at = GetWindow(window, GW_CHILD); at != nullptr; at = GetWindow(at, GW_HWNDNEXT))
        children.push_back(at);
    return children;
}

RECT PlaceOf(HWND control) {
    RECT rect{};
    GetWindowRect(control, &rect);
    return rect;
}

SIZE NeededFor(HWND control) {
    const std::string utf8 = Utf8TextOf(control);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    RECT client{};
    GetClientRect(control, &client);
    const HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    RECT needed{0, 0, client.right, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed,
              DT_CALCRECT | DT_NOPREFIX | DT_WORDBREAK);
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    return {needed.right, needed.bottom};
}

bool IsGroupBox(HWND control) {
    return ClassOf(control) == L"Button" &&
           (GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

bool Overlap(const RECT& a, const RECT& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Expects that texts fit into the controls that draw them.
void ExpectTextsFit(HWND window) {
    for (const HWND control : Children(window)) {
        const std::wstring className = ClassOf(control);
        if (className != L"Static" && className != L"Button") continue;
        if (IsGroupBox(control)) continue;
        RECT client{};
        GetClientRect(control, &client);
        const SIZE needed = NeededFor(control);
        EXPECT_LE(needed.cx, client.right) << ComponentNameOf(control);
        EXPECT_LE(needed.cy, client.bottom) << ComponentNameOf(control);
    }
}

// Arrows lie inside the edit line that they belong to.
bool MayOverlap(HWND control) {
    return IsGroupBox(control) || ClassOf(control) == L"msctls_updown32";
}

// Expects that controls lie inside the window, and none over another.
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

class LayoutTest : public testing::Test {
protected:
    THostFrame host_;
    TDeviceSearch search_ = [](const std::atomic<bool>&, const TProbeReport&) {};
};

}  // namespace

TEST_F(LayoutTest, ConnectionDialog) {
    TfrmScaleSettings form(host_.Frame(), {}, {}, {},
                           {[](bool, std::vector<std::string>&) {}, search_});
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

TEST_F(LayoutTest, ButtonsOfOneLetterSayWhatTheyAreFor) {
    TfrmScaleSettings form(host_.Frame(), {}, {}, {},
                           {[](bool, std::vector<std::string>&) {}, search_});
    const auto hint = [&](const char* name) { return HintText(form.Handle(), name); };
    EXPECT_EQ(hint("btnRefreshComList"), "Прочитане отново на COM портовете");
    EXPECT_EQ(hint("btnFindDevices"), "Търсене на везни в мрежата");
    EXPECT_EQ(hint("btnHint"), "Помощ за настройката на връзката");
    EXPECT_EQ(hint("btnOk"), "");
}

TEST_F(LayoutTest, ScaleList) {
    const TScaleComunicationForm form(host_.Frame(), {}, SystemScaleListServices());
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

TEST_F(LayoutTest, FindDevices) {
    const TFindDevicesForm form(host_.Frame(), search_);
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

TEST_F(LayoutTest, Hint) {
    // The texts lie on the page control.
    const THintForm form(host_.Frame());
    ExpectTextsFit(form.Handle());
}

}  // namespace tolvane::test
