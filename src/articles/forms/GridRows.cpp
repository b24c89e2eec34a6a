#include "articles/forms/GridRows.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "window/Form.h"

namespace tolvane {
namespace {

// Fewer rows change their look quicker one by one than with the whole list.
constexpr int kMany = 100;

// Posted to the list view, which has no message of its own in this range.
constexpr UINT kResume = WM_APP;

void StopDrawing(HWND list) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
}

void StartDrawing(HWND list) {
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
}

// The list view draws nothing while this lives, and then everything: Wine's redraws each row that
// changes by a call of its own.
class TDrawingPause {
public:
    explicit TDrawingPause(HWND list) noexcept : list_(list) { StopDrawing(list_); }
    TDrawingPause(const TDrawingPause&) = delete;
    TDrawingPause& operator=(const TDrawingPause&) = delete;
    ~TDrawingPause() { StartDrawing(list_); }

private:
    HWND list_;
};

void SetItemState(HWND list, int item, UINT state, UINT mask) {
    LVITEMW change{};
    change.state = state;
    change.stateMask = mask;
    SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(item),
                 reinterpret_cast<LPARAM>(&change));
}

// Sets a flag for the length of a block.
class TQuiet {
public:
    explicit TQuiet(bool& quiet) : quiet_(quiet), before_(std::exchange(quiet, true)) {}
    TQuiet(const TQuiet&) = delete;
    TQuiet& operator=(const TQuiet&) = delete;
    ~TQuiet() { quiet_ = before_; }

private:
    bool& quiet_;
    bool before_;
};

}  // namespace

void TGridRows::Suspend() {
    paused_ = false;  // kResume must not end what Replace ends
    StopDrawing(list_);
    SetCount(0);
}

void TGridRows::Replace() {
    const TDrawingPause pause(list_);
    SetCount(view_.RowCount());
}

void TGridRows::SetCount(std::size_t count) {
    const TQuiet quiet(quiet_);
    // Without rows none is marked or current.
    SendMessageW(list_, LVM_SETITEMCOUNT, 0, 0);
    SendMessageW(list_, LVM_SETITEMCOUNT, count, 0);
    marks_.Reset(count);
    // The next range starts at the first row, not where one of the former rows stood.
    SendMessageW(list_, LVM_SETSELECTIONMARK, 0, count > 0 ? 0 : -1);
    if (count > 0) {
        SetItemState(list_, 0, LVIS_FOCUSED, LVIS_FOCUSED);
        SendMessageW(list_, LVM_ENSUREVISIBLE, 0, FALSE);
    }
}

void TGridRows::Reorder() {
    const TQuiet quiet(quiet_);
    const TDrawingPause pause(list_);
    ShowMarks();
}

// The list view keeps its selection as ranges of indexes. It gets the shorter of two lists of
// changes, from the top down: that way thousands of marks take no time.
void TGridRows::ShowMarks() {
    const std::size_t count = view_.RowCount();
    if (marks_.Count() == 0 || marks_.Count() == count) return;
    const bool most = marks_.Count() > count / 2;
    SetItemState(list_, -1, most ? LVIS_SELECTED : 0, LVIS_SELECTED);
    for (std::size_t index = 0; index < count; ++index) {
        if (marks_.IsMarked(view_.RowAt(index)) == most) continue;
        SetItemState(list_, static_cast<int>(index), most ? 0 : LVIS_SELECTED, LVIS_SELECTED);
    }
}

int TGridRows::CurrentIndex() const {
    return static_cast<int>(
        SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LPARAM{LVNI_FOCUSED}));
}

std::optional<TRowId> TGridRows::Current() const {
    const int index = CurrentIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= view_.RowCount()) return std::nullopt;
    return view_.RowAt(static_cast<std::size_t>(index));
}

void TGridRows::SetCurrent(TRowId row) {
    const auto index = static_cast<int>(view_.IndexOf(row));
    SetItemState(list_, index, LVIS_FOCUSED, LVIS_FOCUSED);
    // A range that the user extends starts here.
    SendMessageW(list_, LVM_SETSELECTIONMARK, 0, index);
    SendMessageW(list_, LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
}

bool TGridRows::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kResume) {
        ResumeDrawing();
        return true;
    }
    if (MayChangeMany(message, wParam, lParam)) PauseDrawing();
    return false;
}

