#include "comm/forms/SpinEdit.h"

#include <commctrl.h>

#include <algorithm>
#include <string>

#include "config/ScaleSettings.h"
#include "window/WideText.h"

namespace tolvane {

void TSpinEdit::Prepare() const {
    SendMessageW(arrows, UDM_SETRANGE32, static_cast<WPARAM>(lowest), highest);
}

void TSpinEdit::Set(std::int32_t value) const {
    const std::int32_t shown = std::clamp(value, lowest, highest);
    SendMessageW(arrows, UDM_SETPOS32, 0, shown);
    // Arrows that stand at the value already leave the text as it is.
    const std::string text = std::to_string(shown);
    if (WindowText(edit) != text) SetWindowText(edit, text);
}

std::int32_t TSpinEdit::Value() const {
    return SpinValue(WindowText(edit), lowest, highest);
}

}  // namespace tolvane
