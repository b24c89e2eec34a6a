#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleReading.h"
#include "articles/ArticleSession.h"
#include "database/DatabaseError.h"
#include "tests/support/client/FakeShop.h"
#include "tests/unit/faults/GivenBack.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

class TClientView : public TWaitView, public TLoadView {
public:
    void Show(int) override {}
    void Step() override {}
    void Hide() override {}
    void SuspendDisplay() override { shown = false; }
    void ResumeDisplay() override { shown = true; }
    void ShowError(std::string_view text) override { errors.push_back(ToUtf8(text)); }

    bool shown = true;
    std::vector<std::string> errors;
};

using TTexts = std::vector<std::string>;

class FailingClient : public ::testing::Test {
protected:
    FailingClient() {
        client_.results = FakeShop();
        session_.Connect(FakeClientName(), &cell_, view_);
    }

    // Does `work` with each of its calls failing in turn, once and for good. Afterwards
    // everything is given back, and a load works.
    template <class Work>
    void FailEachCallOf(Work work, std::string_view lead) {
        client_.calls = 0;
        work();
        ASSERT_EQ(view_.errors, TTexts{});
        const int all = client_.calls;
        ASSERT_GT(all, 0);
        for (int n = 1; n <= all; ++n) {
            FailCall(work, lead, n, false);
            FailCall(work, lead, n, true);
        }
        RecordProperty("calls", all);
    }
    template <class Work>
    void FailCall(Work work, std::string_view lead, int n, bool forGood) {
        SCOPED_TRACE(std::to_string(n) + (forGood ? " for good" : " once"));
        client_.calls = 0;
        client_.firstFailed = {};
        client_.failingCall = n;
        client_.failsForGood = forGood;
        view_.errors.clear();
        work();
        client_.failingCall = 0;
        ExpectTheWordsOf(lead, forGood);
        ExpectAllIsGivenBack(client_);
        EXPECT_TRUE(view_.shown);

        view_.errors.clear();
        session_.Refresh();
        EXPECT_EQ(view_.errors, TTexts{});
        EXPECT_EQ(ArticleLines(session_.Articles()), FakeShopLines());
    }
    void ExpectTheWordsOf(std::string_view lead, bool forGood) {
        const std::string failed(client_.firstFailed);
        EXPECT_NE(failed, "");
        // Nothing is lost when something cannot be given back; what fails after it tells that.
        if (failed == "isc_dsql_free_statement" || failed == "isc_close_blob") {
            EXPECT_TRUE(forGood || view_.errors.empty());
            return;
        }
        EXPECT_EQ(view_.errors,
                  TTexts{std::string(lead) + failed + " failed\nas the test wants it"});
    }

    TFakeClient& client_ = NewFakeClient();
    unsigned cell_ = 1;
    TFakeShopClock clock_;
    TClientView view_;
    TArticleSession session_{view_, clock_, [] { return TRegionalSettings(); }};
};

TEST_F(FailingClient, ALoadTellsTheWordsOfTheFirstFailure) {
    FailEachCallOf([this] { session_.LoadArticles(); }, "[REFRESH DATA]: ");
}

TEST_F(FailingClient, ACheckOfTheDatabaseTellsTheWordsOfTheFirstFailure) {
    FailEachCallOf([this] { session_.CheckDatabase(); }, "[FCheckDB failed]: ");
}

TEST_F(FailingClient, AReadingTellsTheWordsOfTheFirstFailure) {
    static constexpr TFakeColumn kName[] = {{"CURR_NAME", 448, 30}};  // SQL_VARYING
    static constexpr TFakeValue kValue[] = {Words("a currency")};
    std::vector<TFakeResult> results(FakeShop().begin(), FakeShop().end());
    results.push_back({"select curr_name", kName, kValue});
    client_.results = results;
    const TClientLibrary library(FakeClientName());
    FailEachCallOf(
        [&] {
            try {
                ReadArticles(library, &cell_, clock_, {});
            } catch (const TDatabaseError& error) {
                view_.errors.push_back(ToUtf8(error.what()));
            }
        },
        "");
}

// Freeing what a cursor holds may fail as well, as after a lost connection.
TEST_F(FailingClient, AStatementThatCannotBeFreedHoldsNothingUp) {
    session_.LoadArticles();
    EXPECT_EQ(view_.errors, TTexts{});
    for (int n = 1; n <= client_.calls; ++n) {
        client_.calls = 0;
        client_.failingCall = n;
        client_.firstFailed = {};
        session_.LoadArticles();
        if (client_.firstFailed != "isc_dsql_free_statement") continue;
        EXPECT_EQ(ArticleLines(session_.Articles()), FakeShopLines());
    }
}

}  // namespace
}  // namespace tolvane::test
