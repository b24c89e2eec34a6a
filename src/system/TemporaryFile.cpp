#include "system/TemporaryFile.h"

#include <random>
#include <system_error>
#include <utility>

namespace tolvane {

namespace {

constexpr std::string_view kMark = ".tolvane-";
constexpr std::string_view kEnd = ".tmp";
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::size_t kUniqueDigits = 16;

// In the system's own characters: the name of another program's file may not be convertible to any
// others.
using TName = std::filesystem::path::string_type;

TName Folded(const std::filesystem::path& file) {
    TName text = file.filename().native();
    for (auto& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<TName::value_type>(c + ('a' - 'A'));
    }
    return text;
}

TName Native(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

}  // namespace

TTemporaryFile::TTemporaryFile(TTemporaryFile&& other) noexcept
    : target_(std::move(other.target_)),
      path_(std::exchange(other.path_, {})),
      file_(std::move(other.file_)) {}

TTemporaryFile& TTemporaryFile::operator=(TTemporaryFile&& other) noexcept {
    if (this == &other) return *this;
    Release();
    target_ = std::move(other.target_);
    path_ = std::exchange(other.path_, {});
    file_ = std::move(other.file_);
    return *this;
}

TTemporaryFile::~TTemporaryFile() {
    Release();
}

void ReplaceWholeFile(const std::filesystem::path& target, std::string_view bytes) {
    constexpr int kTries = 3;  // another program may remove a new file as a leftover
    for (int i = 0; i < kTries; ++i) {
        TTemporaryFile temporary(target);
        temporary.Write(bytes);
        if (temporary.TakePlaceOfTarget()) return;
    }
    throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
}

void RemoveLeftovers(const std::filesystem::path& target) {
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    for (const std::filesystem::path& name : NamesIn(folder)) {
        if (IsTemporaryOf(target, name)) RemoveLeftover(folder / name);
    }
}

std::filesystem::path UniqueTemporaryPath(const std::filesystem::path& target) {
    std::random_device random;
    TName name = target.native() + Native(kMark);
    for (std::size_t i = 0; i < kUniqueDigits; ++i)
        name += static_cast<TName::value_type>(kHexDigits[random() % kHexDigits.size()]);
    return name + Native(kEnd);
}

bool IsTemporaryOf(const std::filesystem::path& target, const std::filesystem::path& file) {
    const TName start = Folded(target) + Native(kMark);
    const TName end = Native(kEnd);
    const TName digits = Native(kHexDigits);
    const TName name = Folded(file);
    if (name.size() != start.size() + kUniqueDigits + end.size()) return false;
    return name.starts_with(start) && name.ends_with(end) &&
           name.find_first_not_of(digits, start.size()) == name.size() - end.size();
}

}  // namespace tolvane
