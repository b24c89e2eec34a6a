#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "articles/forms/PLUScaleListUnit.h"
#include "config/IniFile.h"
#include "config/ScaleTableMerge.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/Placement.h"

namespace tolvane {
namespace {

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

void TElicomPluScaleListForm::LoadSettings() {
    // A file that cannot be read counts as empty until somebody needs its scales or its layout.
    const std::optional<TIniDocument> document = TryRead(services_.configurationFile);
    layoutLoaded_ = scalesLoaded_ = document.has_value();
    scales_.Load(document.value_or(TIniDocument()));
    savedScales_ = scales_;
    grid_.SetStyle(LoadGridStyle(TryRead(services_.hostSettingsFile).value_or(TIniDocument())));
    ApplyLayout(document.value_or(TIniDocument()));
}

void TElicomPluScaleListForm::ApplyLayout(const TIniDocument& document) {
    const TGridLayout layout = LoadGridLayout(document, Dpi().DotsPerInch());
    hiddenRows_ = layout.hiddenRows;
    MakeColumns(layout);
    if (layout.place) RestorePlace(*layout.place);
}

void TElicomPluScaleListForm::RestorePlace(const TWindowPlace& place) {
    MoveToPlacement(Handle(),
                    {place.left, place.top, place.left + place.width, place.top + place.height});
    if (place.maximized)
        SendMessageW(GetParent(Handle()), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(Handle()), 0);
}

TGridLayout TElicomPluScaleListForm::CurrentLayout() const {
    TGridLayout layout;
    const std::vector<TGridColumnState> columns = grid_.Columns();
    std::transform(columns.begin(), columns.end(), layout.columns.begin(),
                   [](const TGridColumnState& column) {
                       return TColumnLayout{static_cast<TField>(column.key), column.width};
                   });
    layout.hiddenRows = hiddenRows_;
    const TPlacement placement = PlacementOf(Handle());
    const RECT& outer = placement.outer;
    layout.place = TWindowPlace{outer.left, outer.top, outer.right - outer.left,
                                outer.bottom - outer.top, placement.maximized};
    return layout;
}

void TElicomPluScaleListForm::NeedScales() {
    if (scalesLoaded_) return;
    scales_.Load(ReadIniFile(services_.configurationFile));
    savedScales_ = scales_;
    scalesLoaded_ = true;
}

void TElicomPluScaleListForm::NeedLayout() {
    if (layoutLoaded_) return;
    ApplyLayout(ReadIniFile(services_.configurationFile));
    layoutLoaded_ = true;
    ShowSortMark();
}

void TElicomPluScaleListForm::Save(bool scales, bool layout) {
    std::vector<int> leftOut;
    const std::filesystem::path& file = services_.savedConfigurationFile;
    UpdateIniFile(file, [&](TIniDocument& document) {
        // Nobody has removed the scales of a file that is not there.
        std::error_code ignored;
        if (scales && !std::filesystem::exists(file, ignored))
            scales_.Save(document);
        else if (scales)
            leftOut = SaveScaleChanges(savedScales_, scales_, document);
        if (layout) SaveGridLayout(CurrentLayout(), Dpi().DotsPerInch(), document);
    });
    if (scales) savedScales_ = scales_;
    if (leftOut.empty()) return;
    // The next save tries again.
    for (const int slot : leftOut)
        savedScales_[slot].TCPPort = 0;
    throw TFileError(NoRoomText(scales_, leftOut));
}

void TElicomPluScaleListForm::SaveScales() {
    Save(true, false);
}

void TElicomPluScaleListForm::SaveLayout() const {
    UpdateIniFile(services_.configurationFile, [&](TIniDocument& document) {
        SaveGridLayout(CurrentLayout(), Dpi().DotsPerInch(), document);
    });
}

void TElicomPluScaleListForm::EndWork() {
    if (std::exchange(ended_, true)) return;
    try {
        Save(scalesLoaded_, layoutLoaded_);
    } catch (const std::exception& error) {
        // What failed the start has been told already; a lost scale is told all the same.
        const bool losesScales = scalesLoaded_ && !HasSameScales(scales_, savedScales_);
        if (!closingAtOnce_ || losesScales) ShowError(error.what());
    }
}

}  // namespace tolvane
