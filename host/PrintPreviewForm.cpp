#include "host/PrintPreviewForm.h"

#include <commdlg.h>

#include <algorithm>
#include <string>

#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

constexpr int kBarHeight = 40;
constexpr int kGap = 12;

class TPrinterDc {
public:
    explicit TPrinterDc(HDC dc) : dc_(dc) {}
    TPrinterDc(const TPrinterDc&) = delete;
    TPrinterDc& operator=(const TPrinterDc&) = delete;
    ~TPrinterDc() {
        if (dc_ != nullptr) DeleteDC(dc_);
    }
    HDC Get() const { return dc_; }

private:
    HDC dc_;
};

// Lets the user choose a printer; nothing is returned when he does not. Pages lie across.
HDC ChoosePrinter(HWND owner) {
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.Flags = PD_RETURNDC | PD_NOSELECTION | PD_NOPAGENUMS | PD_USEDEVMODECOPIESANDCOLLATE;
    if (PrintDlgW(&dialog) == 0) {
        if (CommDlgExtendedError() != 0) ShowError(owner, "Няма инсталиран принтер."_cp1251);
        return nullptr;
    }
    if (auto* mode = static_cast<DEVMODEW*>(GlobalLock(dialog.hDevMode)); mode != nullptr) {
        mode->dmFields |= DM_ORIENTATION;
        mode->dmOrientation = DMORIENT_LANDSCAPE;
        ResetDCW(dialog.hDC, mode);
        GlobalUnlock(dialog.hDevMode);
    }
    GlobalFree(dialog.hDevMode);
    GlobalFree(dialog.hDevNames);
    return dialog.hDC;
}

}  // namespace

TPrintPreviewForm::TPrintPreviewForm(HWND owner, HWND grid, TPageTexts texts)
    : grid_(grid), painter_(grid_, texts), texts_(std::move(texts)) {
    TFormOptions options;
    options.className = L"TPrintPreviewForm";
    options.name = "PrintPreviewForm";
    options.caption = "Преглед преди печат"_cp1251;
    options.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX;
    options.clientWidth = 900;
    options.clientHeight = 680;
    options.minWidth = 520;
    options.minHeight = 400;
    MakePopup(options, owner);
    AddControls();
    Turn(0);
}

void TPrintPreviewForm::AddControls() {
    const auto button = [&](const char* name, std::string_view text, int x, int id,
                            std::function<void()> action) {
        TControlOptions options;
        options.name = name;
        options.text = text;
        options.place = {x, 7, 90, 26};
        options.id = id;
        options.action = std::move(action);
        AddControl(options);
    };
    button("btnPrevious", "< Назад"_cp1251, 8, 0, [this] { Turn(-1); });
    button("btnNext", "Напред >"_cp1251, 104, 0, [this] { Turn(1); });
    TControlOptions label;
    label.kind = TControlKind::Label;
    label.name = "lblPage";
    label.place = {204, 13, 150, 16};
    AddControl(label);
    button("btnPrint", "Печат..."_cp1251, 364, 0, [this] { Print(); });
    button("btnClose", "Затвори"_cp1251, 460, IDCANCEL, [this] { Close(); });
}

void TPrintPreviewForm::Turn(int pages) {
    const auto last = static_cast<int>(painter_.Layout().PageCount()) - 1;
    page_ = static_cast<std::size_t>(std::clamp(static_cast<int>(page_) + pages, 0, last));
    std::string text("Стр. "_cp1251);
    text += std::to_string(page_ + 1);
    text += " от "_cp1251;
    text += std::to_string(last + 1);
    tolvane::SetWindowText(Control("lblPage"), text);
    EnableWindow(Control("btnPrevious"), page_ > 0 ? TRUE : FALSE);
    EnableWindow(Control("btnNext"), static_cast<int>(page_) < last ? TRUE : FALSE);
    const RECT area = PageArea();
    InvalidateRect(Handle(), &area, TRUE);
}

void TPrintPreviewForm::OnSize() {
    InvalidateRect(Handle(), nullptr, TRUE);
}

bool TPrintPreviewForm::OnKey(UINT virtualKey, HWND) {
    if (virtualKey != VK_NEXT && virtualKey != VK_PRIOR) return false;
    Turn(virtualKey == VK_NEXT ? 1 : -1);
    return true;
}

// The largest rectangle of the paper's shape under the bar.
RECT TPrintPreviewForm::PageArea() const {
    RECT area{};
    GetClientRect(Handle(), &area);
    const TPaper& paper = painter_.Layout().Paper();
    const int gap = Dpi().Scale(kGap);
    const int top = Dpi().Scale(kBarHeight) + gap;
    const int width = std::max<int>(area.right - 2 * gap, 10);
    const int height = std::max<int>(area.bottom - top - gap, 10);
    const int fittingWidth = std::min(width, MulDiv(height, paper.width, paper.height));
    const int fittingHeight = MulDiv(fittingWidth, paper.height, paper.width);
    const int left = (area.right - fittingWidth) / 2;
    return {left, top, left + fittingWidth, top + fittingHeight};
}

LRESULT TPrintPreviewForm::HandleMessage(const TMessage& message) {
    if (message.id == WM_PAINT) {
        Paint();
        return 0;
    }
    return TForm::HandleMessage(message);
}

void TPrintPreviewForm::Paint() {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(Handle(), &paint);
    RECT page = PageArea();
    FillRect(dc, &page, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    FrameRect(dc, &page, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    painter_.Draw(dc, page, page_);
    EndPaint(Handle(), &paint);
}

void TPrintPreviewForm::Print() {
    const TPrinterDc printer(ChoosePrinter(Handle()));
    if (printer.Get() == nullptr) return;
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = texts_.title.c_str();
    bool printed = StartDocW(printer.Get(), &document) > 0;
    const RECT paper{0, 0, GetDeviceCaps(printer.Get(), HORZRES),
                     GetDeviceCaps(printer.Get(), VERTRES)};
    for (std::size_t page = 0; printed && page < painter_.Layout().PageCount(); ++page) {
        printed = StartPage(printer.Get()) > 0;
        if (printed) painter_.Draw(printer.Get(), paper, page);
        printed = printed && EndPage(printer.Get()) > 0;
    }
    if (printed) printed = EndDoc(printer.Get()) > 0;
    if (!printed) ShowError(Handle(), "Печатът не завърши. Проверете принтера."_cp1251);
}

}  // namespace tolvane::host
