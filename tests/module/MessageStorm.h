#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Draw.h"
#include "tests/support/window/CallRoom.h"
#include "tests/support/window/MessageWindow.h"

namespace tolvane::test {

// Posts random messages, such as a user and the system cause, to the windows of the thread that
// made it, from a thread of its own: commands, keys, characters, clicks, the wheel, sizes,
// activation, timers, scrolling, closing; never one with a pointer. It opens and answers dialogs.
// It leaves alone what would leave this machine: the addresses of scales, their connections and the
// search. When so many message loops are nested that the system might soon lose messages (see
// TCallRoom), it ends some before it goes on.
class TMessageStorm {
public:
    // `spared` is a window that gets no message.
    TMessageStorm(std::uint32_t seed, DWORD milliseconds, HWND spared);
    TMessageStorm(const TMessageStorm&) = delete;
    TMessageStorm& operator=(const TMessageStorm&) = delete;
    ~TMessageStorm();

    // To be called from the outermost message loop, again and again. The storm is over when its
    // time has passed, and then all dialogs and menus have been closed.
    bool IsOver();
    // Its time has passed.
    bool IsEnding() const { return ending_; }
    int Messages() const { return messages_; }
    int RoomMade() const { return roomMade_; }
    // Ends the storm and tells which window of the thread is in front of the main windows.
    std::string InFront();

private:
    struct TTarget {
        HWND window;
        HWND top;
        std::wstring className;
        bool isForm = false;  // a main window, the list or a dialog of the module
    };
    enum class TKind : std::uint8_t;

    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam);
    static BOOL CALLBACK AddTop(HWND window, LPARAM parameter);
    static BOOL CALLBACK AddChild(HWND window, LPARAM parameter);
    void BeginRun();
    void Run();
    void Blow();
    void FindTargets();
    bool IsMenuOpen() const;
    void Add(HWND window, HWND top);
    const TTarget& Draw();
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    void PostKind(TKind kind, const TTarget& to);
    void PostCommand(const TTarget& to);
    void PostKey(const TTarget& to, bool system);
    void PostCharacter(const TTarget& to);
    void PostClick(const TTarget& to);
    void PostOtherMouse(const TTarget& to);
    void PostSystemCommand(const TTarget& to);
    void PostSystemNews(const TTarget& to);
    void PostMdi(const TTarget& to);
    void PostSize(const TTarget& to);
    void PostClose(const TTarget& to);
    void PostAnswer();
    LPARAM PointIn(HWND window);
    void WaitUntilRead();
    void MakeRoom();
    void CalmDown();
    void EndLoops();
    static void EndWaiting(HWND window);
    void CloseFront();
    std::string Front() const;

    TDraw draw_;
    DWORD milliseconds_;
    HWND spared_;
    DWORD watched_ = GetCurrentThreadId();
    TMessageWindow helperWindow_;
    HWND helper_ = helperWindow_.Handle();
    std::vector<TTarget> targets_;
    std::vector<std::size_t> inFront_;  // indexes of the front window and its controls
    HWND front_ = nullptr;              // the dialog, message box or menu in front
    TCallRoom callRoom_;
    int mark_ = 0;
    std::atomic<int> read_ = 0;  // the last mark
    std::atomic<int> room_ = 0;  // for calls, when it was read
    std::atomic<int> roomMade_ = 0;
    std::atomic<int> turns_ = 0;
    std::atomic<bool> ending_ = false;
    std::atomic<bool> over_ = false;
    std::atomic<int> messages_ = 0;
    std::thread thread_;
};

}  // namespace tolvane::test
