#include "config/IniDocument.h"

#include <algorithm>
#include <array>

#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {

namespace {

std::string KeyName(std::string_view upperSection, std::string_view key) {
    std::string name(upperSection);
    name += '\n';  // no section's name contains it
    return name += UpperCase(key);
}

// The line end that most lines have; CR LF when there are none.
std::string UsualLineEnd(const std::vector<std::string_view>& lines, TIniEncoding encoding) {
    const std::array ends = {EncodeIni("\r\n", encoding), EncodeIni("\n", encoding),
                             EncodeIni("\r", encoding)};
    std::array<std::size_t, ends.size()> counts{};
    for (const std::string_view line : lines) {
        const auto end = std::ranges::find(ends, IniLineEnd(line, encoding));
        if (end != ends.end()) ++counts[static_cast<std::size_t>(end - ends.begin())];
    }
    return ends[static_cast<std::size_t>(std::ranges::max_element(counts) - counts.begin())];
}

}  // namespace

TIniDocument::TIniDocument(std::string_view bytes) {
    const TIniMark mark = ReadIniMark(bytes);
    encoding_ = mark.encoding;
    mark_ = bytes.substr(0, mark.size);
    sections_.emplace_back();
    Load(bytes.substr(mark.size));
}

void TIniDocument::Load(std::string_view bytes) {
    const std::vector<std::string_view> lines = SplitIniLines(bytes, encoding_);
    lineEnd_ = UsualLineEnd(lines, encoding_);
    std::string upperName;
    std::size_t section = 0;
    bool indexed = false;  // only the first section of a name is read
    for (const std::string_view text : lines) {
        const TIniLine line = ReadIniLine(text, encoding_);
        if (line.kind == TIniLineKind::Section) {
            upperName = UpperCase(line.name);
            section = AddSection(std::string(text), upperName);
            indexed = sectionIndex_[upperName].size() == 1;
            continue;
        }
        sections_[section].lines.emplace_back(text);
        if (line.kind == TIniLineKind::Other) continue;
        sections_[section].afterLastKey = sections_[section].lines.size();
        if (indexed) IndexKey(section, upperName, line.name);
    }
}

std::size_t TIniDocument::AddSection(std::string line, const std::string& upperName) {
    sections_.push_back({{std::move(line)}, 1});
    sectionIndex_[upperName].push_back(sections_.size() - 1);
    return sections_.size() - 1;
}

// The key's line is the last one before the section's afterLastKey.
void TIniDocument::IndexKey(std::size_t section, std::string_view upperSection,
                            std::string_view key) {
    TKeyLines& found = keyIndex_[KeyName(upperSection, key)];
    found.section = section;
    found.lines.push_back(sections_[section].afterLastKey - 1);
}

std::string TIniDocument::Bytes() const {
    std::string bytes = mark_;
    for (const TSection& section : sections_) {
        for (const std::string& line : section.lines)
            bytes += line;
    }
    return bytes;
}

bool TIniDocument::HasSection(std::string_view section) const {
    return sectionIndex_.contains(UpperCase(section));
}

const TIniDocument::TKeyLines* TIniDocument::Find(std::string_view section,
                                                  std::string_view key) const {
    const auto found = keyIndex_.find(KeyName(UpperCase(section), key));
    return found == keyIndex_.end() ? nullptr : &found->second;
}

std::optional<std::string> TIniDocument::Value(std::string_view section,
                                               std::string_view key) const {
    const TKeyLines* found = Find(section, key);
    if (found == nullptr) return std::nullopt;
    const std::string& line = sections_[found->section].lines[found->lines.front()];
    if (ReadIniLine(line, encoding_).kind != TIniLineKind::Key) return std::nullopt;
    const TIniValueRange range = FindIniValue(line, encoding_);
    const std::string_view bytes(line);
    return UnquoteIni(DecodeIni(bytes.substr(range.start, range.end - range.start), encoding_));
}

std::string TIniDocument::ReadText(std::string_view section, std::string_view key,
                                   std::string_view otherwise) const {
    return Value(section, key).value_or(std::string(otherwise));
}

std::int32_t TIniDocument::ReadInteger(std::string_view section, std::string_view key,
                                       std::int32_t otherwise) const {
    return ParseIntegerOr(Value(section, key).value_or(std::string()), otherwise);
}

bool TIniDocument::ReadBoolean(std::string_view section, std::string_view key,
                               bool otherwise) const {
    return ReadInteger(section, key, otherwise ? 1 : 0) != 0;
}

void TIniDocument::WriteText(std::string_view section, std::string_view key,
                             std::string_view value) {
    if (Value(section, key) == value) return;
    const TKeyLines* found = Find(section, key);
    if (found == nullptr) {
        AppendKey(section, key, value);
    } else {
        ReplaceValue(*found, value);
    }
}

