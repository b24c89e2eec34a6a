#pragma once

#include <windows.h>

#include <cstddef>

#include "host/GridReader.h"
#include "host/PagePainter.h"
#include "window/Form.h"

namespace tolvane::host {

class TPrinter;

// The preview of a grid's pages: shows one at a time, in landscape or portrait, and prints them.
// Reads only the visible page from the grid.
class TPrintPreviewForm final : public TForm {
public:
    TPrintPreviewForm(HWND owner, HWND grid, TPageTexts texts);
    ~TPrintPreviewForm() override { Destroy(); }

protected:
    void OnSize() override;
    bool OnKey(UINT virtualKey, HWND focus) override;
    bool CanClose(int result) override;
    LRESULT HandleMessage(const TMessage& message) override;

private:
    void AddControls();
    void ShowPage(std::size_t page);
    void ShowNext();
    void ShowPrevious();
    void ShowPageNumber(std::size_t page);
    void ChooseOrientation();
    void Paint();
    void DrawPage(HDC dc, const RECT& page) const;
    void Print();
    void PrintTo(const TPrinter& printer);
    RECT PageArea() const;
    std::size_t LastPage() const { return painter_.Layout().PageCount() - 1; }

    TGridReader grid_;
    TPagePainter painter_;
    std::size_t page_ = 0;
    bool printing_ = false;
    bool stop_ = false;
};

}  // namespace tolvane::host
