#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane {

// Inside the module a text is bytes of Windows code page 1251. This header holds the code page's
// own table, so that nothing depends on the system's code page.

// Unicode code point of each byte 0x80 to 0xFF; 0x98 is unassigned and means itself.
inline constexpr std::array<char16_t, 128> kCp1251High = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039,
    0x040A, 0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x0098, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408,
    0x00A4, 0x0490, 0x00A6, 0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,
    0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB,
    0x0458, 0x0405, 0x0455, 0x0457, 0x0410, 0x0411, 0x0412, 0x0413, 0x0414, 0x0415, 0x0416, 0x0417,
    0x0418, 0x0419, 0x041A, 0x041B, 0x041C, 0x041D, 0x041E, 0x041F, 0x0420, 0x0421, 0x0422, 0x0423,
    0x0424, 0x0425, 0x0426, 0x0427, 0x0428, 0x0429, 0x042A, 0x042B, 0x042C, 0x042D, 0x042E, 0x042F,
    0x0430, 0x0431, 0x0432, 0x0433, 0x0434, 0x0435, 0x0436, 0x0437, 0x0438, 0x0439, 0x043A, 0x043B,
    0x043C, 0x043D, 0x043E, 0x043F, 0x0440, 0x0441, 0x0442, 0x0443, 0x0444, 0x0445, 0x0446, 0x0447,
    0x0448, 0x0449, 0x044A, 0x044B, 0x044C, 0x044D, 0x044E, 0x044F};

// The byte of a Unicode code point, or -1 when the code page does not have it.
constexpr int Cp1251Byte(char32_t codePoint) {
    if (codePoint < 0x80) return static_cast<int>(codePoint);
    for (std::size_t i = 0; i < kCp1251High.size(); ++i) {
        if (kCp1251High[i] == codePoint) return static_cast<int>(i + 0x80);
    }
    return -1;
}

namespace detail {

template <std::size_t N>
struct TUtf8Literal {
    char bytes[N];
    // NOLINTNEXTLINE: a literal operator template takes its text by implicit conversion.
    constexpr TUtf8Literal(const char (&text)[N]) {
        for (std::size_t i = 0; i < N; ++i)
            bytes[i] = text[i];
    }
};

struct TDecoded {
    char32_t codePoint;
    std::size_t next;
};

constexpr TDecoded DecodeUtf8(const char* text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) return {lead, at + 1};
    const std::size_t count = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t codePoint = lead & (0xFFU >> (count + 1));
    for (std::size_t i = 1; i < count; ++i)
        codePoint = codePoint * 64 + (byte(at + i) & 0x3FU);
    return {codePoint, at + count};
}

template <TUtf8Literal L>
constexpr std::size_t Cp1251Length() {
    std::size_t length = 0;
    for (std::size_t at = 0; at + 1 < sizeof(L.bytes); ++length)
        at = DecodeUtf8(L.bytes, at).next;
    return length;
}

template <TUtf8Literal L>
struct TCp1251Literal {
    static constexpr auto Convert() {
        std::array<char, Cp1251Length<L>() + 1> out{};
        std::size_t at = 0;
        for (std::size_t i = 0; i + 1 < out.size(); ++i) {
            const TDecoded decoded = DecodeUtf8(L.bytes, at);
            const int byte = Cp1251Byte(decoded.codePoint);
            if (byte < 0) throw "a character that code page 1251 does not have";
            out[i] = static_cast<char>(static_cast<unsigned char>(byte));
            at = decoded.next;
        }
        return out;
    }
    static constexpr auto kBytes = Convert();
};

}  // namespace detail

inline namespace literals {

// "Баркод"_cp1251: the text's code page 1251 bytes, converted by the compiler; a character that the
// code page lacks does not compile. data() is zero-terminated and valid until the program ends.
#ifdef TOLVANE_CLANG_TIDY
// Version 14 crashes when it prints a call of a literal operator template; code that is only looked
// at, never run, can do with the plain form.
constexpr std::string_view operator""_cp1251(const char* text, std::size_t length) {
    return {text, length};
}
#else
template <detail::TUtf8Literal L>
consteval std::string_view operator""_cp1251() {
    constexpr const auto& kBytes = detail::TCp1251Literal<L>::kBytes;
    return std::string_view(kBytes.data(), kBytes.size() - 1);
}
#endif

}  // namespace literals

// One character of UTF-16 per byte.
std::u16string ToUtf16(std::string_view text);
// Characters that the code page does not have become '?'; a surrogate pair becomes one '?'.
std::string FromUtf16(std::u16string_view text);
// UTF-8, for logs and files that people read outside the module.
std::string ToUtf8(std::string_view text);
// Invalid sequences and characters that the code page does not have become '?'.
std::string FromUtf8(std::string_view utf8);
// Whether the bytes are well-formed UTF-8 (the empty text is).
bool IsUtf8(std::string_view bytes);

// Upper case by code page 1251, one byte to one byte: a-z, а-я, ё and the other letters in pairs.
char UpperCase(char c);
std::string UpperCase(std::string_view text);
void AppendUpperCase(std::string& to, std::string_view text);
// <0, 0, >0: order of the upper-cased bytes (the codes follow the Bulgarian alphabet).
int CompareIgnoringCase(std::string_view a, std::string_view b);
bool EqualIgnoringCase(std::string_view a, std::string_view b);
// Equal for texts that are EqualIgnoringCase; `basis` is any number.
std::uint64_t HashIgnoringCase(std::string_view text, std::uint64_t basis);
// Whether `text`, upper-cased, contains `upperNeedle`, which is upper-cased already.
bool ContainsUpperCased(std::string_view text, std::string_view upperNeedle);
// Without leading and trailing blanks and control characters (bytes 0 to 32).
std::string_view Trim(std::string_view text);

// Looks for one text in many others, without regard to case.
class TTextFinder {
public:
    explicit TTextFinder(std::string_view text);
    // The empty text is in every other.
    bool IsIn(std::string_view other) const;

private:
    std::string upper_;
    // Of a long text: how far it moves on, by the other's byte under its last one.
    std::array<std::uint8_t, 256> steps_{};
};

}  // namespace tolvane
