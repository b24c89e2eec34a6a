#pragma once

#include <windows.h>

#include "config/ScaleTable.h"

namespace tolvane {

// Lets the user edit the list of scales. True when it was confirmed: the table then holds the new
// list in its first slots; the caller saves it. Otherwise the table is as it was. `owner` is the
// list window; when it is destroyed, so is the editor. Throws TWindowError. Interface thread.
bool ShowScaleList(HWND owner, TScaleTable& table);

inline constexpr const wchar_t* kScaleComunicationFormClass = L"TScaleComunicationForm";

}  // namespace tolvane
