#include "config/IniDocument.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/Cp1251.h"
#include "text/Fnv.h"
#include "text/Numbers.h"

namespace tolvane {

namespace {

std::uint64_t KeyHash(std::size_t section, std::string_view key) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    return HashIgnoringCase(key, kFnvBasis ^ (section * kSpread));
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

TIniDocument::TIniDocument(std::string_view bytes) : text_(bytes) {
    const TIniMark mark = ReadIniMark(bytes);
    encoding_ = mark.encoding;
    markSize_ = mark.size;
    endsInUnit_ = bytes.size() % IniUnitSize(encoding_) != 0;
    sections_.emplace_back();
    Load();
}

void TIniDocument::Load() {
    const std::vector<std::string_view> lines =
        SplitIniLines(std::string_view(text_).substr(markSize_), encoding_);
    lineEnd_ = UsualLineEnd(lines, encoding_);
    lines_.reserve(lines.size());
    std::string space;
    std::size_t start = markSize_;
    for (const std::string_view text : lines) {
        const TIniLine read = ReadIniLine(text, encoding_);
        const std::string_view name = DecodeIniName(read.name, encoding_, space);
        if (read.kind == TIniLineKind::Section) {
            AddSection(name, start, text.size());
        } else {
            const std::size_t line = AddLine(start, text.size());
            if (read.kind != TIniLineKind::Other) AddKey(line, name);
        }
        start += text.size();
    }
}

std::size_t TIniDocument::AddSection(std::string_view name, std::size_t start, std::size_t size) {
    const std::size_t first = FindSection(name);
    const std::size_t section = sections_.size();
    sections_.emplace_back();
    sections_[section].lastKey = AddLine(start, size);
    sections_[section].lastRepeat = section;
    if (first == kNone) {
        sections_[section].indexed = true;
        sectionIndex_.Add(HashIgnoringCase(name, kFnvBasis), section);
    } else {
        const std::size_t before = std::exchange(sections_[first].lastRepeat, section);
        sections_[before].nextRepeat = section;
    }
    return section;
}

std::size_t TIniDocument::AddLine(std::size_t start, std::size_t size) {
    TSection& section = sections_.back();
    const std::size_t line = lines_.size();
    lines_.push_back({start, size, sections_.size() - 1, section.last});
    (section.last == kNone ? section.first : lines_[section.last].next) = line;
    section.last = line;
    return line;
}

// The line is the section's last one so far that has a key.
void TIniDocument::AddKey(std::size_t line, std::string_view name) {
    TSection& section = sections_[lines_[line].section];
    section.lastKey = line;
    if (!section.indexed) return;
    const std::size_t first = FindKey(lines_[line].section, name);
    if (first == kNone)
        keyIndex_.Add(KeyHash(lines_[line].section, name), line);
    else
        lines_[line].nextRepeat = std::exchange(lines_[first].nextRepeat, line);
}

std::string TIniDocument::Bytes() const {
    std::string bytes;
    bytes.reserve(text_.size());
    bytes.append(text_, 0, markSize_);
    for (const TSection& section : sections_) {
        for (std::size_t line = section.first; line != kNone; line = lines_[line].next)
            bytes += TextOf(line);
    }
    return bytes;
}

void TIniDocument::SetText(std::size_t line, std::string_view text) {
    lines_[line].start = text_.size();
    lines_[line].size = text.size();
    text_ += text;
}

bool TIniDocument::IsNamed(std::size_t line, std::string_view name) const {
    std::string space;
    const std::string_view bytes = ReadIniLine(TextOf(line), encoding_).name;
    return EqualIgnoringCase(DecodeIniName(bytes, encoding_, space), name);
}

std::size_t TIniDocument::FindSection(std::string_view name) const {
    return sectionIndex_.Find(HashIgnoringCase(name, kFnvBasis), [&](std::size_t section) {
        return sections_[section].indexed && IsNamed(sections_[section].first, name);
    });
}

std::size_t TIniDocument::FindKey(std::size_t section, std::string_view key) const {
    if (section == kNone) return kNone;
    return keyIndex_.Find(KeyHash(section, key), [&](std::size_t line) {
        return lines_[line].section == section && lines_[line].size != 0 && IsNamed(line, key);
    });
}

bool TIniDocument::HasSection(std::string_view section) const {
    return FindSection(section) != kNone;
}

std::optional<std::string> TIniDocument::Value(std::string_view section,
                                               std::string_view key) const {
    const std::size_t found = FindKey(FindSection(section), key);
    if (found == kNone) return std::nullopt;
    const std::string_view line = TextOf(found);
    if (ReadIniLine(line, encoding_).kind != TIniLineKind::Key) return std::nullopt;
    const TIniValueRange range = FindIniValue(line, encoding_);
    return UnquoteIni(DecodeIni(line.substr(range.start, range.end - range.start), encoding_));
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
    const std::size_t found = FindKey(FindSection(section), key);
    if (found == kNone) {
        if (CompleteLastUnit()) return WriteText(section, key, value);
        AppendKey(section, key, value);
    } else {
        ReplaceValue(found, value);
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

void TIniDocument::ReplaceValue(std::size_t line, std::string_view value) {
    std::string text(TextOf(line));
    std::string bytes = EncodeIni(QuoteIni(value), encoding_);
    if (ReadIniLine(text, encoding_).kind == TIniLineKind::Key) {
        const TIniValueRange range = FindIniValue(text, encoding_);
        text.replace(range.start, range.end - range.start, bytes);
    } else {
        // A byte left over at the file's end stays behind the whole units.
        const std::size_t whole = text.size() - text.size() % IniUnitSize(encoding_);
        const std::size_t end = whole - IniLineEnd(text, encoding_).size();
        text.insert(end, EncodeIni("=", encoding_) + bytes);
    }
    SetText(line, text);
}

void TIniDocument::AppendKey(std::string_view section, std::string_view key,
                             std::string_view value) {
    const std::size_t after = sections_[SectionForWriting(section)].lastKey;
    std::size_t before = after;  // in the file
    while (lines_[before].size == 0)
        before = lines_[before].previous;
    EndLine(before);
    std::string text = EncodeIni(std::string(key) + '=' + QuoteIni(value), encoding_);
    // A CR alone, in a file with other line ends, is not a line end to every reader.
    const std::string_view end = IniLineEnd(TextOf(before), encoding_);
    text += end == EncodeIni("\r", encoding_) ? std::string_view(lineEnd_) : end;
    AddKey(InsertLine(after, text), key);
}

std::size_t TIniDocument::InsertLine(std::size_t after, std::string_view text) {
    const std::size_t line = lines_.size();
    const std::size_t section = lines_[after].section;
    const std::size_t next = std::exchange(lines_[after].next, line);
    (next == kNone ? sections_[section].last : lines_[next].previous) = line;
    lines_.push_back({0, 0, section, after, next});
    SetText(line, text);
    return line;
}

// An odd byte left over would shift all units after it. The unit that it becomes part of can end a
// header or a line.
bool TIniDocument::CompleteLastUnit() {
    if (!std::exchange(endsInUnit_, false)) return false;
    std::string bytes = Bytes();
    if (bytes.size() % IniUnitSize(encoding_) == 0) return false;
    *this = TIniDocument(bytes += '\0');
    return true;
}

std::size_t TIniDocument::SectionForWriting(std::string_view section) {
    const std::size_t found = FindSection(section);
    if (found != kNone) return found;
    EndLastLine();
    const std::string header = EncodeIni('[' + std::string(section) + ']', encoding_) + lineEnd_;
    const std::size_t start = text_.size();
    text_ += header;
    return AddSection(section, start, header.size());
}

void TIniDocument::EndLine(std::size_t line) {
    std::string text(TextOf(line));
    if (IniLineEnd(text, encoding_).empty()) SetText(line, text += lineEnd_);
}

void TIniDocument::EndLastLine() {
    for (std::size_t section = sections_.size(); section-- > 0;) {
        for (std::size_t line = sections_[section].last; line != kNone;
             line = lines_[line].previous) {
            if (lines_[line].size != 0) return EndLine(line);
        }
    }
}

std::vector<std::string> TIniDocument::Keys(std::string_view section) const {
    std::vector<std::string> names;
    const std::size_t found = FindSection(section);
    if (found == kNone) return names;
    for (std::size_t at = sections_[found].first; at != kNone; at = lines_[at].next) {
        if (IsIniComment(TextOf(at), encoding_)) continue;
        const TIniLine line = ReadIniLine(TextOf(at), encoding_);
        const bool isKey = line.kind == TIniLineKind::Key || line.kind == TIniLineKind::BareKey;
        if (isKey && !line.name.empty()) names.push_back(DecodeIni(line.name, encoding_));
    }
    return names;
}

void TIniDocument::EraseKey(std::string_view section, std::string_view key) {
    for (std::size_t line = FindKey(FindSection(section), key); line != kNone;
         line = lines_[line].nextRepeat)
        lines_[line].size = 0;
}

void TIniDocument::EraseSection(std::string_view section) {
    for (std::size_t number = FindSection(section); number != kNone;
         number = sections_[number].nextRepeat)
        EraseLines(number);
}

void TIniDocument::EraseLines(std::size_t section) {
    TSection& erased = sections_[section];
    erased.indexed = false;
    const bool isLast =
        std::all_of(sections_.begin() + static_cast<std::ptrdiff_t>(section) + 1, sections_.end(),
                    [](const TSection& later) { return later.first == kNone; });
    std::size_t own = erased.last;
    while (own != kNone && (lines_[own].size == 0 || IsIniComment(TextOf(own), encoding_)))
        own = lines_[own].previous;
    if (isLast)
        erased.first = kNone;
    else if (own != kNone)
        erased.first = lines_[own].next;
    if (erased.first == kNone)
        erased.last = kNone;
    else
        lines_[erased.first].previous = kNone;
}

}  // namespace tolvane
