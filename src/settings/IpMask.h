#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// The text of an address field: four groups of three places for digits with fixed dots between
// them, always 15 characters; an empty place is a space. Positions count characters from 0 to 15
// (after the last place).
class TIpMask {
public:
    static constexpr int kGroups = 4;
    static constexpr int kPlaces = 3;
    static constexpr int kLength = kGroups * (kPlaces + 1) - 1;

    // Part of the text, as an edit control reports its selection: from start to before end.
    struct TSelection {
        int start = 0;
        int end = 0;

        bool operator==(const TSelection&) const = default;
    };

    const std::string& Text() const { return text_; }
    // Digits go to their groups' places, left aligned; what fits no place is dropped. Blanks are
    // skipped.
    void SetText(std::string_view text);

    // What the user does. The result is where the caret is then, or nothing when the key or the
    // text is refused; the mask is then as it was.

    // Digits take the next place and move on over the dots; '.' and ',' go to the next group, but
    // stay at the beginning of one that has just been reached. What is selected is blanked first.
    std::optional<int> Type(char character, TSelection selection);
    // An address with dots replaces everything from any place; digits alone are typed from the
    // selection's start on.
    std::optional<int> Paste(std::string_view text, TSelection selection);
    // The selection, or the place before the caret.
    int Backspace(TSelection selection);
    // The selection, or the place at the caret.
    int Delete(TSelection selection);

private:
    void Blank(TSelection selection);

    std::string text_ = "   .   .   .   ";
};

}  // namespace tolvane
