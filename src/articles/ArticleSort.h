#pragma once

#include <optional>

#include "articles/ArticleTable.h"

namespace tolvane {

// By which field the articles were sorted last, and which way.
struct TSortState {
    std::optional<TField> field;
    bool ascending = true;

    // Before a refresh.
    void Clear() { field.reset(); }
    // After a load: the query's own order.
    void SetLoaded() { *this = {TField::PLU_NUMB, true}; }
    // A click on a column's title: another field sorts ascending, the same one flips.
    void ClickTitle(TField clicked) {
        ascending = field != clicked || !ascending;
        field = clicked;
    }
};

// Sorts by the field and then by the article number, without regard to case; descending turns both
// around. Rows that are equal in both keep their order.
void SortArticles(TArticleTable& articles, TField field, bool ascending);

}  // namespace tolvane
