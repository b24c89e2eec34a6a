#include "simulator/CodePages.h"

#include <array>

#include "text/Cp1251.h"

namespace tolvane::simulator {

namespace {

constexpr std::array<std::string_view, 3> kNames = {"win", "pc855", "pc866"};

// Code page 866 from 0xB0: frames and blocks; from 0xF0: letters with marks, and signs.
constexpr std::array<char16_t, 48> kPc866Frames = {
    0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557,
    0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F,
    0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559,
    0x2558, 0x2552, 0x2553, 0x256B, 0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580};
constexpr std::array<char16_t, 16> kPc866Signs = {0x0401, 0x0451, 0x0404, 0x0454, 0x0407, 0x0457,
                                                  0x040E, 0x045E, 0x00B0, 0x2219, 0x00B7, 0x221A,
                                                  0x2116, 0x00A4, 0x25A0, 0x00A0};
constexpr char16_t kUnknown = 0xFFFD;
constexpr int kFirstLetter = 0x0410;  // А; я is 63 code points further

char16_t Character(std::uint8_t byte, TCodeTable table) {
    if (byte < 0x80) return byte;
    if (table == TCodeTable::Windows) return byte == 0x98 ? kUnknown : kCp1251High[byte - 0x80U];
    if (byte < 0xB0 || (table == TCodeTable::Pc855 && byte < 0xC0))
        return static_cast<char16_t>(kFirstLetter + byte - 0x80);
    if (table == TCodeTable::Pc855) return kUnknown;
    if (byte < 0xE0) return kPc866Frames[byte - 0xB0U];
    if (byte < 0xF0) return static_cast<char16_t>(kFirstLetter + 48 + byte - 0xE0);
    return kPc866Signs[byte - 0xF0U];
}

void AppendUtf8(char16_t character, std::string& text) {
    const unsigned code = character;
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

}  // namespace

std::string_view CodeTableName(TCodeTable table) {
    return kNames[static_cast<std::size_t>(table)];
}

std::optional<TCodeTable> CodeTableByName(std::string_view name) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (kNames[i] == name) return static_cast<TCodeTable>(i);
    }
    return std::nullopt;
}

std::string DecodeText(std::span<const std::uint8_t> bytes, TCodeTable table) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (byte != 0) AppendUtf8(Character(byte, table), text);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace tolvane::simulator
