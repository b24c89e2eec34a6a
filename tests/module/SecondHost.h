#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "tests/support/module/Commands.h"
#include "tests/support/window/UserScript.h"
#include "window/CheckList.h"

namespace tolvane::test {

// What a user does in the list window's own windows; the test program and the second host share it.

// Adds an ETS scale with this number at 10.0.0.<number> in the editor and confirms.
inline void AddScale(HWND list, int number) {
    const TDialogScript dialog(L"TfrmScaleSettings", {[number](HWND window) {
                                   SetTextOf(window, "edtScaleNumb", std::to_wstring(number));
                                   Choose(ControlOf(window, "cbScaleType"), 1);
                                   Press(window, "rbTCP");
                                   SetTextOf(window, "edtIpAddress",
                                             L"10.0.0." + std::to_wstring(number));
                                   Press(window, "btnOk");
                               }});
    const TDialogScript editor(L"TScaleComunicationForm",
                               {Pressing("btnAddScale"), Pressing("btnOk")});
    SendMessageW(list, WM_COMMAND, kSettingsCommand, 0);
}

// Changes the mark of a scale in the run window and closes it.
inline void SetMark(HWND list, int item, const std::function<bool(bool)>& mark) {
    const TDialogScript run(L"TSetPluForm", {[item, &mark](HWND window) {
                                TCheckList scales(ControlOf(window, "ScaleList"));
                                scales.SetChecked(item, mark(scales.IsChecked(item)));
                                Press(window, "OkBtn");
                            }});
    SendMessageW(list, WM_COMMAND, kWriteAll, 0);
}

}  // namespace tolvane::test
