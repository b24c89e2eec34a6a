#include "window/Dpi.h"

#include <cwchar>

namespace tolvane {
namespace {

// A function of the system that only Windows 10 and later have; null in any other.
template <class Function>
Function UserFunction(const char* name) noexcept {
    const HMODULE library = GetModuleHandleW(L"user32.dll");
    if (library == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

// Whether the window's thread is told of each monitor's resolution.
bool KnowsMonitors(HWND window) noexcept {
    constexpr int kPerMonitor = 2;
    const auto context = UserFunction<void*(WINAPI*)(HWND)>("GetWindowDpiAwarenessContext");
    const auto awareness = UserFunction<int(WINAPI*)(void*)>("GetAwarenessFromDpiAwarenessContext");
    return context != nullptr && awareness != nullptr && awareness(context(window)) == kPerMonitor;
}

// A font that the system describes for its own resolution.
TOwnedFont MakeScaledFont(LOGFONTW font, TDpi dpi) {
    font.lfHeight = MulDiv(font.lfHeight, dpi.DotsPerInch(), TDpi::System().DotsPerInch());
    return TOwnedFont(CreateFontIndirectW(&font));
}

}  // namespace

TDpi TDpi::System() noexcept {
    const TWindowDc screen(nullptr);
    const int dotsPerInch = GetDeviceCaps(screen.Get(), LOGPIXELSY);
    return TDpi(dotsPerInch > 0 ? dotsPerInch : 96);
}

TDpi TDpi::Of(HWND window) noexcept {
    const auto dpiOf = UserFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
    if (window == nullptr || dpiOf == nullptr || !KnowsMonitors(window)) return System();
    const auto dotsPerInch = static_cast<int>(dpiOf(window));
    return dotsPerInch > 0 ? TDpi(dotsPerInch) : System();
}

SIZE OuterSize(TDpi dpi, SIZE client, DWORD style, DWORD exStyle) {
    using TAdjust = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
    RECT rect{0, 0, client.cx, client.cy};
    const auto adjust =
        dpi == TDpi::System() ? nullptr : UserFunction<TAdjust>("AdjustWindowRectExForDpi");
    if (adjust == nullptr ||
        adjust(&rect, style, FALSE, exStyle, static_cast<UINT>(dpi.DotsPerInch())) == 0)
        AdjustWindowRectEx(&rect, style, FALSE, exStyle);
    return {rect.right - rect.left, rect.bottom - rect.top};
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
    return MakeScaledFont(font, dpi);
}

TOwnedFont MakeStatusFont(TDpi dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0) == 0)
        return MakeFont(dpi);
    return MakeScaledFont(metrics.lfStatusFont, dpi);
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
