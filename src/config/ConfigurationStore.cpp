#include "config/ConfigurationStore.h"

#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "config/IniFile.h"
#include "config/ScaleTableMerge.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

// The loaded file has ".ini"; messages about saving show this spelling. The system ignores the case
// of file names, so both are the same file.
constexpr const char* kExtensionForSaving = ".Ini";

std::optional<TIniDocument> TryRead(const std::filesystem::path& file) {
    try {
        return ReadIniFile(file);
    } catch (const TFileError&) {
        return std::nullopt;
    }
}

std::string NoRoomText(const TScaleTable& scales, const std::vector<int>& slots) {
    std::string text(
        "Във файла с настройките вече има 20 везни, записани от друг прозорец. Не са записани: "_cp1251);
    for (const int slot : slots)
        text += (slot == slots.front() ? "" : ", ") + scales[slot].ScaleName.Str();
    return text;
}

}  // namespace

TConfigurationStore::TConfigurationStore(std::filesystem::path file,
                                         std::filesystem::path hostSettings)
    : file_(std::move(file)), hostSettings_(std::move(hostSettings)) {}

void TConfigurationStore::Load(const TReadLayout& read) {
    const std::optional<TIniDocument> document = TryRead(file_);
    layoutLoaded_ = scalesLoaded_ = document.has_value();
    scales_.Load(document.value_or(TIniDocument()));
    savedScales_ = scales_;
    read(document.value_or(TIniDocument()));
}

void TConfigurationStore::EnsureScalesLoaded() {
    if (scalesLoaded_) return;
    scales_.Load(ReadIniFile(file_));
    savedScales_ = scales_;
    scalesLoaded_ = true;
}

void TConfigurationStore::EnsureLayoutLoaded(const TReadLayout& read) {
    if (layoutLoaded_) return;
    read(ReadIniFile(file_));
    layoutLoaded_ = true;
}

TIniDocument TConfigurationStore::HostSettings() const {
    return TryRead(hostSettings_).value_or(TIniDocument());
}

std::filesystem::path TConfigurationStore::FileForSaving() const {
    return std::filesystem::path(file_).replace_extension(kExtensionForSaving);
}

void TConfigurationStore::SaveScales() {
    Save(true, {});
}

void TConfigurationStore::SaveLayout(const TWriteLayout& write) const {
    UpdateIniFile(file_, write);
}

void TConfigurationStore::SaveAtEnd(const TWriteLayout& write) {
    if (std::exchange(ended_, true)) return;
    Save(scalesLoaded_, layoutLoaded_ ? write : TWriteLayout());
}

bool TConfigurationStore::HasUnsavedScales() const {
    return scalesLoaded_ && !HasSameScales(scales_, savedScales_);
}

void TConfigurationStore::Save(bool scales, const TWriteLayout& layout) {
    const std::filesystem::path file = FileForSaving();
    std::vector<int> leftOut;
    UpdateIniFile(file, [&](TIniDocument& document) {
        // When the file is missing, nobody has removed its scales.
        std::error_code ignored;
        if (scales && !std::filesystem::exists(file, ignored))
            scales_.Save(document);
        else if (scales)
            leftOut = SaveScaleChanges(savedScales_, scales_, document);
        if (layout) layout(document);
    });
    if (scales) savedScales_ = scales_;
    if (leftOut.empty()) return;
    // The next save tries again.
    for (const int slot : leftOut)
        savedScales_[slot].TCPPort = 0;
    throw TFileError(NoRoomText(scales_, leftOut));
}

}  // namespace tolvane
