#include <gtest/gtest.h>

#include <algorithm>

#include "tests/integration/articles/LoadFixture.h"
#include "tests/support/database/CuttingProxy.h"

namespace tolvane::test {
namespace {

using TEvents = std::vector<std::string>;

class LoadFailuresTest : public LoadTest {
protected:
    // Loads, and checks that everything has been released when the error box comes. Returns the
    // events before the box; error_ is its text.
    TEvents FailingLoad() {
        bool asked = false;
        view_.onEvent = [&](const std::string& event) {
            if (!event.starts_with("error ")) return;
            asked = true;
            EXPECT_FALSE(transaction_->IsActive());
            EXPECT_FALSE(query_->IsOpen());
        };
        TEvents events = LoadEvents();
        EXPECT_TRUE(asked);
        error_ = events.empty() ? "" : events.back();
        if (!events.empty()) events.pop_back();
        return events;
    }
    void LoadOverAConnectionThatIsCut() {
        TCuttingProxy proxy(Server().address);
        TLogin login;
        login.address = proxy.Address();
        database_->Reconnect(login);
        Connect();
        proxy.CutAfter(60000);
        EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "hide", "resume"}));
        EXPECT_TRUE(proxy.HasCut());
    }

    std::string error_;
};

TEST_F(LoadFailuresTest, ATextThatDoesNotConvertForTheScaleNumberKeepsTheRowsBefore) {
    Use(Schema({{"PLU_SCALE_NUMB integer", "PLU_SCALE_NUMB varchar(10)"}}));
    AddArticle(1, {{"PLU_SCALE_NUMB", "'11'"}});
    AddArticle(2, {{"PLU_SCALE_NUMB", "' 12 '"}});
    AddArticle(3, {{"PLU_SCALE_NUMB", "'12а'"}});
    AddArticle(4, {{"PLU_SCALE_NUMB", "'14'"}});
    EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "show 3", "step", "step", "hide", "resume"}));
    EXPECT_EQ(error_, "error [REFRESH DATA]: Колона \"PLU_SCALE_NUMB\": \"12а\" не е цяло число");
    EXPECT_EQ(Integers(TField::PLU_SCALE_NUMB), (std::vector<int>{11, 12}));
}

TEST_F(LoadFailuresTest, AMissingTableIsReportedInTheServersWords) {
    Run("drop table PROMOTIONS");
    AddArticle(1);
    EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "hide", "resume"}));
    EXPECT_TRUE(error_.starts_with("error [REFRESH DATA]: Dynamic SQL Error\n")) << error_;
    EXPECT_NE(error_.find("Table unknown"), std::string::npos) << error_;
    EXPECT_NE(error_.find("PROMOTIONS"), std::string::npos) << error_;
}

TEST_F(LoadFailuresTest, AnErrorInThePromotionPassKeepsAllRows) {
    Use(Schema({{"PR_PRICE numeric(15,4)", "PR_PRICE varchar(10)"}}));
    AddArticle(1);
    AddArticle(2);
    AddPromotion(10, 1, {{"PR_PRICE", "'3.50'"}});
    AddPromotion(11, 2, {{"PR_PRICE", "'евтино'"}});
    EXPECT_EQ(FailingLoad(),
              (TEvents{"suspend", "show 1", "step", "step", "show 1", "hide", "resume"}));
    EXPECT_EQ(error_, "error [REFRESH DATA]: Колона \"PR_PRICE\": \"евтино\" не е число");
    ASSERT_EQ(articles_.RowCount(), 2U);
    EXPECT_EQ(Float(0, TField::PromoPrice), 3.5);
}

TEST_F(LoadFailuresTest, AConnectionThatIsCutInMidFetchIsReportedAndNothingHangs) {
    AddArticle(1);
    AddManyArticles();
    LoadOverAConnectionThatIsCut();
    EXPECT_TRUE(error_.starts_with("error [REFRESH DATA]: ")) << error_;
    EXPECT_NE(error_.find("onnection"), std::string::npos) << error_;
    EXPECT_EQ(articles_.RowCount(), 0U);
}

TEST_F(LoadFailuresTest, AConnectionThatIsCutCountsBeforeARowThatDoesNotConvert) {
    Use(Schema({{"PLU_SCALE_NUMB integer", "PLU_SCALE_NUMB varchar(10)"}}));
    AddArticle(1, {{"PLU_SCALE_NUMB", "'11'"}});
    AddManyArticles();
    Run("update PLUES set PLU_SCALE_NUMB = 'x' where PLU_NUMB = 2");
    LoadOverAConnectionThatIsCut();
    EXPECT_NE(error_.find("onnection"), std::string::npos) << error_;
    EXPECT_EQ(articles_.RowCount(), 0U);
}

TEST_F(LoadFailuresTest, AConnectionThatTheServerHasEndedIsReportedAtEachLoad) {
    AddArticle(1);
    Loader().LoadArticles();
    const std::string id = database_->Host().Ask("select current_connection from RDB$DATABASE");
    database_->Attach()->Run("delete from MON$ATTACHMENTS where MON$ATTACHMENT_ID = " + id);
    EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "hide", "resume"}));
    EXPECT_TRUE(error_.starts_with("error [REFRESH DATA]: connection shutdown")) << error_;
    EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "hide", "resume"}));
}

TEST_F(LoadFailuresTest, AHandleThatIsNotAConnectionIsReported) {
    void* nothing = nullptr;
    transaction_ = std::make_unique<TTransaction>(Library(), &nothing);
    query_ = std::make_unique<TQuery>(*transaction_);
    loader_ = std::make_unique<TArticleLoader>(
        TArticleLoader::TParts{*transaction_, *query_, articles_, sort_, clock_,
                               [this] { return regional_; }, view_, view_});
    EXPECT_EQ(FailingLoad(), (TEvents{"suspend", "hide", "resume"}));
    EXPECT_TRUE(error_.starts_with("error [REFRESH DATA]: invalid database handle")) << error_;
}

TEST_F(LoadFailuresTest, AfterAFailureTheNextLoadWorks) {
    AddArticle(1);
    Run("alter table PLUES alter PLU_NAME to PLU_NAMEX");
    FailingLoad();
    view_.onEvent = nullptr;
    Run("alter table PLUES alter PLU_NAMEX to PLU_NAME");
    EXPECT_EQ(LoadEvents(), (TEvents{"suspend", "show 0", "step", "show -1", "resume", "hide"}));
    EXPECT_EQ(articles_.RowCount(), 1U);
}

}  // namespace
}  // namespace tolvane::test
