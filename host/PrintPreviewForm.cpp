#include "host/PrintPreviewForm.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/PictureShrink.h"
#include "host/PrintJob.h"
#include "text/Cp1251.h"
#include "window/Handles.h"
#include "window/MessageBoxes.h"
#include "window/Placement.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

// At 96 dots per inch.
constexpr SIZE kClient = {1020, 770};
constexpr SIZE kFrame = {20, 40};
constexpr int kBarHeight = 40;
constexpr int kGap = 12;

enum TOrientation : int { kLandscape, kPortrait };

// A page is drawn larger than it appears on the screen and then shrunk: the widest drawing in dots,
// and the largest factor.
constexpr int kLargestPicture = 4000;
constexpr int kMostTimes = 3;

constexpr std::string_view kPrintText = "Печат..."_cp1251;
constexpr std::string_view kStopText = "Спиране"_cp1251;

// At 96 dots per inch: not larger than the screen.
SIZE FirstClient(HWND owner) {
    const TDpi dpi = TDpi::Of(owner);
    RECT place{};
    GetWindowRect(owner, &place);
    const RECT screen = WorkArea(place);
    const LONG width = dpi.Unscale(screen.right - screen.left) - kFrame.cx;
    const LONG height = dpi.Unscale(screen.bottom - screen.top) - kFrame.cy;
    return {std::min(kClient.cx, width), std::min(kClient.cy, height)};
}

BITMAPINFO PictureFormat(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row on top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

// A bitmap to draw on.
class TPicture {
public:
    TPicture(int width, int height) : dc_(CreateCompatibleDC(nullptr)) {
        const BITMAPINFO info = PictureFormat(width, height);
        bitmap_.Reset(CreateDIBSection(dc_.Get(), &info, DIB_RGB_COLORS, &dots_, nullptr, 0));
        if (!bitmap_) throw TWindowError(WindowsErrorText(ERROR_NOT_ENOUGH_MEMORY));
        before_ = SelectObject(dc_.Get(), bitmap_.Get());
    }
    TPicture(const TPicture&) = delete;
    TPicture& operator=(const TPicture&) = delete;
    ~TPicture() { SelectObject(dc_.Get(), before_); }
    HDC Dc() const { return dc_.Get(); }
    const std::uint32_t* Dots() const {
        GdiFlush();
        return static_cast<const std::uint32_t*>(dots_);
    }

private:
    // The order matters: dc_ goes before bitmap_, because a selected bitmap cannot be deleted.
    TOwnedBitmap bitmap_;
    TOwnedDc dc_;
    void* dots_ = nullptr;
    HGDIOBJ before_ = nullptr;
};

}  // namespace

TPrintPreviewForm::TPrintPreviewForm(HWND owner, HWND grid, TPageTexts texts)
    : grid_(grid), painter_(grid_, std::move(texts)) {
    const SIZE client = FirstClient(owner);
    MakePopup({.className = L"TPrintPreviewForm",
               .name = "PrintPreviewForm",
               .caption = "Преглед преди печат"_cp1251,
               .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX |
                        WS_CLIPCHILDREN,
               .clientWidth = client.cx,
               .clientHeight = client.cy,
               .minWidth = 630,
               .minHeight = 400},
              owner);
    AddControls();
    ShowPage(0);
}

void TPrintPreviewForm::AddControls() {
    const auto place = [](int x) { return TBounds{x, 7, 80, 26}; };
    AddButton("btnPrevious", "< Назад"_cp1251, place(8), &TPrintPreviewForm::ShowPrevious);
    AddButton("btnNext", "Напред >"_cp1251, place(94), &TPrintPreviewForm::ShowNext);
    AddLabel("lblPage", {}, {184, 13, 112, 16});
    const HWND combo = AddControl({.kind = TControlKind::ComboList,
                                   .name = "cbOrientation",
                                   .bounds = {302, 9, 130, 120},
                                   .action = [this] { ChooseOrientation(); }});
    AddComboItem(combo, "Хоризонтален лист"_cp1251);
    AddComboItem(combo, "Вертикален лист"_cp1251);
    SetComboIndex(combo, kLandscape);
    AddButton("btnPrint", kPrintText, place(442), &TPrintPreviewForm::Print);
    AddButton(
        "btnClose", "Затвори"_cp1251, place(528), [this] { Close(); }, IDCANCEL);
}

void TPrintPreviewForm::ShowPage(std::size_t page) {
    page_ = std::min(page, LastPage());
    ShowPageNumber(page_);
    EnableWindow(Control("btnPrevious"), !printing_ && page_ > 0 ? TRUE : FALSE);
    EnableWindow(Control("btnNext"), !printing_ && page_ < LastPage() ? TRUE : FALSE);
    InvalidateRect(Handle(), nullptr, FALSE);
}

void TPrintPreviewForm::ShowNext() {
    if (!printing_) ShowPage(page_ + 1);
}

void TPrintPreviewForm::ShowPrevious() {
    if (!printing_ && page_ > 0) ShowPage(page_ - 1);
}

void TPrintPreviewForm::ShowPageNumber(std::size_t page) {
    SetWindowTextW(Control("lblPage"), painter_.PageNumber(page).c_str());
}

void TPrintPreviewForm::ChooseOrientation() {
    const bool portrait = ComboIndex(Control("cbOrientation")) == kPortrait;
    painter_.SetPaper(portrait ? PortraitPaper() : LandscapePaper());
    ShowPage(0);
}

