#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// How an INI file's characters are kept: bytes of code page 1251 without a byte order mark, or,
// with the mark that says so, UTF-8 or UTF-16 of either byte order.
enum class TIniEncoding : std::uint8_t { Cp1251, Utf8, Utf16Le, Utf16Be };

// The size of a unit of the encoding in bytes. A line consists of whole units.
constexpr std::size_t IniUnitSize(TIniEncoding encoding) {
    return encoding == TIniEncoding::Utf16Le || encoding == TIniEncoding::Utf16Be ? 2 : 1;
}

struct TIniMark {
    TIniEncoding encoding = TIniEncoding::Cp1251;
    std::size_t size = 0;  // bytes of the mark
};
TIniMark ReadIniMark(std::string_view file);

// The file's text in code page 1251. Bytes after a UTF-8 mark that are not UTF-8 were written by a
// program that ignores the mark; they are code page 1251 already.
std::string DecodeIni(std::string_view bytes, TIniEncoding encoding);
std::string EncodeIni(std::string_view text, TIniEncoding encoding);

// The file's lines, each with its line end: CR LF, LF, or a CR alone.
std::vector<std::string_view> SplitIniLines(std::string_view bytes, TIniEncoding encoding);
// The line's end as bytes of the file; empty for a last line without one.
std::string_view IniLineEnd(std::string_view line, TIniEncoding encoding);

enum class TIniLineKind : std::uint8_t {
    Other,    // a blank line, a comment or anything else
    Section,  // [name]; any text may follow
    Key,      // name = value
    BareKey   // a name alone: it has no value, but hides later keys of that name
};

// What a line is; the name is in bytes of the line, without the blanks around it.
struct TIniLine {
    TIniLineKind kind = TIniLineKind::Other;
    std::string_view name;
};
TIniLine ReadIniLine(std::string_view line, TIniEncoding encoding);
// Such a name in code page 1251: the bytes themselves if they are that, or else put into `space`.
std::string_view DecodeIniName(std::string_view bytes, TIniEncoding encoding, std::string& space);
// Whether the line is a comment to a person: it starts with ';', or with '#', which the system's
// INI calls take for a name like any other.
bool IsIniComment(std::string_view line, TIniEncoding encoding);

// Byte positions of a key line's value with its quotes, without the blanks around it.
struct TIniValueRange {
    std::size_t start = 0;
    std::size_t end = 0;
};
TIniValueRange FindIniValue(std::string_view line, TIniEncoding encoding);

// A value as a program reads it: up to a zero byte, without one pair of quotes around it.
std::string UnquoteIni(std::string_view value);
// A value as it is written to the file, so that UnquoteIni and the system's calls read it back
// unchanged.
std::string QuoteIni(std::string_view value);

}  // namespace tolvane
