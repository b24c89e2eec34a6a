#include "articles/forms/ListSearch.h"

#include <optional>
#include <string>

#include "text/Cp1251.h"
#include "window/InputBox.h"
#include "window/MessageBoxes.h"

namespace tolvane {

void TListSearch::SelectField(TField field) const {
    session.SelectSearchField(field);
    bars.ShowSearchField(field);
}

void TListSearch::SelectColumn(std::size_t column) const {
    if (column >= grid.Grid().ColumnCount()) return;
    session.SetSearchText({});
    SelectField(grid.FieldOf(column));
}

void TListSearch::AskAndFindFirst() const {
    if (session.IsBusy()) return;
    std::optional<std::string> answer;
    {
        const TArticleSession::THold hold(session);
        answer = AskText(form.Handle(), bars.SearchCaption(), "Стойност"_cp1251);
    }
    if (form.Handle() == nullptr) return;
    session.SetSearchText(answer.value_or(std::string()));
    if (session.SearchText().empty()) return;
    if (const std::optional<TRowId> found = session.FindFirst()) {
        grid.Grid().SetCurrentRow(*found);
        SetFocus(grid.Grid().Handle());
    } else {
        ShowInformation(form.Handle(), "Не е намерен артикул."_cp1251);
    }
}

void TListSearch::FindNext() const {
    if (session.SearchText().empty())
        AskAndFindFirst();
    else if (const std::optional<TRowId> found = session.FindNext(grid.Grid().CurrentRow()))
        grid.Grid().SetCurrentRow(*found);
}

}  // namespace tolvane
