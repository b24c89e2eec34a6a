#pragma once

#include <windows.h>

#include <functional>

namespace tolvane {

// Lets the user drag the lines of a check list to other places, by their text or their check box,
// and move the current line with Ctrl and the up and down arrows. The lines stay where they are;
// `moved` is to move them. A click on a check box that became no drag ticks it when the button goes
// up. Belongs to the form that has the list, and goes before it.
class TLineDrag {
public:
    using TMoved = std::function<void(int from, int to)>;

    TLineDrag(HWND list, TMoved moved);
    TLineDrag(const TLineDrag&) = delete;
    TLineDrag& operator=(const TLineDrag&) = delete;
    ~TLineDrag();

    bool IsDragging() const noexcept { return dragging_; }
    // Ends a drag without a drop.
    void Cancel() noexcept;

private:
    static LRESULT CALLBACK ListProcedure(HWND list, UINT id, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR subclass, DWORD_PTR drag) noexcept;
    // True when the list is not to see the message.
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
