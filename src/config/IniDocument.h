#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "config/IniLine.h"

namespace tolvane {

// The text of an INI file. Reads as the system's own INI calls do: section and key names without
// regard to case, the first section and key of a name win, blanks around names and values and one
// pair of quotes around a value are dropped, lines that start with ';' are comments. A change
// touches only the lines it must: foreign sections, keys, comments, blank lines and line ends stay
// byte for byte, and writing a value that is already there changes nothing. Texts are code page
// 1251; a file with a byte order mark of UTF-8 or UTF-16 keeps its mark and its encoding. Names
// given here hold no '=', brackets or line ends; a line end inside a value is written as a blank.
class TIniDocument {
public:
    TIniDocument() : TIniDocument(std::string_view()) {}
    explicit TIniDocument(std::string_view bytes);

    // The file's bytes as they are to be written.
    std::string Bytes() const;

    bool HasSection(std::string_view section) const;
    // The names of the section's keys, as they are written and in their order; comments are none.
    std::vector<std::string> Keys(std::string_view section) const;
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    std::string ReadText(std::string_view section, std::string_view key,
                         std::string_view otherwise) const;
    // A value that is not an integer reads as `otherwise`.
    std::int32_t ReadInteger(std::string_view section, std::string_view key,
                             std::int32_t otherwise) const;
    // An integer other than 0 is true.
    bool ReadBoolean(std::string_view section, std::string_view key, bool otherwise) const;

    // The value of an existing key is replaced in its line; a new key comes after the section's
    // last key, a new section at the end. A value that starts or ends with a blank or starts with a
    // quote is written in quotes, so that every program reads it back unchanged.
    void WriteText(std::string_view section, std::string_view key, std::string_view value);
    void WriteInteger(std::string_view section, std::string_view key, std::int32_t value);
    // "1" or "0".
    void WriteBoolean(std::string_view section, std::string_view key, bool value);
    // Removes the key's lines from the section, repeats of it too, so that it reads as missing.
    void EraseKey(std::string_view section, std::string_view key);
    // Removes the section's header and its lines, and further sections of that name likewise, which
    // would otherwise be read instead. Comments (lines of ';' or '#') directly
    // above the next header belong to what follows and stay.
    void EraseSection(std::string_view section);

private:
    // Lines with their own line ends, the header first; an erased line is empty.
    struct TSection {
        std::vector<std::string> lines;
        std::size_t afterLastKey = 0;  // where a new key's line goes
    };
    // The lines of one key in the first section of a name; the first line wins.
    struct TKeyLines {
        std::size_t section = 0;
        std::vector<std::size_t> lines;
    };

    void Load(std::string_view bytes);
    std::size_t AddSection(std::string line, const std::string& upperName);
    void IndexKey(std::size_t section, std::string_view upperSection, std::string_view key);
    const TKeyLines* Find(std::string_view section, std::string_view key) const;
    std::size_t SectionForWriting(std::string_view section);
    void ReplaceValue(const TKeyLines& found, std::string_view value);
    void AppendKey(std::string_view section, std::string_view key, std::string_view value);
    void EraseLines(std::size_t section);
    void EndLine(std::string& line) const;
    void EndLastLine();

    TIniEncoding encoding_ = TIniEncoding::Cp1251;
    std::string mark_;                // the byte order mark
    std::string lineEnd_;             // the file's usual one, as bytes of the file
    std::vector<TSection> sections_;  // the first holds the lines before any header
    // By upper-cased names; a key's is "SECTION\nKEY".
    std::unordered_map<std::string, std::vector<std::size_t>> sectionIndex_;
    std::unordered_map<std::string, TKeyLines> keyIndex_;
};

}  // namespace tolvane
