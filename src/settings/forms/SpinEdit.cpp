#include "settings/forms/SpinEdit.h"

#include <commctrl.h>

#include <algorithm>

#include "window/WideText.h"

namespace tolvane {

void TSpinEdit::Prepare() const {
    SendMessageW(arrows, UDM_SETRANGE32, static_cast<WPARAM>(limits.lowest), limits.highest);
}

void TSpinEdit::Fill(std::int32_t value) {
    limits.kept = value;
    Show(value);
}

bool TSpinEdit::EnterLimits() const {
    const std::int32_t value = limits.Nearest(Value());
    const std::int32_t inside = std::clamp(value, limits.lowest, limits.highest);
    if (value == inside) return false;
    Show(inside);
    return true;
}

std::string TSpinEdit::Text() const {
    return WindowText(edit);
}

void TSpinEdit::Show(std::int32_t value) const {
    // The arrows write their value into the edit line and cannot have a value outside the limits.
    SendMessageW(arrows, UDM_SETPOS32, 0, std::clamp(value, limits.lowest, limits.highest));
    // Arrows that already have the value do not write it.
    const std::string text = std::to_string(value);
    if (Text() != text) SetWindowText(edit, text);
}

}  // namespace tolvane
