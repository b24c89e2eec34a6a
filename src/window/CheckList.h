#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// A list of lines with check boxes (a list view of kind CheckList). A plain handle, not an owner.
// Lines count from 0. Interface thread.
class TCheckList {
public:
    explicit TCheckList(HWND list) noexcept : list_(list) {}

    struct TLine {
        std::wstring text;
        bool checked = false;
    };

    int Count() const;
    // Replaces all lines.
    void Fill(std::vector<TLine> lines);
    std::string Text(int index) const;
    bool IsChecked(int index) const;
    void SetChecked(int index, bool checked);
    // The line that has the focus, or -1.
    int Current() const;
    void SetCurrent(int index);
    void Remove(int index);
    // Takes a line out, with its check mark, and inserts it at the other index.
    void Move(int from, int to);
    // The column gets the width of the longest line.
    void FitColumn();
    // Makes the list lower by the part of a line that shows at its lower edge, if lines are beyond.
    void ShowWholeLines() const;

private:
    void Insert(int at, TLine line);
    std::wstring WideTextOf(int index) const;

    HWND list_;
};

// Gives a freshly made list view its check boxes and its only column.
void PrepareCheckList(HWND list);

}  // namespace tolvane
