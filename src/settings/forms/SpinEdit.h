#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "settings/ScaleSettings.h"

namespace tolvane {

// An edit line for whole numbers with up and down arrows. Plain handles, not owners. Interface
// thread.
struct TSpinEdit {
    HWND edit = nullptr;
    HWND arrows = nullptr;
    TSpinLimits limits;

    // Applies the limits to the arrows.
    void Prepare() const;
    // Shows the value unchanged. If it is outside the limits, it is allowed from now on.
    void Fill(std::int32_t value);
    // The typed number or its nearest limit. 0 stays 0; a text that is not a number gives the lower
    // limit.
    std::int32_t Value() const { return limits.ValueOf(Text()); }
    // Shows the nearest allowed value. For when the focus leaves the field.
    void Settle() const { Show(limits.Nearest(Value())); }
    // Called before the arrows take a step. Replaces a number outside the limits by the nearest
    // limit and returns true: the arrows must not take the step then.
    bool EnterLimits() const;

private:
    std::string Text() const;
    void Show(std::int32_t value) const;
};

}  // namespace tolvane
