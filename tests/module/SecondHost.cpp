// Another host in the test program's folder, as a process of its own: its windows use the same
// configuration file.
//
//   second_host add <event>      opens the list, adds scale 2 in the editor, closes the list
//   second_host toggle <event>   changes the first scale's mark and closes the list, again and
//   again
//   second_host frame <event>    shows a main window and nothing else, until it is closed
//
// The event is set when that was done for the first time.
#include "tests/module/SecondHost.h"

#include <windows.h>

#include <cstdint>
#include <exception>
#include <string>

#include "tests/support/module/Connection.h"
#include "tests/support/module/LoadedModule.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

class TSecondHost {
public:
    HWND Open() {
        module_.Start(frame_.Frame(), 17, &messageId_, frame_.Frame(), connection_.Database(),
                      nullptr, {nullptr, nullptr});
        RunLoopDry();
        return frame_.ChildOfClass(L"TElicomPluScaleListForm");
    }
    static void Close(HWND list) {
        SendMessageW(list, WM_CLOSE, 0, 0);
        RunLoopDry();
    }

private:
    THostFrame frame_;
    TConnection connection_{"shop.fdb"};
    TLoadedModule module_;
    std::uint32_t messageId_ = 0;
};

void ShowFrame(HANDLE done) {
    constexpr int kLongest = 600;
    const THostFrame frame;
    SetEvent(done);
    RunLoopUntil([&] { return IsWindow(frame.Frame()) == 0; }, kLongest);
}

void Work(const std::string& work, HANDLE done) {
    if (work == "frame") return ShowFrame(done);
    const int rounds = work == "toggle" ? 200 : 1;
    TSecondHost host;
    for (int i = 0; i < rounds; ++i) {
        const HWND list = host.Open();
        if (work == "add")
            AddScale(list, 2);
        else
            SetMark(list, 0, [](bool before) { return !before; });
        TSecondHost::Close(list);
        SetEvent(done);
    }
}

}  // namespace
}  // namespace tolvane::test

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const HANDLE done = OpenEventA(EVENT_MODIFY_STATE, FALSE, arguments[2]);
    if (done == nullptr) return 3;
    try {
        tolvane::test::Work(arguments[1], done);
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}
