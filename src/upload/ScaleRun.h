#pragma once

#include <memory>
#include <string>
#include <vector>

#include "articles/ArticleTable.h"
#include "config/TypesUnit.h"
#include "system/Clock.h"
#include "system/RegionalSettings.h"
#include "upload/ArticleLine.h"
#include "upload/RunView.h"
#include "upload/ScaleFactory.h"
#include "upload/ScaleSession.h"

namespace tolvane {

// One item of ScaleList, with its check mark.
struct TRunItem {
    TScaleRec rec;
    bool checked = false;
};

class TRunMarks;

// The articles of a run: a table that does not change while the run lives, and its rows in order.
struct TRunArticles {
    std::shared_ptr<const TArticleTable> table;
    std::vector<TRowId> rows;
};

// Works through the checked scales, one after another, and tells the view each step. Runs on the
// caller's thread, made for a worker; nothing is thrown: an error outside the scale layer goes to
// TRunView::ShowRunError and ends the run.
class TScaleRun {
public:
    TScaleRun(TScaleFactory& factory, TClock& clock, TRunView& view, TRunStop& stop,
              const TRegionalSettings& regional);

    // SaveBtn: writes the articles (write) or deletes them. The items' marks stand as they are.
    void RunListed(const std::vector<TRunItem>& items, const TRunArticles& articles,
                   TLineChoices choices, bool write) noexcept;
    // DeleteBtn: deletes every article of the scales. Until the first scale is connected the user
    // may change the marks, so `marks` decides, for each item when its turn comes.
    void RunDeleteEverything(const std::vector<TRunItem>& items, const TRunMarks& marks) noexcept;

private:
    template <class Body>
    void Guarded(Body body) noexcept;
    // Clears the log; false, with the reason logged, when there is no scale at all.
    bool BeginLog(const std::vector<TRunItem>& items);
    void EndLog(bool anyChecked);
    void LogStart(const std::string& name);
    // Sets the connection line and opens the scale; a failure is in session_.LastError.
    bool Connect(const TScaleRec& rec);
    void ListedInScale(const TScaleRec& rec, const TRunArticles& articles, TLineChoices choices,
                       bool write);
    void EverythingInScale(const TScaleRec& rec);

    TRunView& view_;
    TRunStop& stop_;
    TRegionalSettings regional_;
    TScaleSession session_;
};

// The connection of a scale as ReadPropLabel shows it; only the host for an unknown kind of
// connection.
std::string ConnectionText(const TScaleRec& rec);

}  // namespace tolvane
