#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "articles/forms/GridView.h"
#include "articles/forms/RowMarks.h"

namespace tolvane {

// The rows of the article grid in its list view: which one is current, which ones are marked and
// in what order. Interface thread.
class TGridRows {
public:
    // The view outlives the object.
    explicit TGridRows(const TGridView& view) : view_(view) {}

    // Takes the list view into use. Must be called once, before the other functions.
    void Attach(HWND list) { list_ = list; }

    // Takes the rows away and draws nothing until Replace. The view has no rows now.
    void Suspend();
    // Shows rows that replace the former ones: without marks, the first row is the current one.
    void Replace();
    // Shows the same rows in another order. The marks stay with their rows; the row at the index of
    // the former current row becomes the current one.
    void Reorder();

    std::optional<TRowId> Current() const;
    // Makes the row current and brings it into view; marks stay.
    void SetCurrent(TRowId row);
    std::vector<TRowId> Marked() const { return marks_.InOrder(); }
    bool HasMarks() const { return marks_.Count() > 0; }

    // The list view's messages come by here first. Returns whether this one is done with. A key or
    // a click that may mark or unmark many rows stops the drawing until messages are read again:
    // the list view can hold a click until the button is up.
    bool HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Takes over what the user has marked. Returns whether the message was a change of state.
    bool HandleChange(const NMHDR& header);

    // The indexes of the rows that are in sight: the first, and the one after the last.
    std::size_t FirstDrawn() const;
    std::size_t EndOfDrawn() const;

private:
    // Below 0: no row is current.
    int CurrentIndex() const;
    void SetCount(std::size_t count);
    void RedrawCurrent();
    void ShowMarks();
    void ChangeMarks(int from, int to, bool marked);
    void StoreMarks(int from, int to, bool marked);
    bool MayChangeMany(UINT message, WPARAM key, LPARAM at) const;
    void PauseDrawing();
    void ResumeDrawing();

    const TGridView& view_;
    HWND list_ = nullptr;
    TRowMarks marks_;
    bool quiet_ = false;   // what the list view reports comes from this class, not from the user
    bool paused_ = false;  // the list view draws nothing until it gets kResume
};

}  // namespace tolvane
