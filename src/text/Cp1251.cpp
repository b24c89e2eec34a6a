#include "text/Cp1251.h"

#include <algorithm>

#include "text/Fnv.h"

namespace tolvane {

namespace {

constexpr std::uint8_t Unsigned(char c) {
    return static_cast<std::uint8_t>(c);
}

constexpr char Char(int byte) {
    return static_cast<char>(static_cast<std::uint8_t>(byte));
}

constexpr char16_t CodePoint(char c) {
    return Unsigned(c) < 0x80 ? static_cast<char16_t>(c) : kCp1251High[Unsigned(c) - 0x80U];
}

// Byte of each code point U+0400 to U+04FF, 0 for those that the code page lacks.
constexpr auto kCyrillicBytes = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t i = 0; i < kCp1251High.size(); ++i) {
        if (kCp1251High[i] >= 0x400 && kCp1251High[i] < 0x500)
            table[kCp1251High[i] - 0x400U] = static_cast<std::uint8_t>(i + 0x80);
    }
    return table;
}();

char ByteOrQuestionMark(char32_t codePoint) {
    if (codePoint < 0x80) return static_cast<char>(codePoint);
    if (codePoint >= 0x400 && codePoint < 0x500) {
        const std::uint8_t byte = kCyrillicBytes[codePoint - 0x400U];
        return byte == 0 ? '?' : Char(byte);
    }
    const int byte = Cp1251Byte(codePoint);
    return byte < 0 ? '?' : Char(byte);
}

struct TLetterPair {
    std::uint8_t lower;
    std::uint8_t upper;
};

// Letters whose two cases are not at a fixed distance: ђ ѓ љ њ ќ ћ џ ў ј ґ ё є ѕ ї і.
constexpr TLetterPair kLetterPairs[] = {{0x90, 0x80}, {0x83, 0x81}, {0x9A, 0x8A}, {0x9C, 0x8C},
                                        {0x9D, 0x8D}, {0x9E, 0x8E}, {0x9F, 0x8F}, {0xA2, 0xA1},
                                        {0xBC, 0xA3}, {0xB4, 0xA5}, {0xB8, 0xA8}, {0xBA, 0xAA},
                                        {0xBE, 0xBD}, {0xBF, 0xAF}, {0xB3, 0xB2}};

constexpr auto kUpper = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool pairedByDistance = (i >= 'a' && i <= 'z') || i >= 0xE0;
        table[i] = static_cast<std::uint8_t>(pairedByDistance ? i - 0x20 : i);
    }
    for (const TLetterPair& pair : kLetterPairs)
        table[pair.lower] = pair.upper;
    return table;
}();

constexpr std::size_t kLongText = 4;

struct TUtf8Step {
    char32_t codePoint;  // meaningless when not valid
    std::size_t length;  // bytes to advance by, at least 1
    bool valid;
};

// Lead byte ranges with the range of the second byte; this rules out overlong forms, surrogates and
// code points above U+10FFFF.
struct TUtf8Lead {
    std::uint8_t first, last;
    std::uint8_t secondFirst, secondLast;
    std::size_t length;
};
constexpr TUtf8Lead kUtf8Leads[] = {{0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
                                    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
                                    {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

TUtf8Step StepUtf8(std::string_view text) {
    const std::uint8_t lead = Unsigned(text[0]);
    if (lead < 0x80) return {lead, 1, true};
    const auto* found = std::ranges::find_if(
        kUtf8Leads, [&](const TUtf8Lead& l) { return lead >= l.first && lead <= l.last; });
    if (found == std::ranges::end(kUtf8Leads)) return {0, 1, false};
    char32_t codePoint = lead & (0xFFU >> (found->length + 1));
    for (std::size_t i = 1; i < found->length; ++i) {
        const std::uint8_t byte = i < text.size() ? Unsigned(text[i]) : std::uint8_t{0};
        const std::uint8_t first = i == 1 ? found->secondFirst : std::uint8_t{0x80};
        const std::uint8_t last = i == 1 ? found->secondLast : std::uint8_t{0xBF};
        if (byte < first || byte > last) return {0, i, false};
        codePoint = codePoint * 64 + (byte & 0x3FU);
    }
    return {codePoint, found->length, true};
}

constexpr bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

}  // namespace

std::u16string ToUtf16(std::string_view text) {
    std::u16string out(text.size(), u'\0');
    std::ranges::transform(text, out.begin(), CodePoint);
    return out;
}

std::string FromUtf16(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        out += ByteOrQuestionMark(text[i]);
        if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) ++i;
    }
    return out;
}

