#include "articles/forms/ListLayout.h"

#include "articles/GridLayout.h"
#include "window/Placement.h"

namespace tolvane {
namespace {

void RestorePlace(HWND window, const TWindowPlace& place) {
    MoveTo(window, place);
    if (place.maximized)
        SendMessageW(GetParent(window), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(window), 0);
}

}  // namespace

void ApplyListLayout(const TIniDocument& document, const TForm& form, TListGrid& grid) {
    const TGridLayout layout = LoadGridLayout(document, form.Dpi().DotsPerInch());
    grid.SetLayout(layout);
    if (layout.place) RestorePlace(form.Handle(), *layout.place);
}

void WriteListLayout(const TForm& form, const TListGrid& grid, TIniDocument& document) {
    TGridLayout layout = grid.Layout();
    layout.place = PlaceOf(form.Handle());
    SaveGridLayout(layout, form.Dpi().DotsPerInch(), document);
}

}  // namespace tolvane
