#pragma once

#include <windows.h>

#include <cstdint>

namespace tolvane {

// An edit line for whole numbers with up and down arrows. Light handles, not owners.
struct TSpinEdit {
    HWND edit = nullptr;
    HWND arrows = nullptr;
    std::int32_t lowest = 0;
    std::int32_t highest = 0;

    // Applies the limits to the arrows.
    void Prepare() const;
    // A value outside the limits becomes the nearest one.
    void Set(std::int32_t value) const;
    // The lowest for a text that is no number; zero stays zero whatever the limits are.
    std::int32_t Value() const;
    // Shows a value within the limits; when the field is left.
    void Settle() const { Set(Value()); }
};

}  // namespace tolvane
