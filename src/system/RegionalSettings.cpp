#include "system/RegionalSettings.h"

#include <cstddef>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

// A piece of a pattern: a letter with its count of repeats, or a literal text (letter 0).
struct TPiece {
    char letter = 0;
    std::size_t count = 0;
    std::string literal;
};
using TPieces = std::vector<TPiece>;

void AddLiteral(TPieces& pieces, char c) {
    if (pieces.empty() || pieces.back().letter != 0) pieces.emplace_back();
    pieces.back().literal += c;
}

// The end of quoted text that starts at `at`; a doubled quote stands for itself.
std::size_t TakeQuoted(TPieces& pieces, std::string_view pattern, std::size_t at) {
    while (++at < pattern.size()) {
        if (pattern[at] == '\'') {
            if (at + 1 >= pattern.size() || pattern[at + 1] != '\'') return at + 1;
            ++at;
        }
        AddLiteral(pieces, pattern[at]);
    }
    return at;
}

TPieces Split(std::string_view pattern, std::string_view letters) {
    TPieces pieces;
    for (std::size_t at = 0; at < pattern.size();) {
        const char c = pattern[at];
        if (c == '\'') {
            at = TakeQuoted(pieces, pattern, at);
        } else if (letters.find(c) != std::string_view::npos) {
            const std::size_t start = at;
            while (at < pattern.size() && pattern[at] == c)
                ++at;
            pieces.push_back({c, at - start, {}});
        } else {
            AddLiteral(pieces, c);
            ++at;
        }
    }
    return pieces;
}

std::string Number(int value, std::size_t digits) {
    std::string text = std::to_string(value);
    if (text.size() < digits) text.insert(0, digits - text.size(), '0');
    return text;
}

template <std::size_t N>
std::string NameOf(const std::array<std::string, N>& names, int fromOne) {
    if (fromOne < 1 || fromOne > static_cast<int>(N)) return {};
    return names[static_cast<std::size_t>(fromOne - 1)];
}

std::string MonthText(int month, std::size_t count, const TRegionalSettings& regional) {
    if (count < 3) return Number(month, count);
    const std::string name = NameOf(count == 3 ? regional.shortMonths : regional.longMonths, month);
    return name.empty() ? Number(month, 2) : name;
}

std::string DateText(const TPiece& piece, TDate date, const TRegionalSettings& regional) {
    switch (piece.letter) {
        case 'd':
            if (piece.count < 3) return Number(date.day, piece.count);
            return NameOf(piece.count == 3 ? regional.shortDays : regional.longDays,
                          DayOfWeek(date));
        case 'M':
            return MonthText(date.month, piece.count, regional);
        case 'y':
            if (piece.count < 3) return Number(date.year % 100, piece.count);
            return Number(date.year, 4);
        default:
            return piece.literal;
    }
}

int OnTwelveHourDial(int hour) {
    return (hour + 11) % 12 + 1;
}

// Hours, minutes and seconds have at most two digits, even if the pattern repeats its letter more
// often.
std::size_t TimeDigits(const TPiece& piece) {
    return piece.count < 2 ? 1 : 2;
}

std::string HalfOfDay(const TPiece& piece, int hour, const TRegionalSettings& regional) {
    const std::string& text = hour < 12 ? regional.morning : regional.afternoon;
    return piece.count == 1 ? text.substr(0, 1) : text;
}

std::string TimeText(const TPiece& piece, TTimeOfDay time, const TRegionalSettings& regional) {
    switch (piece.letter) {
        case 'H':
            return Number(time.hour, TimeDigits(piece));
        case 'h':
            return Number(OnTwelveHourDial(time.hour), TimeDigits(piece));
        case 'm':
            return Number(time.minute, TimeDigits(piece));
        case 's':
            return Number(time.second, TimeDigits(piece));
        case 't':
            return HalfOfDay(piece, time.hour, regional);
        default:
            return piece.literal;
    }
}

class TTimeReader {
public:
    TTimeReader(std::string_view text, const TRegionalSettings& regional)
        : text_(Trim(text)), regional_(regional) {}

