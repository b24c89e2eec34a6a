#pragma once

#include "articles/forms/ListGrid.h"
#include "config/IniDocument.h"
#include "window/Form.h"

namespace tolvane {

// What the list window keeps between two starts: its columns and its own place in the host's main
// window. Interface thread.

// Moves the window and shows the columns as the document says.
void ApplyListLayout(const TIniDocument& document, const TForm& form, TListGrid& grid);
void WriteListLayout(const TForm& form, const TListGrid& grid, TIniDocument& document);

}  // namespace tolvane
