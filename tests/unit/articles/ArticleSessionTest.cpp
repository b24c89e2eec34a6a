#include "articles/ArticleSession.h"

#include <gtest/gtest.h>

#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

class TCountingView : public TWaitView, public TLoadView {
public:
    void Show(int) override { ++calls; }
    void Step() override { ++calls; }
    void Hide() override { ++calls; }
    void SuspendDisplay() override { ++calls; }
    void ResumeDisplay() override { ++calls; }
    void ShowError(std::string_view) override { ++calls; }

    int calls = 0;
};

// What a session does without a database.
class ArticleSessionTest : public testing::Test {
protected:
    TCountingView view_;
    TArticleSession session_{view_, SystemLocalClock(), [] { return TRegionalSettings(); }};
};

TEST_F(ArticleSessionTest, WithoutAConnectionNothingIsLoadedOrEnded) {
    session_.LoadArticles();
    session_.Refresh();
    session_.End();
    EXPECT_EQ(view_.calls, 0);
    EXPECT_EQ(session_.ShownRowCount(), 0U);
}

TEST_F(ArticleSessionTest, AMissingClientLibraryLeavesNoConnection) {
    void* cell = nullptr;
    EXPECT_THROW(session_.Connect("no-such-client-library", &cell, view_), TDatabaseError);
    session_.LoadArticles();
    EXPECT_EQ(view_.calls, 0);
}

TEST_F(ArticleSessionTest, IsBusyForAsLongAsSomebodyHoldsIt) {
    EXPECT_FALSE(session_.IsBusy());
    {
        const TArticleSession::THold outer(session_);
        {
            const TArticleSession::THold inner(session_);
            EXPECT_TRUE(session_.IsBusy());
        }
        EXPECT_TRUE(session_.IsBusy());
        EXPECT_FALSE(session_.IsLoading());
        EXPECT_TRUE(session_.MayEnd());
    }
    EXPECT_FALSE(session_.IsBusy());
}

TEST_F(ArticleSessionTest, IsBusyForAsLongAsSomebodyKeepsTheArticles) {
    auto kept = session_.KeepArticles();
    EXPECT_EQ(kept.get(), &session_.Articles());
    EXPECT_TRUE(session_.IsBusy());
    kept.reset();
    EXPECT_FALSE(session_.IsBusy());
}

TEST_F(ArticleSessionTest, ARefreshOfABusySessionKeepsTheSort) {
    EXPECT_FALSE(session_.ClickTitle(TField::PLU_NAME));
    {
        const TArticleSession::THold hold(session_);
        session_.Refresh();
    }
    EXPECT_EQ(session_.Sort().field, TField::PLU_NAME);
    session_.Refresh();
    EXPECT_EQ(session_.Sort().field, std::nullopt);
}

TEST_F(ArticleSessionTest, ASearchTextIsInUpperCaseAndKeepsItsBlanks) {
    session_.SetSearchText(" ябълки "_cp1251);
    EXPECT_EQ(ToUtf8(session_.SearchText()), " ЯБЪЛКИ ");
}

TEST_F(ArticleSessionTest, ASearchTextOfBlanksCountsAsNoText) {
    session_.SetSearchText("a");
    session_.SetSearchText("   ");
    EXPECT_EQ(session_.SearchText(), "");
}

TEST_F(ArticleSessionTest, AnotherSearchFieldKeepsTheText) {
    EXPECT_EQ(session_.SearchField(), TField::PLU_NUMB);
    session_.SetSearchText("12");
    session_.SelectSearchField(TField::PLU_BARCODE);
    EXPECT_EQ(session_.SearchField(), TField::PLU_BARCODE);
    EXPECT_EQ(session_.SearchText(), "12");
    EXPECT_EQ(session_.FindFirst(), std::nullopt);
    EXPECT_EQ(session_.FindNext(std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace tolvane