std::string ToUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size() * 2);
    for (const char c : text) {
        const unsigned codePoint = CodePoint(c);
        const auto tail = [&](unsigned shift) {
            out += Char(static_cast<int>(0x80U | ((codePoint >> shift) & 0x3FU)));
        };
        if (codePoint < 0x80) {
            out += c;
        } else if (codePoint < 0x800) {
            out += Char(static_cast<int>(0xC0U | (codePoint >> 6U)));
            tail(0);
        } else {
            out += Char(static_cast<int>(0xE0U | (codePoint >> 12U)));
            tail(6);
            tail(0);
        }
    }
    return out;
}

std::string FromUtf8(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const TUtf8Step step = StepUtf8(utf8);
        out += step.valid ? ByteOrQuestionMark(step.codePoint) : '?';
        utf8.remove_prefix(step.length);
    }
    return out;
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const TUtf8Step step = StepUtf8(bytes);
        if (!step.valid) return false;
        bytes.remove_prefix(step.length);
    }
    return true;
}

char UpperCase(char c) {
    return Char(kUpper[Unsigned(c)]);
}

std::string UpperCase(std::string_view text) {
    std::string out;
    AppendUpperCase(out, text);
    return out;
}

void AppendUpperCase(std::string& to, std::string_view text) {
    const std::size_t before = to.size();
    to.append(text);
    for (std::size_t i = before; i < to.size(); ++i)
        to[i] = UpperCase(to[i]);
}

int CompareIgnoringCase(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = kUpper[Unsigned(a[i])] - kUpper[Unsigned(b[i])];
        if (difference != 0) return difference;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && CompareIgnoringCase(a, b) == 0;
}

std::uint64_t HashIgnoringCase(std::string_view text, std::uint64_t basis) {
    std::uint64_t hash = basis;
    for (const char c : text)
        hash = FnvNext(hash, kUpper[Unsigned(c)]);
    return hash;
}

bool ContainsUpperCased(std::string_view text, std::string_view upperNeedle) {
    if (upperNeedle.empty()) return true;
    if (text.size() < upperNeedle.size()) return false;
    const std::uint8_t first = Unsigned(upperNeedle.front());
    const char* const last = text.data() + (text.size() - upperNeedle.size());
    for (const char* at = text.data(); at <= last; ++at) {
        if (kUpper[Unsigned(*at)] != first) continue;
        std::size_t i = 1;
        while (i < upperNeedle.size() && kUpper[Unsigned(at[i])] == Unsigned(upperNeedle[i]))
            ++i;
        if (i == upperNeedle.size()) return true;
    }
    return false;
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && Unsigned(text.front()) <= 32)
        text.remove_prefix(1);
    while (!text.empty() && Unsigned(text.back()) <= 32)
        text.remove_suffix(1);
    return text;
}

// A long text moves over the other from left to right. By the byte under its last one it can leave
// out every place where that byte would not meet itself. A short one would move on no faster than
// byte by byte.
TTextFinder::TTextFinder(std::string_view text) : upper_(UpperCase(text)) {
    constexpr std::size_t kLongestStep = 0xFF;
    if (upper_.size() < kLongText) return;
    steps_.fill(static_cast<std::uint8_t>(std::min(upper_.size(), kLongestStep)));
    for (std::size_t i = 0; i + 1 < upper_.size(); ++i)
        steps_[Unsigned(upper_[i])] =
            static_cast<std::uint8_t>(std::min(upper_.size() - 1 - i, kLongestStep));
    for (std::size_t byte = 0; byte < steps_.size(); ++byte)
        steps_[byte] = steps_[kUpper[byte]];
}

bool TTextFinder::IsIn(std::string_view other) const {
    const std::size_t size = upper_.size();
    if (size < kLongText) return ContainsUpperCased(other, upper_);
    for (std::size_t end = size; end <= other.size(); end += steps_[Unsigned(other[end - 1])]) {
        const char* const at = other.data() + (end - size);
        std::size_t left = size;
        while (left > 0 && kUpper[Unsigned(at[left - 1])] == Unsigned(upper_[left - 1]))
            --left;
        if (left == 0) return true;
    }
    return false;
}

}  // namespace tolvane
