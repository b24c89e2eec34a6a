#include "upload/forms/SetPluUnit.h"

#include "upload/RunKind.h"
#include "upload/forms/SetPluForm.h"
#include "window/OwnerWatch.h"

namespace tolvane {

void ShowRunWindow(HWND owner, TRunNumber number, const TRunContext& context) {
    const TRunKind* kind = RunKind(number);
    if (kind == nullptr || context.scales == nullptr || context.articles == nullptr ||
        context.articles->RowCount() == 0)
        return;
    TSetPluForm form(owner, *kind, context);
    {
        const TOwnerWatch watch(owner, form);
        form.ShowModal();
    }
    form.Finish();
}

}  // namespace tolvane
