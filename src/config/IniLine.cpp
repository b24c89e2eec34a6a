#include "config/IniLine.h"

#include <algorithm>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LeMark = "\xFF\xFE";
constexpr std::string_view kUtf16BeMark = "\xFE\xFF";

// The blanks of the system's INI calls: blank, tabs, line ends and the old end-of-file mark.
constexpr bool IsBlank(unsigned unit) {
    return unit == ' ' || (unit >= '\t' && unit <= '\r') || unit == 0x1A;
}

// A text as units of its encoding: bytes, or 16-bit units of UTF-16. An odd byte left over at the
// end is not a unit.
class TUnits {
public:
    TUnits(std::string_view bytes, TIniEncoding encoding)
        : bytes_(bytes),
          width_(IniUnitSize(encoding)),
          low_(encoding == TIniEncoding::Utf16Be ? 1 : 0) {}

    std::size_t Size() const { return bytes_.size() / width_; }
    std::size_t Width() const { return width_; }
    unsigned operator[](std::size_t i) const {
        if (width_ == 1) return Byte(i);
        return Byte(2 * i + low_) | (Byte(2 * i + 1 - low_) << 8U);
    }
    std::size_t Find(char c, std::size_t from, std::size_t to) const {
        while (from < to && (*this)[from] != static_cast<unsigned char>(c))
            ++from;
        return from;
    }
    std::string_view Bytes(std::size_t from, std::size_t to) const {
        return bytes_.substr(from * width_, (to - from) * width_);
    }

private:
    unsigned Byte(std::size_t i) const { return static_cast<unsigned char>(bytes_[i]); }

    std::string_view bytes_;
    std::size_t width_;
    std::size_t low_;  // where a 16-bit unit has its low byte
};

// Unit positions of a text without the blanks around it.
struct TSpan {
    std::size_t from;
    std::size_t to;
};

TSpan TrimUnits(const TUnits& units, TSpan span) {
    while (span.from < span.to && IsBlank(units[span.from]))
        ++span.from;
    while (span.from < span.to && IsBlank(units[span.to - 1]))
        --span.to;
    return span;
}

// Whether DecodeIni would give the same bytes.
bool IsCp1251(std::string_view bytes, TIniEncoding encoding) {
    if (encoding == TIniEncoding::Cp1251) return true;
    return encoding == TIniEncoding::Utf8 &&
           std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsQuote(char c) {
    return c == '"' || c == '\'';
}

// The no-break space too, because some other programs drop it.
bool IsDroppedAtEnds(char c) {
    return IsBlank(static_cast<unsigned char>(c)) || c == '\xA0';
}

}  // namespace

TIniMark ReadIniMark(std::string_view file) {
    if (file.starts_with(kUtf8Mark)) return {TIniEncoding::Utf8, kUtf8Mark.size()};
    if (file.starts_with(kUtf16LeMark)) return {TIniEncoding::Utf16Le, kUtf16LeMark.size()};
    if (file.starts_with(kUtf16BeMark)) return {TIniEncoding::Utf16Be, kUtf16BeMark.size()};
    return {};
}

std::string DecodeIni(std::string_view bytes, TIniEncoding encoding) {
    if (encoding == TIniEncoding::Utf8 && IsUtf8(bytes)) return FromUtf8(bytes);
    if (IniUnitSize(encoding) == 1) return std::string(bytes);
    const TUnits units(bytes, encoding);
    std::u16string wide;
    for (std::size_t i = 0; i < units.Size(); ++i)
        wide += static_cast<char16_t>(units[i]);
    return FromUtf16(wide);
}

std::string EncodeIni(std::string_view text, TIniEncoding encoding) {
    if (encoding == TIniEncoding::Cp1251) return std::string(text);
    if (encoding == TIniEncoding::Utf8) return ToUtf8(text);
    std::string bytes;
    for (const char16_t unit : ToUtf16(text)) {
        const auto low = static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
        const auto high = static_cast<char>(static_cast<unsigned char>(unit >> 8U));
        bytes += encoding == TIniEncoding::Utf16Be ? high : low;
        bytes += encoding == TIniEncoding::Utf16Be ? low : high;
    }
    return bytes;
}

std::vector<std::string_view> SplitIniLines(std::string_view bytes, TIniEncoding encoding) {
    const TUnits units(bytes, encoding);
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < units.Size(); ++i) {
        const bool beforeLf = i + 1 < units.Size() && units[i + 1] == '\n';
        if (units[i] != '\n' && (units[i] != '\r' || beforeLf)) continue;
        lines.push_back(units.Bytes(start, i + 1));
        start = i + 1;
    }
    const std::string_view rest = bytes.substr(start * units.Width());
    if (!rest.empty()) lines.push_back(rest);
    return lines;
}

std::string_view IniLineEnd(std::string_view line, TIniEncoding encoding) {
    const TUnits units(line, encoding);
    std::size_t from = units.Size();
    if (from > 0 && units[from - 1] == '\n') --from;
    if (from > 0 && units[from - 1] == '\r') --from;
    return units.Bytes(from, units.Size());
}

TIniLine ReadIniLine(std::string_view line, TIniEncoding encoding) {
    const TUnits units(line, encoding);
    const TSpan text = TrimUnits(units, {0, units.Size()});
    const auto name = [&](TSpan span) {
        const TSpan trimmed = TrimUnits(units, span);
        return units.Bytes(trimmed.from, trimmed.to);
    };
    if (text.from == text.to || units[text.from] == ';') return {};
    if (units[text.from] == '[') {
        const std::size_t close = units.Find(']', text.from, text.to);
        if (close < text.to) return {TIniLineKind::Section, name({text.from + 1, close})};
    }
    const std::size_t equals = units.Find('=', text.from, text.to);
    return {equals < text.to ? TIniLineKind::Key : TIniLineKind::BareKey,
            name({text.from, equals})};
}

std::string_view DecodeIniName(std::string_view bytes, TIniEncoding encoding, std::string& space) {
    if (IsCp1251(bytes, encoding)) return bytes;
    return space = DecodeIni(bytes, encoding);
}

bool IsIniComment(std::string_view line, TIniEncoding encoding) {
    const TUnits units(line, encoding);
    const TSpan text = TrimUnits(units, {0, units.Size()});
    return text.from < text.to && (units[text.from] == ';' || units[text.from] == '#');
}

TIniValueRange FindIniValue(std::string_view line, TIniEncoding encoding) {
    const TUnits units(line, encoding);
    const std::size_t equals = units.Find('=', 0, units.Size());
    const std::size_t after = std::min(equals + 1, units.Size());
    const std::size_t end = units.Size() - IniLineEnd(line, encoding).size() / units.Width();
    TSpan value = TrimUnits(units, {after, std::max(after, end)});
    if (value.from == value.to) value = {after, after};
    return {value.from * units.Width(), value.to * units.Width()};
}

std::string UnquoteIni(std::string_view value) {
    value = value.substr(0, value.find('\0'));  // the system's texts end there
    if (value.size() > 1 && IsQuote(value.front()) && value.front() == value.back())
        value = value.substr(1, value.size() - 2);
    return std::string(value);
}

std::string QuoteIni(std::string_view value) {
    std::string text(value);
    std::ranges::replace_if(
        text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    if (text.empty()) return text;
    const bool needed =
        IsDroppedAtEnds(text.front()) || IsDroppedAtEnds(text.back()) || IsQuote(text.front());
    return needed ? '"' + text + '"' : text;
}

}  // namespace tolvane
