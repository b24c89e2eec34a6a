#include <gtest/gtest.h>

#include "articles/ArticleReading.h"
#include "articles/ArticleSession.h"
#include "tests/integration/database/Shop.h"

namespace tolvane::test {
namespace {

// The list window, which must have nothing to say.
class TQuietWindow : public TWaitView, public TLoadView {
public:
    void Show(int) override {}
    void Step() override {}
    void Hide() override {}
    void SuspendDisplay() override {}
    void ResumeDisplay() override {}
    void ShowError(std::string_view text) override { ADD_FAILURE() << ToUtf8(text); }
};

TRegionalSettings Regional() {
    TRegionalSettings regional;
    regional.decimalSeparator = ',';
    regional.shortDatePattern = "dd.MM.yyyy";
    regional.longTimePattern = "HH:mm:ss";
    return regional;
}

TEST(ReadShop, TheRowsAreThoseOfTheWindow) {
    TAttachment attachment(ShopLogin());
    const TArticleReading reading =
        ReadArticles(attachment.Library(), attachment.Handle(), SystemLocalClock(), Regional());
    ASSERT_EQ(reading.articles.RowCount(), 305U);
    EXPECT_EQ(reading.baseCurrency, "EUR");

    // The host's own library is the one that this process has loaded now.
    TQuietWindow window;
    TArticleSession session(window, SystemLocalClock(), Regional);
    session.Connect(nullptr, attachment.Handle(), window);
    session.ReadBaseCurrency();
    session.LoadArticles();
    ASSERT_EQ(session.Articles().RowCount(), 305U);
    for (std::size_t place = 0; place < 305; ++place) {
        const TRowId row = session.Articles().RowAt(place);
        for (const TFieldInfo& info : detail::kFieldTable)
            EXPECT_EQ(reading.articles.DisplayText(reading.articles.RowAt(place), info.field,
                                                   Regional(), reading.baseCurrency),
                      session.DisplayText(row, info.field))
                << place << ' ' << info.name;
    }
    session.End();
}

}  // namespace
}  // namespace tolvane::test
