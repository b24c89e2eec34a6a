#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "window/Handles.h"

namespace tolvane::host {

// The commands of the main window's menu. Operation number N (from 1) is kFirstOperation + N - 1;
// the databases opened last have numbers from kFirstDatabase on, the items of the window list from
// kFirstChild on.
enum TCommand : int {
    kConnect = 100,
    kDisconnect,
    kChooseDatabase,
    kExit,
    kCascade,
    kTileHorizontally,
    kTileVertically,
    kArrangeIcons,
    kCloseAll,
    kModules,
    kAbout,
    kFirstDatabase = 200,
    kFirstOperation = 1000,
    kFirstChild = 50000,
};

struct THostMenu {
    HMENU bar = nullptr;
    HMENU connection = nullptr;
    HMENU operations = nullptr;
    HMENU windows = nullptr;
};

// Makes a menu bar that shows the titles of the operations (code page 1251) unchanged. The window
// that gets the bar owns it.
THostMenu MakeHostMenu(const std::vector<std::string>& operations);
// Shows the databases (code page 1251) in the menu of the connection, in place of those that it
// shows.
void ShowLastDatabases(const THostMenu& menu, const std::vector<std::string>& databases);
// The keys of some of the commands.
TOwnedAccelerators MakeHostAccelerators();

}  // namespace tolvane::host
