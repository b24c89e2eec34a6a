#include "articles/forms/ListLayout.h"

#include "articles/GridLayout.h"
#include "window/Placement.h"

namespace tolvane {
namespace {

void RestorePlace(HWND window, const TWindowPlace& place) {
    MoveToPlacement(window,
                    {place.left, place.top, place.left + place.width, place.top + place.height});
    if (place.maximized)
        SendMessageW(GetParent(window), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(window), 0);
}

TWindowPlace PlaceOf(HWND window) {
    const TPlacement placement = PlacementOf(window);
    const RECT& outer = placement.outer;
    return {.left = outer.left,
            .top = outer.top,
            .width = outer.right - outer.left,
            .height = outer.bottom - outer.top,
            .maximized = placement.maximized};
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
