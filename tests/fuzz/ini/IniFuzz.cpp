#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/IniDocument.h"
#include "tests/fuzz/Fuzz.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r') || c == '\x1A';
}

std::string Trimmed(std::string text) {
    while (!text.empty() && IsBlank(text.front()))
        text.erase(0, 1);
    while (!text.empty() && IsBlank(text.back()))
        text.pop_back();
    return text;
}

// Reads a file of code page 1251 in the plainest way: from its start, for each question.
class TPlainIni {
public:
    explicit TPlainIni(const std::string& bytes) {
        std::string line;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const bool ends = bytes[i] == '\n' ||
                              (bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n'));
            if (!ends) {
                line += bytes[i];
                continue;
            }
            lines_.push_back(Trimmed(line));
            line.clear();
        }
        lines_.push_back(Trimmed(line));
    }

    bool HasSection(const std::string& section) const {
        return std::any_of(lines_.begin(), lines_.end(),
                           [&](const std::string& line) { return IsHeader(line, section); });
    }
    std::optional<std::string> Value(const std::string& section, const std::string& key) const {
        bool inside = false;
        for (const std::string& line : lines_) {
            if (Header(line)) {
                if (inside) return std::nullopt;
                inside = IsHeader(line, section);
                continue;
            }
            if (!inside || line.empty() || line[0] == ';') continue;
            const std::size_t equals = line.find('=');
            if (!EqualIgnoringCase(Trimmed(line.substr(0, equals)), key)) continue;
            if (equals == std::string::npos) return std::nullopt;
            return Unquoted(Trimmed(line.substr(equals + 1)));
        }
        return std::nullopt;
    }

private:
    static std::optional<std::string> Header(const std::string& line) {
        const std::size_t close = line.find(']');
        if (line.empty() || line[0] != '[' || close == std::string::npos) return std::nullopt;
        return Trimmed(line.substr(1, close - 1));
    }
    static bool IsHeader(const std::string& line, const std::string& section) {
        const auto name = Header(line);
        return name && EqualIgnoringCase(*name, section);
    }
    static std::string Unquoted(std::string value) {
        value.resize(std::min(value.find('\0'), value.size()));
        const bool quoted = value.size() > 1 && value.front() == value.back() &&
                            (value.front() == '"' || value.front() == '\'');
        return quoted ? value.substr(1, value.size() - 2) : value;
    }

    std::vector<std::string> lines_;
};

// A name that may be given to a document.
std::string NameOf(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char c) {
            return std::string_view("[]=;#\r\n\"'").find(c) != std::string_view::npos || c == 0;
        },
        '_');
    text = Trimmed(text);
    return text.empty() ? "Name" : text;
}

// A value as it is kept.
std::string OneLine(std::string value) {
    std::replace_if(
        value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; },
        ' ');
    return value;
}

using TName = std::pair<std::string, std::string>;  // section and key
using TValues = std::map<TName, std::optional<std::string>>;

// All that a document says of these sections.
TValues ValuesOf(const TIniDocument& document, const std::vector<std::string>& sections,
                 const std::vector<TName>& names) {
    TValues values;
    for (const std::string& section : sections) {
        for (const std::string& key : document.Keys(section))
            values[{section, key}] = document.Value(section, key);
    }
    for (const TName& name : names)
        values[name] = document.Value(name.first, name.second);
    return values;
}

std::size_t CommonStart(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                    a.begin());
}

// The parts in which two texts differ, between the same start and the same end.
std::pair<std::string_view, std::string_view> Difference(std::string_view a, std::string_view b) {
    const std::size_t start = CommonStart(a, b);
    a.remove_prefix(start);
    b.remove_prefix(start);
    std::size_t end = 0;
    while (end < std::min(a.size(), b.size()) && a[a.size() - 1 - end] == b[b.size() - 1 - end])
        ++end;
    a.remove_suffix(end);
    b.remove_suffix(end);
    return {a, b};
}

// Whether `shorter` is `longer` without some of its bytes.
bool IsPartOf(std::string_view shorter, std::string_view longer) {
    for (const char c : longer) {
        if (!shorter.empty() && shorter.front() == c) shorter.remove_prefix(1);
    }
    return shorter.empty();
}

bool IsSingleByte(std::string_view bytes) {
    return !bytes.starts_with("\xEF\xBB\xBF") && !bytes.starts_with("\xFF\xFE") &&
           !bytes.starts_with("\xFE\xFF");
}

struct TEdit {
    char kind = 'w';  // w: write a text, i: a number, b: a Boolean; k: erase a key, s: a section
    std::string section;
    std::string key;
    std::string value;
};

class TEdited {
public:
    TEdited(const std::string& bytes, const std::vector<TEdit>& edits) : document_(bytes) {
        for (const TEdit& edit : edits) {
            if (std::find(sections_.begin(), sections_.end(), edit.section) == sections_.end())
                sections_.push_back(edit.section);
            names_.emplace_back(edit.section, edit.key);
        }
    }

