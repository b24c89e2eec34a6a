#pragma once

#include <windows.h>

#include <functional>
#include <map>

#include "tests/support/window/Controls.h"

namespace tolvane::test {

// A host's main window: an MDI frame and a message loop that knows nothing of any module (no
// dialog keys, no accelerators). One per thread of the test.
class THostFrame {
public:
    THostFrame();
    THostFrame(const THostFrame&) = delete;
    THostFrame& operator=(const THostFrame&) = delete;
    ~THostFrame();

    HWND Frame() const { return frame_; }
    HWND Client() const { return client_; }
    // How many messages with that number have reached the frame.
    int Received(UINT message) const;
    void Forget() { received_.clear(); }
    // Makes an MDI child of the host's own, carrying a component name (null: none).
    HWND AddChild(const char* componentName);
    // Window of a class among the MDI children; null when there is none.
    HWND ChildOfClass(const wchar_t* className) const;
    int ChildrenOfClass(const wchar_t* className) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND frame_ = nullptr;
    HWND client_ = nullptr;
    std::map<UINT, int> received_;
};

// Runs the host's message loop until the condition holds. Returns false when it does not within
// `seconds`.
bool RunLoopUntil(const std::function<bool()>& condition, int seconds = 20);
// Handles the messages that wait.
void RunLoopDry();

}  // namespace tolvane::test
