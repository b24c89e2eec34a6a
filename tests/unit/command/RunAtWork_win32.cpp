// The program that the tests of killed runs kill, at work in its working folder.
//
//   run_at_work write <name> <seed>   writes to the scale in the mapping <name>-scale for ever, and
//                                     sets the event <name> after the first save
//   run_at_work lock <name>           holds the scale's lock, and sets the event
#include "tests/unit/command/RunAtWork.h"

#include <windows.h>

#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "command/RunLock.h"

namespace tolvane::test {
namespace {

void Write(HANDLE started, const std::string& name, unsigned seed) {
    const HANDLE mapping = OpenFileMappingA(FILE_MAP_WRITE, FALSE, (name + "-scale").c_str());
    void* memory = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(TScaleMemory));
    if (memory == nullptr) return;
    WriteForEver(std::filesystem::current_path(), seed, *static_cast<TScaleMemory*>(memory),
                 [&] { SetEvent(started); });
}

void Lock(HANDLE started, const std::string& name) {
    const TRunLock lock(std::filesystem::current_path(), TcpScale(), TMilliseconds(0),
                        SystemClock(), nullptr, {{name, "this scale"}});
    if (lock.IsHeld()) SetEvent(started);
    Sleep(INFINITE);
}

}  // namespace
}  // namespace tolvane::test

// Ending at all is a failure that the test sees.
int main(int count, char** arguments) {
    if (count < 3) return 2;
    const HANDLE started = OpenEventA(EVENT_MODIFY_STATE, FALSE, arguments[2]);
    if (started == nullptr) return 3;
    try {
        if (arguments[1] == std::string_view("lock"))
            tolvane::test::Lock(started, arguments[2]);
        else if (count == 4)
            tolvane::test::Write(started, arguments[2],
                                 static_cast<unsigned>(std::atoi(arguments[3])));
    } catch (const std::exception&) {
        return 1;
    }
}
