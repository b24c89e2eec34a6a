// The program that the kill test kills: saves two contents of "a.ini" in its working folder in
// turn, for ever, and sets an event after the first.
//
//   config_saver <name of the event>
#include <windows.h>

#include <exception>

#include "config/IniFile.h"
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

}  // namespace
}  // namespace tolvane

// Ending at all is a failure that the test sees.
int main(int count, char** arguments) {
    if (count != 2) return 2;
    const HANDLE started = OpenEventA(EVENT_MODIFY_STATE, FALSE, arguments[1]);
    if (started == nullptr) return 3;
    try {
        tolvane::SaveForEver(started);
    } catch (const std::exception&) {
        return 1;
    }
}
