#include "tests/support/window/Screenshot.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "tests/support/window/HostFrame.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

void WriteBitmap(const std::string& path, const BITMAPINFOHEADER& info,
                 const std::vector<std::uint8_t>& pixels) {
    constexpr WORD kBitmapMark = 0x4D42;
    BITMAPFILEHEADER header{};
    header.bfType = kBitmapMark;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof header);
    file.write(reinterpret_cast<const char*>(&info), sizeof info);
    file.write(reinterpret_cast<const char*>(pixels.data()),
               static_cast<std::streamsize>(pixels.size()));
}

}  // namespace

void SaveScreenshot(HWND window, const std::string& name) {
    const char* folder = std::getenv("TOLVANE_SCREENSHOTS");
    if (folder == nullptr) return;
    RedrawWindow(window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
    RunLoopDry();
    RECT rect{};
    GetWindowRect(window, &rect);
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
    SelectObject(memory, before);
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 32;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(),
              reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    WriteBitmap(std::string(folder) + "/" + name + ".bmp", info, pixels);
}

void Picture(HWND window, const std::string& name) {
    SaveScreenshot(window, "settings-" + name + "-" + std::to_string(TDpi::System().DotsPerInch()));
}

COLORREF PixelAt(HWND window, POINT at) {
    const HDC dc = GetDC(window);
    const COLORREF colour = GetPixel(dc, at.x, at.y);
    ReleaseDC(window, dc);
    return colour;
}

}  // namespace tolvane::test
