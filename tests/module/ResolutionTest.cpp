#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/module/Screenshot.h"
#include "tests/module/Session.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

// Runs at whatever resolution the system has; the sizes are those of 96 dots per inch, scaled.
class ResolutionTest : public testing::Test {
protected:
    ResolutionTest() { session_.Start(); }

    int Scaled(int at96) const { return dpi_.Scale(at96); }
    SIZE SizeOf(const std::string& name) const {
        RECT rect{};
        GetClientRect(session_.Control(name), &rect);
        return {rect.right, rect.bottom};
    }
    std::string Suffix() const { return "-" + std::to_string(dpi_.DotsPerInch()); }

    TDpi dpi_ = TDpi::System();
    TSession session_;
};

}  // namespace

TEST_F(ResolutionTest, TheListWindowHasItsSize) {
    RECT client{};
    GetClientRect(session_.List(), &client);
    EXPECT_EQ(client.right, Scaled(605));
    EXPECT_EQ(client.bottom, Scaled(305));
    SaveScreenshot(session_.host.Frame(), "list-at" + Suffix());
}

TEST_F(ResolutionTest, TheButtonsHaveTheirSizes) {
    EXPECT_EQ(SizeOf("SearchButton").cx, Scaled(180));
    EXPECT_EQ(SizeOf("SaveButton").cx, Scaled(242));
    EXPECT_EQ(SizeOf("SearchMenuButton").cx, Scaled(24));
    EXPECT_EQ(SizeOf("RefreshBtn").cx, Scaled(88));
    EXPECT_EQ(SizeOf("RefreshBtn").cy, Scaled(25));
}

TEST_F(ResolutionTest, TypeAndRowsFollowTheResolution) {
    const auto font =
        reinterpret_cast<HFONT>(SendMessageW(session_.Grid().Handle(), WM_GETFONT, 0, 0));
    LOGFONTW description{};
    GetObjectW(font, sizeof description, &description);
    EXPECT_EQ(description.lfHeight, -MulDiv(8, dpi_.DotsPerInch(), 72));  // 8 points
    EXPECT_STREQ(description.lfFaceName, L"Tahoma");
    RECT row{LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(session_.Grid().Handle(), LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
    EXPECT_EQ(row.bottom - row.top, Scaled(18));
    EXPECT_EQ(session_.Grid().ColumnWidth(28), Scaled(126));
}

TEST_F(ResolutionTest, EveryCaptionFitsItsButton) {
    for (const char* name : {"SearchButton", "RefreshBtn", "ColBtn", "PrintBtn", "btnCloseBtn"}) {
        const HWND button = session_.Control(name);
        const HDC dc = GetDC(button);
        const HGDIOBJ before =
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(button, WM_GETFONT, 0, 0)));
        std::wstring text(128, L'\0');
        text.resize(static_cast<std::size_t>(
            GetWindowTextW(button, text.data(), static_cast<int>(text.size()))));
        SIZE size{};
        GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
        SelectObject(dc, before);
        ReleaseDC(button, dc);
        EXPECT_LT(size.cx, SizeOf(name).cx) << name;
        EXPECT_LT(size.cy, SizeOf(name).cy) << name;
    }
}

TEST_F(ResolutionTest, WidthsOfAnotherResolutionAreConverted) {
    session_.CloseList();
    TConfiguration::Write(
        "[PLUGRID]\r\naDBGrid_PixelsPerInch=192\r\n"
        "aDBGrid_Column1=PLU_NUMB,100\r\naDBGrid_Column2=PLU_NAME,200\r\n");
    session_.Start();
    EXPECT_EQ(session_.Grid().ColumnWidth(1), Scaled(100));
}

}  // namespace tolvane::test
