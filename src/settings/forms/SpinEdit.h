#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "settings/ScaleSettings.h"

namespace tolvane {

// An edit line for whole numbers with up and down arrows. Light handles, not owners.
struct TSpinEdit {
    HWND edit = nullptr;
    HWND arrows = nullptr;
    TSpinLimits limits;

    // Applies the limits to the arrows.
    void Prepare() const;
    // Shows the value as it is. One outside the limits stays allowed beside those within them.
    void Fill(std::int32_t value);
    // The lowest for a text that is not a number; zero stays zero whatever the limits are.
    std::int32_t Value() const { return limits.ValueOf(Text()); }
    // Shows a value that is allowed; when the field is left.
    void Settle() const { Show(limits.Nearest(Value())); }
    // Called before the arrows take a step. A number outside the limits is replaced by the nearest
    // limit, and true means that the arrows must not go on from there.
    bool EnterLimits() const;

private:
    std::string Text() const;
    void Show(std::int32_t value) const;
};

}  // namespace tolvane