void TPrintPreviewForm::OnSize() {
    InvalidateRect(Handle(), nullptr, FALSE);
}

bool TPrintPreviewForm::OnKey(UINT virtualKey, HWND focus) {
    if (focus == Control("cbOrientation") || printing_) return false;
    switch (virtualKey) {
        case VK_NEXT:
            ShowNext();
            return true;
        case VK_PRIOR:
            ShowPrevious();
            return true;
        case VK_HOME:
            ShowPage(0);
            return true;
        case VK_END:
            ShowPage(LastPage());
            return true;
        default:
            return false;
    }
}

// During printing, closing the window only stops the printing.
bool TPrintPreviewForm::CanClose(int) {
    stop_ = true;
    return !printing_;
}

// The largest rectangle of the paper's shape that fits below the bar, centred.
RECT TPrintPreviewForm::PageArea() const {
    RECT client{};
    GetClientRect(Handle(), &client);
    const TPaper& paper = painter_.Layout().Paper();
    const int gap = Dpi().Scale(kGap);
    const int top = Dpi().Scale(kBarHeight) + gap;
    const int width = std::max<int>(client.right - 2 * gap, 10);
    const int height = std::max<int>(client.bottom - top - gap, 10);
    const int fittingWidth = std::min(width, MulDiv(height, paper.width, paper.height));
    const int fittingHeight = MulDiv(fittingWidth, paper.height, paper.width);
    const int left = (client.right - fittingWidth) / 2;
    const int above = top + (height - fittingHeight) / 2;
    return {left, above, left + fittingWidth, above + fittingHeight};
}

LRESULT TPrintPreviewForm::HandleMessage(const TMessage& message) {
    switch (message.id) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return TRUE;
        case WM_MOUSEWHEEL:
            if (GET_WHEEL_DELTA_WPARAM(message.wParam) > 0)
                ShowPrevious();
            else
                ShowNext();
            return 0;
        default:
            return TForm::HandleMessage(message);
    }
}

// Everything is drawn in memory first, so that turning pages does not flicker.
void TPrintPreviewForm::Paint() {
    const TPainting painting(Handle());
    RECT client{};
    GetClientRect(Handle(), &client);
    if (client.right <= 0 || client.bottom <= 0) return;
    const TPicture picture(client.right, client.bottom);
    const RECT bar{0, 0, client.right, Dpi().Scale(kBarHeight)};
    const RECT page = PageArea();
    FillRect(picture.Dc(), &client, GetSysColorBrush(COLOR_APPWORKSPACE));
    FillRect(picture.Dc(), &bar, GetSysColorBrush(COLOR_BTNFACE));
    DrawPage(picture.Dc(), page);
    FrameRect(picture.Dc(), &page, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    BitBlt(painting.Dc(), 0, 0, client.right, client.bottom, picture.Dc(), 0, 0, SRCCOPY);
}

// Draws the page larger and shrinks the picture: drawn directly, letters of a few dots would be
// neither readable nor as wide as on paper.
void TPrintPreviewForm::DrawPage(HDC dc, const RECT& page) const {
    const int width = page.right - page.left;
    const int height = page.bottom - page.top;
    const int times = std::clamp(kLargestPicture / std::max(width, 1), 1, kMostTimes);
    const RECT large{0, 0, width * times, height * times};
    const TPicture picture(large.right, large.bottom);
    FillRect(picture.Dc(), &large, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    painter_.Draw(picture.Dc(), large, page_);
    const std::vector<std::uint32_t> dots = ShrinkPicture(picture.Dots(), width, height, times);
    const BITMAPINFO info = PictureFormat(width, height);
    SetDIBitsToDevice(dc, page.left, page.top, static_cast<DWORD>(width),
                      static_cast<DWORD>(height), 0, 0, 0, static_cast<UINT>(height), dots.data(),
                      &info, DIB_RGB_COLORS);
}

void TPrintPreviewForm::Print() {
    if (printing_) {
        stop_ = true;
        return;
    }
    TPrinter printer;
    switch (ChoosePrinter(Handle(), painter_.Layout(), printer)) {
        case TPrintChoice::Cancelled:
            return;
        case TPrintChoice::NoPrinter:
            ShowError(
                Handle(),
                "Няма принтер, на който може да се печата.\r\nИнсталирайте принтер в настройките на Windows и опитайте отново."_cp1251);
            return;
        case TPrintChoice::Chosen:
            PrintTo(printer);
            return;
    }
}

void TPrintPreviewForm::PrintTo(const TPrinter& printer) {
    printing_ = true;
    stop_ = false;
    ShowPage(page_);
    EnableWindow(Control("cbOrientation"), FALSE);
    tolvane::SetWindowText(Control("btnPrint"), kStopText);
    const TPrintResult result = PrintPages(printer, painter_, [this](std::size_t page) {
        ShowPageNumber(page);
        PumpMessages();
        return Handle() != nullptr && !stop_;
    });
    printing_ = false;
    if (Handle() == nullptr) return;
    tolvane::SetWindowText(Control("btnPrint"), kPrintText);
    EnableWindow(Control("cbOrientation"), TRUE);
    ShowPage(page_);
    if (result == TPrintResult::Failed)
        ShowError(Handle(),
                  "Печатът не завърши. Проверете дали принтерът е включен и има хартия."_cp1251);
}

}  // namespace tolvane::host
