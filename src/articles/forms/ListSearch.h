#pragma once

#include "articles/ArticleSession.h"
#include "articles/forms/ListBars.h"
#include "articles/forms/ListGrid.h"
#include "window/Form.h"

namespace tolvane {

// The search of the list window: what its search menu, its search button, Ctrl+F and F3 do.
// Interface thread.
struct TListSearch {
    TForm& form;
    TArticleSession& session;
    TListGrid& grid;
    const TListBars& bars;

    // Searches in this field from now on. The search text is kept.
    void SelectField(TField field) const;
    // The same by the search menu, which empties the text; `column` is the menu item's index.
    void SelectColumn(std::size_t column) const;
    // Asks for a text and makes the first row that has it the current one. The form may be
    // destroyed meanwhile.
    void AskAndFindFirst() const;
    // Makes the next row that has the text the current one; asks for a text when there is none.
    void FindNext() const;
};

}  // namespace tolvane