    void Check() const {
        const std::string bytes = document_.Bytes();
        const TIniDocument again(bytes);
        Must(again.Bytes() == bytes, "what was written is read byte for byte");
        for (const std::string& section : sections_) {
            Must(again.HasSection(section) == document_.HasSection(section), "sections are saved");
            Must(again.Keys(section) == document_.Keys(section), "keys are saved");
        }
        Must(Values(again) == Values(document_), "values are saved");
        if (!IsSingleByte(bytes)) return;
        const TPlainIni plain(bytes);
        for (const std::string& section : sections_)
            Must(plain.HasSection(section) == document_.HasSection(section),
                 "a plain reader finds the same sections");
        for (const auto& [name, value] : Values(document_))
            Must(plain.Value(name.first, name.second) == value,
                 "a plain reader reads the same values");
    }

    void Apply(const TEdit& edit) {
        const std::string before = document_.Bytes();
        const TValues valuesBefore = Values(document_);
        // A file of two-byte characters that ends in the middle of one: a line after it makes it
        // one.
        const bool endsInCharacter = !IsSingleByte(before) && before.size() % 2 != 0;
        Do(edit);
        const std::string after = document_.Bytes();
        Do(edit);
        Must(document_.Bytes() == after, "the same change once more changes nothing");
        CheckBytes(edit, before, after);
        CheckValues(edit, endsInCharacter ? TValues() : valuesBefore);
    }

private:
    TValues Values(const TIniDocument& document) const {
        return ValuesOf(document, sections_, names_);
    }
    static std::int32_t NumberOf(const TEdit& edit) {
        return static_cast<std::int32_t>(std::hash<std::string>()(edit.value));
    }
    void Do(const TEdit& edit) {
        switch (edit.kind) {
            case 'i':
                return document_.WriteInteger(edit.section, edit.key, NumberOf(edit));
            case 'b':
                return document_.WriteBoolean(edit.section, edit.key, NumberOf(edit) % 2 != 0);
            case 'k':
                return document_.EraseKey(edit.section, edit.key);
            case 's':
                return document_.EraseSection(edit.section);
            default:
                return document_.WriteText(edit.section, edit.key, edit.value);
        }
    }
    void CheckValues(const TEdit& edit, const TValues& before) const {
        const auto& [kind, section, key, value] = edit;
        if (kind == 'w') Must(document_.Value(section, key) == OneLine(value), "a text is written");
        if (kind == 'i')
            Must(document_.ReadInteger(section, key, NumberOf(edit) ^ 1) == NumberOf(edit),
                 "a number is written");
        if (kind == 'b')
            Must(document_.ReadInteger(section, key, -1) == std::abs(NumberOf(edit) % 2),
                 "a Boolean is written");
        if (kind == 'k') Must(!document_.Value(section, key), "a key is erased");
        if (kind == 's') Must(!document_.HasSection(section), "a section is erased");
        for (const auto& [name, former] : before) {
            const bool isOwnSection = EqualIgnoringCase(name.first, section);
            if (isOwnSection && (kind == 's' || EqualIgnoringCase(name.second, key))) continue;
            Must(document_.Value(name.first, name.second) == former, "other values stay");
        }
    }
    static void CheckBytes(const TEdit& edit, const std::string& before, const std::string& after) {
        if (edit.kind == 'k' || edit.kind == 's')
            return Must(IsPartOf(after, before), "erasing only takes away");
        const auto [gone, come] = Difference(before, after);
        if (!IsSingleByte(before)) return;
        // What is replaced lies in one line; what is added may be lines.
        const bool inOneLine =
            gone.find_first_of("\r\n") == std::string_view::npos &&
            (gone.empty() || come.find_first_of("\r\n") == std::string_view::npos);
        Must(inOneLine, "only one line changes");
    }

    TIniDocument document_;
    std::vector<std::string> sections_;
    std::vector<TName> names_;
};

// "w,Section,Key,Value"
TEdit EditFrom(const std::string& line) {
    std::array<std::string, 4> parts;
    std::size_t from = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t end =
            i + 1 < parts.size() ? std::min(line.find(',', from), line.size()) : line.size();
        if (from > line.size()) break;
        parts.at(i) = line.substr(from, end - from);
        from = end + 1;
    }
    return {.kind = parts[0].empty() ? 'w' : parts[0][0],
            .section = NameOf(parts[1]),
            .key = NameOf(parts[2]),
            .value = parts[3]};
}

}  // namespace
}  // namespace tolvane

// Lines of changes, up to an empty one, and the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tolvane;
    constexpr std::size_t kMostEdits = 4;
    fuzz::TInput input(data, size);
    std::vector<TEdit> edits;
    for (std::string line = input.Text(); !line.empty(); line = input.Text()) {
        if (edits.size() < kMostEdits) edits.push_back(EditFrom(line));
    }
    const std::string file = input.RestAsText();
    fuzz::Must(TIniDocument(file).Bytes() == file, "a file that is not changed stays as it is");
    TEdited edited(file, edits);
    edited.Check();
    for (const TEdit& edit : edits) {
        edited.Apply(edit);
        edited.Check();
    }
    return 0;
}
