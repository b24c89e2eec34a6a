#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "articles/ArticleTable.h"
#include "config/ScaleTable.h"
#include "system/Clock.h"

namespace tolvane {

// What the run window works on.
struct TRunContext {
    // Must not change while the window is open.
    std::shared_ptr<const TArticleTable> articles;
    std::vector<TRowId> marked;      // in the order of marking
    std::optional<TRowId> current;   // taken by a run of marked articles when none is marked
    TScaleTable* scales = nullptr;   // gets the check marks back when the window closes
    std::filesystem::path iniFile;   // the module's configuration file
    TClock* clock = &SystemClock();  // of deadlines and pauses; outlives the window
};

// Shows the run window for a menu command (1 to 4) and returns when it has closed and no run works
// any more. Nothing happens without articles. `owner` is the list window; the run window goes with
// it. Throws TWindowError, or TFileError when the window's settings could not be read (no window
// has come then) or saved (the check marks are back then). Interface thread.
void ShowRunWindow(HWND owner, int runNumber, const TRunContext& context);

inline constexpr const wchar_t* kSetPluFormClass = L"TSetPluForm";

}  // namespace tolvane
