#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "articles/forms/GridView.h"
#include "articles/forms/RowMarks.h"

namespace tolvane {

// The list view draws nothing while this lives, and then everything: Wine's redraws each row that
// changes by a call of its own.
class TDrawingPause {
public:
    explicit TDrawingPause(HWND list) noexcept : list_(list) {
        SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    }
    TDrawingPause(const TDrawingPause&) = delete;
    TDrawingPause& operator=(const TDrawingPause&) = delete;
    ~TDrawingPause() {
        SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(list_, nullptr, TRUE);
    }

private:
    HWND list_;
};

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

    // Whether the message is a key that may mark or unmark many rows. A click may as well, but a
    // list view can hold it until the button is up, and must draw meanwhile.
    bool MayChangeMany(UINT message, WPARAM key) const;
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

    const TGridView& view_;
    HWND list_ = nullptr;
    TRowMarks marks_;
    bool quiet_ = false;  // what the list view reports comes from this class, not from the user
};

}  // namespace tolvane
