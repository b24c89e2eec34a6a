#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// The text of an address field: four groups of three digit places with fixed dots between them,
// always 15 characters; an empty place is a space. A position is an index into the text, 0 to 15
// (after the last place).
class TIpMask {
public:
    static constexpr int kGroups = 4;
    static constexpr int kPlaces = 3;
    static constexpr int kLength = kGroups * (kPlaces + 1) - 1;

    // A part of the text, as an edit control reports its selection: from `start` up to, but not
    // including, `end`.
    struct TSelection {
        int start = 0;
        int end = 0;

        bool operator==(const TSelection&) const = default;
    };

    const std::string& Text() const { return text_; }
    // Puts the digits into the places of their groups, left-aligned. Skips blanks and drops what
    // does not fit.
    void SetText(std::string_view text);

    // What the user does. Each function returns the caret's new position; nothing means that the
    // key or the text was refused and the mask is as it was.

    // A digit takes the next place and moves the caret over a dot. '.' and ',' move the caret to
    // the next group, but not from the start of a group that it has just reached. Selected places
    // are blanked first.
    std::optional<int> Type(char character, TSelection selection);
    // An address with dots replaces the whole text, wherever the caret is; digits alone are typed
    // at the start of the selection.
    std::optional<int> Paste(std::string_view text, TSelection selection);
    // Blanks the selection, or the place before the caret.
    int Backspace(TSelection selection);
    // Blanks the selection, or the place at the caret.
    int Delete(TSelection selection);

private:
    void Blank(TSelection selection);

    std::string text_ = "   .   .   .   ";
};

}  // namespace tolvane
