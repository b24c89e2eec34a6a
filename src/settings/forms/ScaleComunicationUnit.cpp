#include "settings/forms/ScaleComunicationUnit.h"

#include "settings/ScaleListEdit.h"
#include "settings/forms/ScaleComunicationForm.h"
#include "window/OwnerWatch.h"

namespace tolvane {

bool ShowScaleList(HWND owner, TScaleTable& table) {
    TScaleComunicationForm form(owner, ListedScales(table), SystemScaleListServices());
    const TOwnerWatch watch(owner, form);
    if (form.ShowModal() != IDOK) return false;
    StoreListedScales(form.Scales(), table);
    return true;
}

}  // namespace tolvane
