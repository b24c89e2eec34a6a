#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace tolvane::test {

// While it lives, drives the first visible window of a class on this thread, from inside its own
// message loop: one step after the other, each when all that the one before caused has been
// handled and no other window is open in front. A window that is still there seconds after the last
// step is closed and counts as left open.
class TDialogScript {
public:
    using TStep = std::function<void(HWND window)>;

    TDialogScript(std::wstring className, std::vector<TStep> steps);
    TDialogScript(const TDialogScript&) = delete;
    TDialogScript& operator=(const TDialogScript&) = delete;
    ~TDialogScript();

    // Every step has run.
    bool IsDone() const { return next_ >= steps_.size(); }
    bool WasLeftOpen() const { return leftOpen_; }

private:
    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    void RunNext();
    HWND Window() const;

    std::wstring className_;
    std::vector<TStep> steps_;
    UINT_PTR timer_;
    std::size_t next_ = 0;
    DWORD doneAt_ = 0;
    bool inStep_ = false;
    bool leftOpen_ = false;
};

// Controls by component name.
HWND ControlOf(HWND window, const std::string& name);
std::string TextOf(HWND window, const std::string& name);  // UTF-8
void SetTextOf(HWND window, const std::string& name, const std::wstring& text);
bool IsEnabledIn(HWND window, const std::string& name);
void Press(HWND window, const std::string& name);  // a button
TDialogScript::TStep Pressing(std::string name);
void Choose(HWND combo, int index);  // as the user does
std::vector<std::string> ComboItems(HWND window, const std::string& name);
int ComboChoice(HWND window, const std::string& name);
bool IsRadioOn(HWND window, const std::string& name);

// A click of the left button at a point of the control; the button goes up when the step is over.
void ClickAt(HWND control, POINT at);

// Keys to whatever has the focus, through the window's own message loop; handled when the step is
// over.
void PostKey(int virtualKey);
void PostText(const std::wstring& text);
// Ctrl, Shift while it lives, for keys that are handled then.
class THeldKey {
public:
    explicit THeldKey(int virtualKey);
    THeldKey(const THeldKey&) = delete;
    THeldKey& operator=(const THeldKey&) = delete;
    ~THeldKey();

private:
    int virtualKey_;
};

// A picture of the window, its name ending in the resolution.
void Picture(HWND window, const std::string& name);

}  // namespace tolvane::test
