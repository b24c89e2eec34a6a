#pragma once

#include <windows.h>

#include <array>

#include "upload/ArticleLine.h"
#include "window/Form.h"

namespace tolvane {

// The controls of the run window that choose the price and the two label names. Plain handles; the
// form owns the controls. Interface thread.
class TRunChoices {
public:
    static constexpr int kWidth = 280;  // at 96 dots per inch

    // Makes the controls on the form, in the order of the Tab key. Throws TWindowError.
    void Make(TForm& form);
    // Moves them there; `left` and `top` at 96 dots per inch.
    void Arrange(const TForm& form, int left, int top) const;

    void Show(const TLineChoices& choices) const;
    TLineChoices Current() const;
    void Enable(bool enabled) const;

private:
    HWND priceRadio_ = nullptr;
    std::array<HWND, kPriceCaptions.size()> priceButtons_{};
    HWND lblPluName1_ = nullptr;
    HWND cbPluName1_ = nullptr;
    HWND lblPluName2_ = nullptr;
    HWND cbPluName2_ = nullptr;
};

}  // namespace tolvane