bool TGridRows::MayChangeMany(UINT message, WPARAM key, LPARAM at) const {
    const bool isClick = message == WM_LBUTTONDOWN;
    const bool isKey = message == WM_KEYDOWN && key >= VK_SPACE && key <= VK_DOWN;
    if (!isClick && !isKey) return false;
    const bool extends = IsKeyDown(VK_SHIFT);
    if (marks_.Count() > kMany) return extends || !IsKeyDown(VK_CONTROL);
    if (!extends) return false;
    int row = CurrentIndex();
    if (isClick) {
        LVHITTESTINFO hit{};
        hit.pt = {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
        row = static_cast<int>(SendMessageW(list_, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    } else if (key == VK_HOME) {
        row = 0;
    } else if (key == VK_END) {
        row = static_cast<int>(view_.RowCount()) - 1;
    }
    const auto from = static_cast<int>(SendMessageW(list_, LVM_GETSELECTIONMARK, 0, 0));
    return std::abs(row - from) > kMany;
}

void TGridRows::PauseDrawing() {
    if (paused_ || PostMessageW(list_, kResume, 0, 0) == 0) return;
    paused_ = true;
    StopDrawing(list_);
}

void TGridRows::ResumeDrawing() {
    if (std::exchange(paused_, false)) StartDrawing(list_);
}

bool TGridRows::HandleChange(const NMHDR& header) {
    if (header.code == LVN_ITEMCHANGED) {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
        const UINT changed = change.uOldState ^ change.uNewState;
        if (!quiet_ && (change.uChanged & LVIF_STATE) != 0 && (changed & LVIS_SELECTED) != 0)
            ChangeMarks(change.iItem, change.iItem, (change.uNewState & LVIS_SELECTED) != 0);
        return true;
    }
    if (header.code == LVN_ODSTATECHANGED) {
        const auto& change = reinterpret_cast<const NMLVODSTATECHANGE&>(header);
        const UINT changed = change.uOldState ^ change.uNewState;
        if (!quiet_ && (changed & LVIS_SELECTED) != 0)
            ChangeMarks(change.iFrom, change.iTo, (change.uNewState & LVIS_SELECTED) != 0);
        return true;
    }
    return false;
}

// A change of one row or of a range that the list view reports; -1 means all rows.
void TGridRows::ChangeMarks(int from, int to, bool marked) {
    const bool hadMarks = HasMarks();
    StoreMarks(from, to, marked);
    // The current row looks different with and without marks.
    if (hadMarks != HasMarks()) RedrawCurrent();
}

void TGridRows::RedrawCurrent() {
    if (const int index = CurrentIndex(); index >= 0)
        SendMessageW(list_, LVM_REDRAWITEMS, static_cast<WPARAM>(index), index);
}

void TGridRows::StoreMarks(int from, int to, bool marked) {
    const auto count = static_cast<int>(view_.RowCount());
    if (from < 0 && !marked) {
        marks_.Clear();
        return;
    }
    const int first = std::max(from, 0);
    const int last = from < 0 ? count - 1 : std::min(to, count - 1);
    for (int index = first; index <= last; ++index) {
        const TRowId row = view_.RowAt(static_cast<std::size_t>(index));
        if (marked)
            marks_.Mark(row);
        else
            marks_.Unmark(row);
    }
}

std::size_t TGridRows::FirstDrawn() const {
    return static_cast<std::size_t>(SendMessageW(list_, LVM_GETTOPINDEX, 0, 0));
}

// The last drawn row may be cut off by the list's lower edge; a row that begins there is not drawn.
std::size_t TGridRows::EndOfDrawn() const {
    RECT client{};
    GetClientRect(list_, &client);
    const auto isDrawn = [&](std::size_t index) {
        RECT row{LVIR_BOUNDS, 0, 0, 0};
        SendMessageW(list_, LVM_GETITEMRECT, index, reinterpret_cast<LPARAM>(&row));
        return row.top < client.bottom;
    };
    const std::size_t count = view_.RowCount();
    std::size_t end = FirstDrawn();
    while (end < count && isDrawn(end))
        ++end;
    return end;
}

}  // namespace tolvane
