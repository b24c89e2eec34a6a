#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleLoader.h"
#include "tests/support/database/TestDatabase.h"

namespace tolvane::test {

// Records what the loader reports, in order: "suspend", "show 2", "step", "hide", "resume", "error
// <UTF-8>".
class TRecordingView : public TWaitView, public TLoadView {
public:
    void Show(int count) override { Note("show " + std::to_string(count)); }
    void Step() override { Note("step"); }
    void Hide() override { Note("hide"); }
    void SuspendDisplay() override { Note("suspend"); }
    void ResumeDisplay() override { Note("resume"); }
    void ShowError(std::string_view text) override;

    std::vector<std::string> events;
    // Called with each event.
    std::function<void(const std::string&)> onEvent;

private:
    void Note(std::string event);
};

class TFixedClock : public TLocalClock {
public:
    TLocalDateTime Now() const override { return now; }
    // A Wednesday.
    TLocalDateTime now{{2024, 5, 8}, {12, 30, 0, 0}};
};

// Values by column, as SQL literals in UTF-8; an unknown column fails in the database.
using TColumns = std::map<std::string, std::string>;

// The loader on a database of its own with the demo's tables.
class LoadTest : public testing::Test {
protected:
    LoadTest();
    // Starts over with other column types.
    void Use(std::string_view schema);
    // Binds the loader to the host's present connection.
    void Connect();

    // Adds one row. A column that is not given gets a usual value: an article priced in leva and
    // sold by the kilogram.
    void AddArticle(int number, const TColumns& columns = {});
    // 999 articles more, from number 2 on: more than one packet holds.
    void AddManyArticles();
    void AddPromotion(int id, int article, const TColumns& columns = {});
    void Insert(const std::string& table, const TColumns& columns);
    void Run(std::string_view statement) { database_->Host().Run(statement); }

    TArticleLoader& Loader() { return *loader_; }
    std::vector<std::string> LoadEvents();
    // A field of the row with this index in the table's order, as UTF-8.
    std::string Text(std::size_t index, TField field) const;
    std::string Shown(std::size_t index, TField field) const;
    double Float(std::size_t index, TField field) const;
    std::vector<int> Integers(TField field) const;

    std::unique_ptr<TTestDatabase> database_;
    std::unique_ptr<TTransaction> transaction_;
    std::unique_ptr<TQuery> query_;
    TArticleTable articles_;
    TSortState sort_;
    TFixedClock clock_;
    TRegionalSettings regional_;
    TRecordingView view_;
    std::unique_ptr<TArticleLoader> loader_;
};

}  // namespace tolvane::test
