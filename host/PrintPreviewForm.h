#pragma once

#include <windows.h>

#include <cstddef>

#include "host/GridReader.h"
#include "host/PagePainter.h"
#include "window/Form.h"

namespace tolvane::host {

// The preview of a grid's pages, with buttons to turn them and to print them all.
class TPrintPreviewForm final : public TForm {
public:
    TPrintPreviewForm(HWND owner, HWND grid, TPageTexts texts);
    ~TPrintPreviewForm() override { Destroy(); }

protected:
    void OnSize() override;
    bool OnKey(UINT virtualKey, HWND focus) override;
    LRESULT HandleMessage(const TMessage& message) override;

private:
    void AddControls();
    void Turn(int pages);
    void Paint();
    void Print();
    RECT PageArea() const;

    TGridReader grid_;
    TPagePainter painter_;
    TPageTexts texts_;
    std::size_t page_ = 0;
};

}  // namespace tolvane::host
