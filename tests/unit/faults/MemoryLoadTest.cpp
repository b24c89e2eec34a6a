#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleSession.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/client/FakeShop.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

// Takes memory for whatever it shows, as windows do; only an error is shown in any case.
class TMemoryLoadView : public TWaitView, public TLoadView {
public:
    void Show(int) override { TakeMemory(); }
    void Step() override {}
    void Hide() override { TakeMemory(); }
    void SuspendDisplay() override {
        shown = false;
        TakeMemory();
    }
    void ResumeDisplay() override {
        shown = true;
        TakeMemory();
    }
    void ShowError(std::string_view text) override {
        const TEnoughMemory enough;
        errors.push_back(ToUtf8(text));
        if (onError) onError();
    }

    std::function<void()> onError;
    bool shown = false;
    std::vector<std::string> errors;

private:
    static void TakeMemory() { std::make_unique<std::string>(64, 'x'); }
};

class MemoryLoad : public ::testing::TestWithParam<TShortMemory::THowLong> {
protected:
    MemoryLoad() {
        client_.results = FakeShop();
        session_.Connect(FakeClientName(), &cell_, view_);
        view_.onError = [this] { ExpectAllIsGivenBack(); };
    }

    void ExpectAllIsGivenBack() {
        EXPECT_EQ(client_.transactions, 0);
        EXPECT_EQ(client_.statements, 0);
        EXPECT_EQ(client_.blobs, 0);
        EXPECT_EQ(client_.misuses, 0);
    }
    // The allocations of `work` while none fails.
    template <class Work>
    static int AllocationsOf(Work work) {
        const TShortMemory counted(0, TShortMemory::Once);
        work();
        return TShortMemory::Count();
    }
    // Whoever is short of memory for good gets the text that needs none.
    static std::string Told(std::string_view lead) {
        const std::string text = "Няма достатъчно памет";
        return GetParam() == TShortMemory::ForGood ? text : std::string(lead) + text;
    }
    // The rows of the table are the shop's first ones, each of them whole. One whose promotion has
    // not been marked yet is whole as well.
    void ExpectWholeRows() {
        std::vector<std::string> expected = FakeShopLines();
        std::vector<std::string> unmarked = expected;
        unmarked[1].replace(unmarked[1].rfind('|'), std::string::npos, "|0");
        const std::vector<std::string> lines = ArticleLines(session_.Articles());
        ASSERT_LE(lines.size(), expected.size());
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i] == expected[i] || lines[i] == unmarked[i]) << lines[i];
    }

    TFakeClient& client_ = NewFakeClient();
    unsigned cell_ = 1;
    TFakeShopClock clock_;
    TMemoryLoadView view_;
    TArticleSession session_{view_, clock_, [] {
                                 // As much memory as the settings of a system take.
                                 TRegionalSettings regional;
                                 regional.longMonths[0] = "a month with quite a long name";
                                 return regional;
                             }};
};

INSTANTIATE_TEST_SUITE_P(HowLong, MemoryLoad,
                         ::testing::Values(TShortMemory::Once, TShortMemory::ForGood),
                         [](const auto& suite) {
                             return suite.param == TShortMemory::Once ? "Once" : "ForGood";
                         });

TEST_P(MemoryLoad, ALoadTellsItsShortageAndLeavesNothingHalfDone) {
    const int all = AllocationsOf([this] { session_.LoadArticles(); });
    ASSERT_EQ(view_.errors, std::vector<std::string>{});
    ASSERT_EQ(ArticleLines(session_.Articles()), FakeShopLines());
    ASSERT_GT(all, 50);
    for (int n = 1; n <= all; ++n) {
        SCOPED_TRACE(n);
        view_.errors.clear();
        {
            const TShortMemory memory(n, GetParam());
            session_.LoadArticles();
        }
        EXPECT_EQ(view_.errors, std::vector<std::string>{Told("[REFRESH DATA]: ")});
        EXPECT_TRUE(view_.shown);
        EXPECT_FALSE(session_.IsBusy());
        ExpectAllIsGivenBack();
        ExpectWholeRows();

        view_.errors.clear();
        session_.Refresh();
        EXPECT_EQ(view_.errors, std::vector<std::string>{});
        EXPECT_EQ(ArticleLines(session_.Articles()), FakeShopLines());
        if (HasFailure()) break;
    }
    RecordProperty("allocations", all);
}

TEST_P(MemoryLoad, ACheckOfTheDatabaseTellsItsShortage) {
    const int all = AllocationsOf([this] { session_.CheckDatabase(); });
    ASSERT_EQ(view_.errors, std::vector<std::string>{});
    ASSERT_GT(all, 5);
    for (int n = 1; n <= all; ++n) {
        SCOPED_TRACE(n);
        view_.errors.clear();
        {
            const TShortMemory memory(n, GetParam());
            session_.CheckDatabase();
        }
        EXPECT_EQ(view_.errors, std::vector<std::string>{Told("[FCheckDB failed]: ")});
        ExpectAllIsGivenBack();
        if (HasFailure()) break;
    }
    RecordProperty("allocations", all);
}

TEST_P(MemoryLoad, TheEndOfASessionTellsItsShortage) {
    const TFakeResult noArticles{FakeShop()[0].words, FakeShop()[0].columns, {}};
    client_.results = {&noArticles, 1};
    int n = 1;
    for (int allocations = n; allocations >= n; ++n) {
        SCOPED_TRACE(n);
        session_.LoadArticles();
        ASSERT_EQ(client_.transactions, 1);
        view_.onError = nullptr;
        view_.errors.clear();
        // The statement is freed, then the commit fails.
        client_.failingCall = client_.calls + 2;
        {
            const TShortMemory memory(n, GetParam());
            session_.End();
            allocations = TShortMemory::Count();
        }
        EXPECT_EQ(view_.errors,
                  std::vector<std::string>{allocations >= n ? Told("")
                                                            : "isc_commit_transaction failed\n"
                                                              "as the test wants it"});
        ASSERT_EQ(client_.firstFailed, "isc_commit_transaction");
    }
    EXPECT_GT(n, 5);
}

}  // namespace
}  // namespace tolvane::test
