#pragma once

#include <cstddef>
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

class TRunMarks;

// The articles of a run: a table that does not change during the run, and its rows in order.
struct TRunArticles {
    std::shared_ptr<const TArticleTable> table;
    std::vector<TRowId> rows;
};

// Processes the checked scales one after another and shows each step in the view. Runs on the
// caller's thread, which should be a worker: it blocks for all exchanges and pauses. Throws
// nothing: an error outside the scale layer goes to TRunView::ShowRunError and ends the run.
class TScaleRun {
public:
    TScaleRun(TScaleFactory& factory, TClock& clock, TRunView& view, TRunStop& stop,
              const TRegionalSettings& regional);

    // SaveBtn: writes the articles, or deletes them when `write` is false. Takes the items whose
    // Rec.Checked is set.
    void RunListed(const std::vector<TScaleObj>& items, const TRunArticles& articles,
                   TLineChoices choices, bool write) noexcept;
    // DeleteBtn: deletes every article of the scales. The user may change the marks until the first
    // scale is connected, so the run reads `marks` when it reaches an item, not Rec.Checked.
    void RunDeleteEverything(const std::vector<TScaleObj>& items, const TRunMarks& marks) noexcept;

private:
    template <class Body>
    void Guarded(Body body) noexcept;
    void ShowCurrentError() noexcept;
    // Clears the log. Returns false and logs the reason when the list holds no scale.
    bool BeginLog(const std::vector<TScaleObj>& items);
    void EndLog(bool anyChecked);
    // Counts the lines of the checked scales.
    std::size_t CountLines(const std::vector<TScaleObj>& items, const TRunArticles& articles,
                           TLineChoices choices) const;
    void LogStart(const std::string& name);
    // Shows the connection and opens the scale; the reason of a failure is in session_.LastError.
    bool Connect(const TScaleRec& rec);
    void ProcessListed(const TScaleRec& rec, const TRunArticles& articles, TLineChoices choices,
                       bool write);
    void DeleteEverythingIn(const TScaleRec& rec);

    TRunView& view_;
    TRunStop& stop_;
    TRegionalSettings regional_;
    TScaleSession session_;
    std::size_t linesLater_ = 0;  // of the scales that were not reached yet
};

// The connection of a scale as ReadPropLabel shows it: the host and the port or speed. Only the
// host for an unknown connection type.
std::string ConnectionText(const TScaleRec& rec);

}  // namespace tolvane