void TIniDocument::WriteInteger(std::string_view section, std::string_view key,
                                std::int32_t value) {
    if (ParseInteger(Value(section, key).value_or(std::string())) == value) return;
    WriteText(section, key, std::to_string(value));
}

void TIniDocument::WriteBoolean(std::string_view section, std::string_view key, bool value) {
    WriteInteger(section, key, value ? 1 : 0);
}

void TIniDocument::ReplaceValue(const TKeyLines& found, std::string_view value) {
    std::string& line = sections_[found.section].lines[found.lines.front()];
    std::string bytes = EncodeIni(QuoteIni(value), encoding_);
    if (ReadIniLine(line, encoding_).kind == TIniLineKind::Key) {
        const TIniValueRange range = FindIniValue(line, encoding_);
        line.replace(range.start, range.end - range.start, bytes);
    } else {
        const std::size_t end = line.size() - IniLineEnd(line, encoding_).size();
        line.insert(end, EncodeIni("=", encoding_) + bytes);
    }
}

void TIniDocument::AppendKey(std::string_view section, std::string_view key,
                             std::string_view value) {
    const std::size_t number = SectionForWriting(section);
    TSection& target = sections_[number];
    const auto at = target.lines.begin() + static_cast<std::ptrdiff_t>(target.afterLastKey);
    const auto before = std::find_if(std::reverse_iterator(at), target.lines.rend(),
                                     [](const std::string& line) { return !line.empty(); });
    EndLine(*before);
    std::string line = EncodeIni(std::string(key) + '=' + QuoteIni(value), encoding_);
    // A CR alone, in a file with other line ends, is not a line end to every reader.
    const std::string_view end = IniLineEnd(*before, encoding_);
    line += end == EncodeIni("\r", encoding_) ? std::string_view(lineEnd_) : end;
    target.lines.insert(at, std::move(line));
    ++target.afterLastKey;
    IndexKey(number, UpperCase(section), key);
}

std::size_t TIniDocument::SectionForWriting(std::string_view section) {
    const std::string upperName = UpperCase(section);
    const auto found = sectionIndex_.find(upperName);
    if (found != sectionIndex_.end()) return found->second.front();
    EndLastLine();
    std::string line = EncodeIni('[' + std::string(section) + ']', encoding_) + lineEnd_;
    return AddSection(std::move(line), upperName);
}

void TIniDocument::EndLine(std::string& line) const {
    if (!IniLineEnd(line, encoding_).empty()) return;
    // An odd byte left over would shift all units after it.
    if (line.size() % IniUnitSize(encoding_) != 0) line += '\0';
    line += lineEnd_;
}

void TIniDocument::EndLastLine() {
    for (std::size_t section = sections_.size(); section-- > 0;) {
        std::vector<std::string>& lines = sections_[section].lines;
        for (std::size_t line = lines.size(); line-- > 0;) {
            if (!lines[line].empty()) return EndLine(lines[line]);
        }
    }
}

std::vector<std::string> TIniDocument::Keys(std::string_view section) const {
    std::vector<std::string> names;
    const auto found = sectionIndex_.find(UpperCase(section));
    if (found == sectionIndex_.end()) return names;
    for (const std::string& text : sections_[found->second.front()].lines) {
        if (IsIniComment(text, encoding_)) continue;
        TIniLine line = ReadIniLine(text, encoding_);
        const bool isKey = line.kind == TIniLineKind::Key || line.kind == TIniLineKind::BareKey;
        if (isKey && !line.name.empty()) names.push_back(std::move(line.name));
    }
    return names;
}

void TIniDocument::EraseKey(std::string_view section, std::string_view key) {
    const auto found = keyIndex_.find(KeyName(UpperCase(section), key));
    if (found == keyIndex_.end()) return;
    for (const std::size_t line : found->second.lines)
        sections_[found->second.section].lines[line].clear();
    keyIndex_.erase(found);
}

void TIniDocument::EraseSection(std::string_view section) {
    const std::string upperName = UpperCase(section);
    const auto found = sectionIndex_.find(upperName);
    if (found == sectionIndex_.end()) return;
    for (const std::string& line : sections_[found->second.front()].lines)
        keyIndex_.erase(KeyName(upperName, ReadIniLine(line, encoding_).name));
    for (const std::size_t number : found->second)
        EraseLines(number);
    sectionIndex_.erase(found);
}

void TIniDocument::EraseLines(std::size_t section) {
    const auto erased = sections_.begin() + static_cast<std::ptrdiff_t>(section);
    const bool isLast = std::all_of(erased + 1, sections_.end(),
                                    [](const TSection& later) { return later.lines.empty(); });
    std::vector<std::string>& lines = erased->lines;
    const auto own = std::ranges::find_if(
        lines.rbegin(), lines.rend(),
        [&](const std::string& line) { return !line.empty() && !IsIniComment(line, encoding_); });
    lines.erase(lines.begin(), isLast ? lines.end() : own.base());
}

}  // namespace tolvane
