#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>

#include "host/PagePainter.h"
#include "window/Handles.h"

namespace tolvane::host {

// The printer and the pages (from 0) that the user has chosen.
class TPrinter {
public:
    // None.
    TPrinter() = default;
    TPrinter(HDC dc, std::size_t firstPage, std::size_t endPage)
        : dc_(dc), firstPage_(firstPage), endPage_(endPage) {}

    HDC Dc() const { return dc_.Get(); }
    std::size_t FirstPage() const { return firstPage_; }
    std::size_t EndPage() const { return endPage_; }

private:
    TOwnedDc dc_;
    std::size_t firstPage_ = 0;
    std::size_t endPage_ = 0;
};

enum class TPrintChoice { Chosen, Cancelled, NoPrinter };

// Shows the system's print dialog, set to the paper's orientation. Stores the choice in `printer`;
// without a choice, its device context is null.
TPrintChoice ChoosePrinter(HWND owner, const TPageLayout& layout, TPrinter& printer);

enum class TPrintResult { Done, Stopped, Failed };

// Prints the pages. Calls `goOn` before each page, with its number from 0; when that returns false,
// cancels the job.
TPrintResult PrintPages(const TPrinter& printer, const TPagePainter& painter,
                        const std::function<bool(std::size_t page)>& goOn);

}  // namespace tolvane::host
