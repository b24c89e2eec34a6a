#include "window/Dpi.h"

#include <cwchar>

namespace tolvane {

TDpi TDpi::System() noexcept {
    const TWindowDc screen(nullptr);
    const int dotsPerInch = GetDeviceCaps(screen.Get(), LOGPIXELSY);
    return TDpi(dotsPerInch > 0 ? dotsPerInch : 96);
}

TOwnedFont MakeFont(TDpi dpi, bool bold, int pixelHeight) {
    constexpr int kUsualPoints = 8;
    LOGFONTW font{};
    font.lfHeight =
        pixelHeight > 0 ? -dpi.Scale(pixelHeight) : -MulDiv(kUsualPoints, dpi.DotsPerInch(), 72);
    font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfQuality = DEFAULT_QUALITY;
    std::wcscpy(font.lfFaceName, L"Tahoma");
    return TOwnedFont(CreateFontIndirectW(&font));
}

TOwnedFont MakeListFont(TDpi dpi) {
    LOGFONTW font{};
    if (SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof font, &font, 0) == 0)
        return MakeFont(dpi);
    return TOwnedFont(CreateFontIndirectW(&font));
}

int TextHeight(HFONT font) {
    const TWindowDc screen(nullptr);
    const TSelected selected(screen.Get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen.Get(), &metrics);
    return metrics.tmHeight;
}

int TextWidth(HDC dc, HFONT font, const wchar_t* text, int length) {
    const TSelected selected(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, text, length, &size);
    return size.cx;
}

}  // namespace tolvane
