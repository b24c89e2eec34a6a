#pragma once

#include <windows.h>

#include <functional>

namespace tolvane {

// Lets the user move the lines of a check list: drag them by their text or check box, or move the
// current line with Ctrl and the up and down arrows. It only calls `moved`, which must move the
// line. A click on a check box changes it when the button is released without a drag. The form that
// has the list owns this object and destroys it before the list. Interface thread.
class TLineDrag {
public:
    using TMoved = std::function<void(int from, int to)>;

    TLineDrag(HWND list, TMoved moved);
    TLineDrag(const TLineDrag&) = delete;
    TLineDrag& operator=(const TLineDrag&) = delete;
    ~TLineDrag();

    bool IsDragging() const noexcept { return dragging_; }
    // Ends a drag without moving the line.
    void Cancel() noexcept;

private:
    static LRESULT CALLBACK ListProcedure(HWND list, UINT id, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR subclass, DWORD_PTR drag) noexcept;
    // Returns whether the list must not get the message.
    bool Handle(UINT id, WPARAM wParam, LPARAM lParam);
    bool Press(WPARAM buttons, POINT point);
    void Move(POINT point);
    void Drop(POINT point);
    void ScrollAtEdge();
    bool MoveByKey(WPARAM key);
    // The line under the point on which the dragged line may be dropped, or -1.
    int TargetAt(POINT point) const;

    HWND list_;
    TMoved moved_;
    int line_ = -1;  // the pressed line
    bool onCheckBox_ = false;
    POINT pressed_{};
    bool dragging_ = false;
};

}  // namespace tolvane
