#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// The text of an INI file, line by line. Reads as the system's own INI calls do (section and key
// names without regard to case, first section of a name wins, blanks around names and values and
// one pair of quotes around a value dropped, lines that start with ';' are comments). A change
// touches only the lines it must: foreign sections, keys, comments, blank lines and line ends stay
// byte for byte. Texts are code page 1251; a byte order mark in front is kept.
class TIniDocument {
public:
    TIniDocument() = default;
    explicit TIniDocument(std::string_view bytes);

    // The file's bytes as they are to be written.
    std::string Bytes() const;

    bool HasSection(std::string_view section) const;
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    std::string ReadText(std::string_view section, std::string_view key,
                         std::string_view otherwise) const;
    // A value that is no integer reads as `otherwise`.
    std::int32_t ReadInteger(std::string_view section, std::string_view key,
                             std::int32_t otherwise) const;
    // An integer other than 0 is true.
    bool ReadBoolean(std::string_view section, std::string_view key, bool otherwise) const;

    void WriteText(std::string_view section, std::string_view key, std::string_view value);
    void WriteInteger(std::string_view section, std::string_view key, std::int32_t value);
    // "1" or "0".
    void WriteBoolean(std::string_view section, std::string_view key, bool value);
    void EraseKey(std::string_view section, std::string_view key);
    // Removes the section's header and its lines up to the next header.
    void EraseSection(std::string_view section);

private:
    std::vector<std::string> lines_;  // each with its own line end
};

}  // namespace tolvane
