#pragma once

#include <windows.h>

#include "window/Handles.h"

namespace tolvane {

// Converts sizes, which this program gives for 96 dots per inch, into pixels of a resolution, and
// back.
class TDpi {
public:
    explicit TDpi(int dotsPerInch) noexcept : dotsPerInch_(dotsPerInch) {}
    static TDpi System() noexcept;
    // That of the monitor which shows the window, where the host is told of each monitor's. In any
    // other host, and for null, the system's: Windows scales what another monitor shows.
    static TDpi Of(HWND window) noexcept;

    int Scale(int at96) const noexcept { return MulDiv(at96, dotsPerInch_, 96); }
    int Unscale(int pixels) const noexcept { return MulDiv(pixels, 96, dotsPerInch_); }
    int DotsPerInch() const noexcept { return dotsPerInch_; }
    bool operator==(const TDpi&) const = default;

private:
    int dotsPerInch_;
};

// A rectangle at 96 dots per inch.
struct TBounds {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The outer size of a window with a client area of so many pixels.
SIZE OuterSize(TDpi dpi, SIZE client, DWORD style, DWORD exStyle);
// The module's font: Tahoma of 8 points, or of another pixel height at 96 dots per inch.
TOwnedFont MakeFont(TDpi dpi, bool bold = false, int pixelHeight = 0);
// The font that the user has chosen for lists in the system; the module's own where there is no
// such setting.
TOwnedFont MakeListFont(TDpi dpi);
// The same for status bars.
TOwnedFont MakeStatusFont(TDpi dpi);
// Height in pixels of a line of text in the font.
int TextHeight(HFONT font);
// Width in pixels of a text drawn in the font.
int TextWidth(HDC dc, HFONT font, const wchar_t* text, int length);

}  // namespace tolvane
