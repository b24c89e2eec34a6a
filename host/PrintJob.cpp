#include "host/PrintJob.h"

#include <commdlg.h>

#include <algorithm>

namespace tolvane::host {
namespace {

void SetOrientation(HGLOBAL deviceMode, bool landscape) {
    const TLockedGlobal<DEVMODEW> mode(deviceMode);
    if (mode.Get() == nullptr) return;
    mode.Get()->dmFields |= DM_ORIENTATION;
    mode.Get()->dmOrientation = landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
}

// Sets the dialog to the default printer. If there is no printer, the dialog itself says so.
bool AskDefaultPrinter(HWND owner, PRINTDLGW& dialog) {
    PRINTDLGW defaults{};
    defaults.lStructSize = sizeof defaults;
    defaults.hwndOwner = owner;
    defaults.Flags = PD_RETURNDEFAULT;
    if (PrintDlgW(&defaults) == 0) return false;
    dialog.hDevMode = defaults.hDevMode;
    dialog.hDevNames = defaults.hDevNames;
    return true;
}

RECT Target(HDC dc, const TPaper& paper) {
    TSheet sheet;
    sheet.width = GetDeviceCaps(dc, PHYSICALWIDTH);
    sheet.height = GetDeviceCaps(dc, PHYSICALHEIGHT);
    sheet.offsetX = GetDeviceCaps(dc, PHYSICALOFFSETX);
    sheet.offsetY = GetDeviceCaps(dc, PHYSICALOFFSETY);
    sheet.dotsPerInchX = GetDeviceCaps(dc, LOGPIXELSX);
    sheet.dotsPerInchY = GetDeviceCaps(dc, LOGPIXELSY);
    const TSheetPlace place = PlaceOnSheet(paper, sheet);
    return {place.x, place.y, place.x + place.width, place.y + place.height};
}

TPrintResult PrintPage(HDC dc, const TPagePainter& painter, const RECT& target, std::size_t page) {
    if (StartPage(dc) <= 0) return TPrintResult::Failed;
    painter.Draw(dc, target, page);
    return EndPage(dc) > 0 ? TPrintResult::Done : TPrintResult::Failed;
}

}  // namespace

TPrintChoice ChoosePrinter(HWND owner, const TPageLayout& layout, TPrinter& printer) {
    const std::size_t pages = layout.PageCount();
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    if (!AskDefaultPrinter(owner, dialog)) return TPrintChoice::NoPrinter;
    SetOrientation(dialog.hDevMode, layout.Paper().width > layout.Paper().height);
    dialog.hwndOwner = owner;
    dialog.Flags = PD_RETURNDC | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
    dialog.nMinPage = 1;
    dialog.nMaxPage = static_cast<WORD>(std::min<std::size_t>(pages, 0xFFFF));
    dialog.nFromPage = dialog.nMinPage;
    dialog.nToPage = dialog.nMaxPage;
    const bool chosen = PrintDlgW(&dialog) != 0;
    const bool noPrinter = !chosen && CommDlgExtendedError() != 0;
    const TOwnedGlobalMemory mode(dialog.hDevMode);
    const TOwnedGlobalMemory names(dialog.hDevNames);
    if (noPrinter) return TPrintChoice::NoPrinter;
    if (!chosen) return TPrintChoice::Cancelled;
    const bool someOnly = (dialog.Flags & PD_PAGENUMS) != 0;
    const auto [from, to] = std::minmax(dialog.nFromPage, dialog.nToPage);
    const std::size_t first = someOnly ? std::size_t{std::max<WORD>(from, 1)} - 1 : 0;
    printer = TPrinter(dialog.hDC, first, someOnly ? std::min<std::size_t>(to, pages) : pages);
    return TPrintChoice::Chosen;
}

TPrintResult PrintPages(const TPrinter& printer, const TPagePainter& painter,
                        const std::function<bool(std::size_t page)>& goOn) {
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = painter.Texts().title.c_str();
    if (StartDocW(printer.Dc(), &document) <= 0) return TPrintResult::Failed;
    const RECT target = Target(printer.Dc(), painter.Layout().Paper());
    TPrintResult result = TPrintResult::Done;
    for (std::size_t page = printer.FirstPage();
         result == TPrintResult::Done && page < printer.EndPage(); ++page)
        result =
            goOn(page) ? PrintPage(printer.Dc(), painter, target, page) : TPrintResult::Stopped;
    if (result == TPrintResult::Done && EndDoc(printer.Dc()) <= 0) result = TPrintResult::Failed;
    if (result != TPrintResult::Done) AbortDoc(printer.Dc());
    return result;
}

}  // namespace tolvane::host
