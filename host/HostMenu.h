#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "window/Handles.h"

namespace tolvane::host {

// The commands of the main window's menu. Operation number N (from 1) is kFirstOperation + N - 1;
// the windows of the list get numbers from kFirstChild on.
enum TCommand : int {
    kConnect = 100,
    kDisconnect,
    kExit,
    kCascade,
    kTileHorizontally,
    kTileVertically,
    kArrangeIcons,
    kCloseAll,
    kModules,
    kAbout,
    kFirstOperation = 1000,
    kFirstChild = 50000,
};

struct THostMenu {
    HMENU bar = nullptr;
    HMENU connection = nullptr;
    HMENU operations = nullptr;
    HMENU windows = nullptr;
};

// A menu bar, with the titles of the operations (code page 1251) as they are. It belongs to the
// window that it is given to.
THostMenu MakeHostMenu(const std::vector<std::string>& operations);
// The keys for some of the commands.
TOwnedAccelerators MakeHostAccelerators();

}  // namespace tolvane::host
