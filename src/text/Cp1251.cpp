#include "text/Cp1251.h"

#include <algorithm>

namespace tolvane {
namespace {

constexpr unsigned char Byte(char c) {
    return static_cast<unsigned char>(c);
}

constexpr char16_t CodePoint(unsigned char byte) {
    return byte < 0x80 ? byte : kCp1251High[byte - 0x80U];
}

// Lower and upper case letters above 0x7F that do not stand 32 apart.
struct TCasePair {
    unsigned char lower;
    unsigned char upper;
};
constexpr std::array<TCasePair, 15> kCasePairs = {{{0x90, 0x80},
                                                   {0x83, 0x81},
                                                   {0x9A, 0x8A},
                                                   {0x9C, 0x8C},
                                                   {0x9D, 0x8D},
                                                   {0x9E, 0x8E},
                                                   {0x9F, 0x8F},
                                                   {0xA2, 0xA1},
                                                   {0xBC, 0xA3},
                                                   {0xB4, 0xA5},
                                                   {0xB8, 0xA8},
                                                   {0xBA, 0xAA},
                                                   {0xBF, 0xAF},
                                                   {0xB3, 0xB2},
                                                   {0xBE, 0xBD}}};

constexpr std::array<unsigned char, 256> MakeUpperTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = static_cast<unsigned char>(i);
    for (unsigned i = 'a'; i <= 'z'; ++i)
        table[i] = static_cast<unsigned char>(i - 32);
    for (unsigned i = 0xE0; i <= 0xFF; ++i)
        table[i] = static_cast<unsigned char>(i - 32);
    for (const TCasePair& pair : kCasePairs)
        table[pair.lower] = pair.upper;
    return table;
}
constexpr std::array<unsigned char, 256> kUpper = MakeUpperTable();

constexpr char Upper(char c) {
    return static_cast<char>(kUpper[Byte(c)]);
}

char ByteOrQuestionMark(char32_t codePoint) {
    const int byte = Cp1251Byte(codePoint);
    return byte < 0 ? '?' : static_cast<char>(static_cast<unsigned char>(byte));
}

void AppendUtf8(std::string& out, char16_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

struct TUtf8Character {
    char32_t codePoint;  // 0xFFFD for an invalid sequence
    std::size_t next;
};

TUtf8Character NextUtf8(std::string_view utf8, std::size_t at) {
    constexpr char32_t kInvalid = 0xFFFD;
    const unsigned char lead = Byte(utf8[at]);
    if (lead < 0x80) return {lead, at + 1};
    if (lead < 0xC2 || lead > 0xF4) return {kInvalid, at + 1};
    const std::size_t count = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t codePoint = lead & (0xFFU >> (count + 1));
    for (std::size_t i = 1; i < count; ++i) {
        if (at + i >= utf8.size() || (Byte(utf8[at + i]) & 0xC0U) != 0x80)
            return {kInvalid, at + i};
        codePoint = codePoint * 64 + (Byte(utf8[at + i]) & 0x3FU);
    }
    return {codePoint, at + count};
}

}  // namespace

std::u16string ToUtf16(std::string_view text) {
    std::u16string out(text.size(), u'\0');
    std::transform(text.begin(), text.end(), out.begin(),
                   [](char c) { return CodePoint(Byte(c)); });
    return out;
}

std::string FromUtf16(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] >= 0xD800 && text[i] < 0xDC00 && i + 1 < text.size() &&
                          text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
        out += pair ? '?' : ByteOrQuestionMark(text[i]);
        if (pair) ++i;
    }
    return out;
}

std::string ToUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size() * 2);
    for (const char c : text)
        AppendUtf8(out, CodePoint(Byte(c)));
    return out;
}

std::string FromUtf8(std::string_view utf8) {
    std::string out;
    for (std::size_t at = 0; at < utf8.size();) {
        const TUtf8Character character = NextUtf8(utf8, at);
        out += ByteOrQuestionMark(character.codePoint);
        at = character.next;
    }
    return out;
}

char UpperCase(char c) {
    return Upper(c);
}

std::string UpperCase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), Upper);
    return out;
}

int CompareIgnoringCase(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = kUpper[Byte(a[i])] - kUpper[Byte(b[i])];
        if (difference != 0) return difference;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && CompareIgnoringCase(a, b) == 0;
}

bool ContainsUpperCased(std::string_view text, std::string_view upperNeedle) {
    const auto same = [](char c, char upper) { return Upper(c) == upper; };
    return std::search(text.begin(), text.end(), upperNeedle.begin(), upperNeedle.end(), same) !=
               text.end() ||
           upperNeedle.empty();
}

std::string_view Trim(std::string_view text) {
    const auto isBlank = [](char c) { return Byte(c) <= ' '; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace tolvane
