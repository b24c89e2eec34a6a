#pragma once

#include <windows.h>

#include <string>

namespace tolvane::test {

// The text (UTF-8) that appears while the mouse rests on the form's control; empty when none does.
std::string HintText(HWND form, const std::string& control);

}  // namespace tolvane::test
