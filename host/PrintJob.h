#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>

#include "host/PagePainter.h"
#include "window/Handles.h"

namespace tolvane::host {

// A printer that the user has chosen, and the pages (from 0) that he wants.
class TPrinter {
public:
    TPrinter(HDC dc, std::size_t firstPage, std::size_t endPage)
        : dc_(dc), firstPage_(firstPage), endPage_(endPage) {}

    HDC Dc() const { return dc_.Get(); }
    std::size_t FirstPage() const { return firstPage_; }
    std::size_t EndPage() const { return endPage_; }

private:
    TOwnedDc dc_;
    std::size_t firstPage_;
    std::size_t endPage_;
};

enum class TPrintChoice { Chosen, Cancelled, NoPrinter };

// The system's print dialog, set to the paper's orientation. `printer` gets what was chosen; its
// device context is null otherwise.
TPrintChoice ChoosePrinter(HWND owner, const TPageLayout& layout, TPrinter& printer);

enum class TPrintResult { Done, Stopped, Failed };

// Prints the pages. `goOn` is asked before each, with its number from 0; when it answers false,
// nothing more is sent and the job is given up.
TPrintResult PrintPages(const TPrinter& printer, const TPagePainter& painter,
                        const std::function<bool(std::size_t page)>& goOn);

}  // namespace tolvane::host
