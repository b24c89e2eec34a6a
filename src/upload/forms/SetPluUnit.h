#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "articles/ArticleTable.h"
#include "config/RunNumber.h"
#include "config/ScaleTable.h"
#include "system/Clock.h"
#include "window/Attention.h"

namespace tolvane {

// What the run window works on.
struct TRunContext {
    // Must not change while the window is open.
    std::shared_ptr<const TArticleTable> articles;
    std::vector<TRowId> marked;     // in the order of marking
    std::optional<TRowId> current;  // the article of a run over marked articles when none is marked
    TScaleTable* scales = nullptr;  // receives the check marks when the window closes
    std::filesystem::path iniFile;  // the module's configuration file
    TClock* clock = &SystemClock();  // of deadlines and pauses; outlives the window
    TAttentionCalls attention{};     // for the end of a run
};

// Shows the run window and returns when it has closed and its run has ended. Does nothing without
// articles, or for a number outside TRunNumber. `owner` is the list window; when it is destroyed,
// so is the run window. Throws TWindowError. Throws TFileError when the window's settings cannot be
// read (no window appears then) or saved (the table has the check marks then). Interface thread.
void ShowRunWindow(HWND owner, TRunNumber number, const TRunContext& context);

inline constexpr const wchar_t* kSetPluFormClass = L"TSetPluForm";

}  // namespace tolvane
