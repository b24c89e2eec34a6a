// The program that the kill tests kill, at work on "a.ini" in its working folder.
//
//   config_saver save <name of an event>   saves two contents in turn, for ever, and sets the event
//                                          after the first
//   config_saver lock <name of an event>   locks the file, sets the event, and keeps the lock
#include <windows.h>

#include <exception>
#include <filesystem>
#include <string_view>

#include "config/IniFile.h"
#include "system/FileLock.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane {
namespace {

void SaveForEver(HANDLE started) {
    const std::filesystem::path file = std::filesystem::current_path() / "a.ini";
    const TIniDocument versions[] = {SavedVersion('1'), SavedVersion('2')};
    WriteIniFile(file, versions[0]);
    SetEvent(started);
    for (int save = 1;; ++save)
        WriteIniFile(file, versions[save % 2]);
}

void LockForEver(HANDLE started) {
    const TFileLock lock(std::filesystem::current_path() / "a.ini");
    if (lock.IsHeld()) SetEvent(started);
    Sleep(INFINITE);
}

}  // namespace
}  // namespace tolvane

// It never ends by itself; if it does, the test fails.
int main(int count, char** arguments) {
    if (count != 3) return 2;
    const HANDLE started = OpenEventA(EVENT_MODIFY_STATE, FALSE, arguments[2]);
    if (started == nullptr) return 3;
    try {
        if (arguments[1] == std::string_view("lock"))
            tolvane::LockForEver(started);
        else
            tolvane::SaveForEver(started);
    } catch (const std::exception&) {
        return 1;
    }
}
