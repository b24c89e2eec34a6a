#include "settings/IpMask.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "text/Cp1251.h"
#include "text/IpAddress.h"

namespace tolvane {
namespace {

constexpr int kGroupStride = TIpMask::kPlaces + 1;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsDot(int position) {
    return position % kGroupStride == TIpMask::kPlaces;
}

// The first place at or after a position: at a dot, a digit goes after it.
int PlaceAt(int position) {
    return IsDot(position) ? position + 1 : position;
}

// Four groups of up to three digits, blanks around each.
bool IsAddress(std::string_view text) {
    const std::vector<std::string_view> groups = SplitAtDots(text);
    return groups.size() == TIpMask::kGroups &&
           std::all_of(groups.begin(), groups.end(), [](std::string_view group) {
               const std::string_view digits = Trim(group);
               return digits.size() <= TIpMask::kPlaces &&
                      std::all_of(digits.begin(), digits.end(), IsDigit);
           });
}

}  // namespace

void TIpMask::SetText(std::string_view text) {
    Blank({0, kLength});
    int group = 0;
    int place = 0;
    for (const char c : text) {
        if (c == '.') {
            ++group;
            place = 0;
        } else if (IsDigit(c) && group < kGroups && place < kPlaces) {
            const int at = group * kGroupStride + place++;
            text_[static_cast<std::size_t>(at)] = c;
        }
    }
}

void TIpMask::Blank(TSelection selection) {
    const int end = std::min(selection.end, kLength);
    for (int position = std::max(selection.start, 0); position < end; ++position) {
        if (!IsDot(position)) text_[static_cast<std::size_t>(position)] = ' ';
    }
}

std::optional<int> TIpMask::Type(char character, TSelection selection) {
    const int start = std::clamp(selection.start, 0, kLength);
    if (character == '.' || character == ',') {
        const int group = start / kGroupStride;
        const bool justReached = start % kGroupStride == 0 && selection.end <= start && group > 0;
        if (justReached) return start;
        if (group == kGroups - 1) return std::nullopt;
        return (group + 1) * kGroupStride;
    }
    const int place = PlaceAt(start);
    if (!IsDigit(character) || place >= kLength) return std::nullopt;
    Blank(selection);
    text_[static_cast<std::size_t>(place)] = character;
    return place + 1 < kLength ? PlaceAt(place + 1) : kLength;
}

std::optional<int> TIpMask::Paste(std::string_view text, TSelection selection) {
    const std::string_view trimmed = Trim(text);
    if (IsAddress(trimmed)) {
        SetText(trimmed);
        return kLength;
    }
    if (trimmed.empty() || !std::all_of(trimmed.begin(), trimmed.end(), IsDigit))
        return std::nullopt;
    const TIpMask before = *this;
    Blank(selection);
    int caret = selection.start;
    for (const char digit : trimmed) {
        const auto next = Type(digit, {caret, caret});
        if (!next) {
            *this = before;
            return std::nullopt;
        }
        caret = *next;
    }
    return caret;
}

int TIpMask::Backspace(TSelection selection) {
    if (selection.end > selection.start) {
        Blank(selection);
        return selection.start;
    }
    int place = std::min(selection.start, kLength) - 1;
    if (place >= 0 && IsDot(place)) --place;
    if (place < 0) return 0;
    Blank({place, place + 1});
    return place;
}

int TIpMask::Delete(TSelection selection) {
    if (selection.end > selection.start) {
        Blank(selection);
        return selection.start;
    }
    const int place = PlaceAt(std::clamp(selection.start, 0, kLength));
    Blank({place, place + 1});
    return std::min(place, kLength);
}

}  // namespace tolvane
