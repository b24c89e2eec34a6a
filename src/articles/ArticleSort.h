#pragma once

#include <optional>

#include "articles/ArticleTable.h"

namespace tolvane {

// By which field the articles were last sorted, and in which order.
struct TSortState {
    std::optional<TField> field;
    bool ascending = true;

    // Forgets the sort; called before a refresh.
    void Clear() { field.reset(); }
    // Sets the query's own order; called after a load.
    void SetLoaded() { *this = {TField::PLU_NUMB, true}; }
    // A click on a column's title: another field sorts in ascending order, the same one is
    // reversed.
    void ClickTitle(TField clicked) {
        ascending = field != clicked || !ascending;
        field = clicked;
    }
};

// Sorts by the field and then by the article number, without regard to case; a descending sort
// reverses both. Rows that are equal in both keep their order.
void SortArticles(TArticleTable& articles, TField field, bool ascending);

}  // namespace tolvane