    std::optional<TTimeOfDay> Read(const TPieces& pieces) {
        for (const TPiece& piece : pieces) {
            text_ = Trim(text_);
            if (!Take(piece)) return std::nullopt;
        }
        if (!text_.empty() || !InRange()) return std::nullopt;
        return time_;
    }

private:
    bool Take(const TPiece& piece) {
        switch (piece.letter) {
            case 'H':
                return TakeNumber(time_.hour);
            case 'h':
                onDial_ = true;
                return TakeNumber(time_.hour);
            case 'm':
                return TakeNumber(time_.minute);
            case 's':
                return TakeNumber(time_.second);
            case 't':
                return TakeHalfOfDay(piece);
            default:
                return TakeLiteral(Trim(piece.literal));
        }
    }

    bool TakeNumber(int& value) {
        std::size_t digits = 0;
        value = 0;
        while (digits < 2 && digits < text_.size() && text_[digits] >= '0' && text_[digits] <= '9')
            value = value * 10 + (text_[digits++] - '0');
        text_.remove_prefix(digits);
        return digits > 0;
    }

    bool TakeLiteral(std::string_view literal) {
        if (!EqualIgnoringCase(text_.substr(0, literal.size()), literal)) return false;
        text_.remove_prefix(literal.size());
        return true;
    }

    // Without "am" or "pm", the hour counts from 0 to 23.
    bool TakeHalfOfDay(const TPiece& piece) {
        const std::string morningText = HalfOfDay(piece, 0, regional_);
        const std::string afternoonText = HalfOfDay(piece, 12, regional_);
        const std::string_view morning = Trim(morningText);
        const std::string_view afternoon = Trim(afternoonText);
        if (!afternoon.empty() && TakeLiteral(afternoon)) {
            half_ = 2;
        } else if (!morning.empty() && TakeLiteral(morning)) {
            half_ = 1;
        }
        return true;
    }

    bool InRange() {
        if (onDial_ && half_ != 0) {
            if (time_.hour > 12) return false;
            time_.hour = time_.hour % 12 + (half_ == 2 ? 12 : 0);
        }
        return time_.hour < 24 && time_.minute < 60 && time_.second < 60;
    }

    std::string_view text_;
    const TRegionalSettings& regional_;
    TTimeOfDay time_;
    bool onDial_ = false;
    int half_ = 0;  // 0 unknown, 1 before noon, 2 from noon on
};

constexpr std::string_view kDateLetters = "dMy";
constexpr std::string_view kTimeLetters = "Hhmst";

// Without the seconds and the separator before them.
TPieces WithoutSeconds(const TPieces& pieces) {
    TPieces shorter;
    for (const TPiece& piece : pieces) {
        if (piece.letter != 's') {
            shorter.push_back(piece);
        } else if (!shorter.empty() && shorter.back().letter == 0) {
            shorter.pop_back();
        }
    }
    return shorter;
}

}  // namespace

char UsableDecimalSeparator(char separator) {
    const bool hasOtherMeaning =
        std::string_view("0123456789+-eE|").find(separator) != std::string_view::npos;
    return hasOtherMeaning || static_cast<unsigned char>(separator) < ' ' ? '.' : separator;
}

std::string FormatDate(TDate date, const TRegionalSettings& regional) {
    std::string out;
    for (const TPiece& piece : Split(regional.shortDatePattern, kDateLetters))
        out += DateText(piece, date, regional);
    return out;
}

std::string FormatTime(TTimeOfDay time, const TRegionalSettings& regional) {
    std::string out;
    for (const TPiece& piece : Split(regional.longTimePattern, kTimeLetters))
        out += TimeText(piece, time, regional);
    return out;
}

std::optional<TTimeOfDay> ParseTime(std::string_view text, const TRegionalSettings& regional) {
    for (const std::string_view pattern :
         {std::string_view(regional.longTimePattern), std::string_view("H:m:s")}) {
        const TPieces pieces = Split(pattern, kTimeLetters);
        for (const TPieces& form : {pieces, WithoutSeconds(pieces)}) {
            if (const auto time = TTimeReader(text, regional).Read(form)) return time;
        }
    }
    return std::nullopt;
}

}  // namespace tolvane
