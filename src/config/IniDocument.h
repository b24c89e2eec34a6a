#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/IniIndex.h"
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
    static constexpr std::size_t kNone = TIniIndex::kNone;

    // A line with its own line end, as a part of text_; an erased line is empty. The numbers of
    // other lines or kNone.
    struct TLine {
        std::size_t start = 0;
        std::size_t size = 0;
        std::size_t section = 0;
        std::size_t previous = kNone;  // in the section
        std::size_t next = kNone;
        std::size_t nextRepeat = kNone;  // a further line of the same key
    };
    // The numbers of its lines, the header first.
    struct TSection {
        std::size_t first = kNone;
        std::size_t last = kNone;
        std::size_t lastKey = kNone;     // the line that a new key's line follows
        std::size_t nextRepeat = kNone;  // the next section of the same name
        std::size_t lastRepeat = kNone;  // of the first section of a name
        bool indexed = false;            // the first of its name, and not erased
    };

    void Load();
    // Add a section with its header, a line at the end of the last section, and a line's key.
    std::size_t AddSection(std::string_view name, std::size_t start, std::size_t size);
    std::size_t AddLine(std::size_t start, std::size_t size);
    void AddKey(std::size_t line, std::string_view name);
    std::size_t InsertLine(std::size_t after, std::string_view text);
    std::string_view TextOf(std::size_t line) const {
        return std::string_view(text_).substr(lines_[line].start, lines_[line].size);
    }
    void SetText(std::size_t line, std::string_view text);
    bool IsNamed(std::size_t line, std::string_view name) const;
    // The first section of a name, and the first line of a key in a section; kNone when there is
    // none, or no section.
    std::size_t FindSection(std::string_view name) const;
    std::size_t FindKey(std::size_t section, std::string_view key) const;
    std::size_t SectionForWriting(std::string_view section);
    void ReplaceValue(std::size_t line, std::string_view value);
    void AppendKey(std::string_view section, std::string_view key, std::string_view value);
    void EraseLines(std::size_t section);
    // Completes a file of two-byte units that ends in the middle of one, so that lines can follow,
    // and reads it anew. Returns whether it has done so.
    bool CompleteLastUnit();
    void EndLine(std::size_t line);
    void EndLastLine();

    TIniEncoding encoding_ = TIniEncoding::Cp1251;
    std::string lineEnd_;       // the file's usual one, as bytes of the file
    std::string text_;          // the file, and behind it the lines that were written
    std::size_t markSize_ = 0;  // of the byte order mark, with which the text starts
    bool endsInUnit_ = false;   // what was read ended in the middle of a unit of two bytes
    std::vector<TLine> lines_;
    std::vector<TSection> sections_;  // the first holds the lines before any header
    // The first section of each name, and the first line of each key in such a section.
    TIniIndex sectionIndex_;
    TIniIndex keyIndex_;
};

}  // namespace tolvane
