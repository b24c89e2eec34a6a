#pragma once

#include <windows.h>

#include <string_view>

#include "window/Handles.h"

namespace tolvane {

// The short texts that appear while the mouse rests on a control of a form. Interface thread.
class THints {
public:
    // `text` is code page 1251. Throws TWindowError.
    void Add(HWND form, HWND control, std::string_view text);
    // For when the form is being destroyed: it may be a child window, whose hints belong to
    // another window.
    void Remove() noexcept { window_.Reset(); }

private:
    TOwnedWindow window_;
};

}  // namespace tolvane
