#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/integration/articles/LoadFixture.h"

namespace tolvane::test {
namespace {

class DemoShopTest : public LoadTest {
protected:
    DemoShopTest() {
        const std::filesystem::path folder = TOLVANE_DEMO_FOLDER;
        database_ = std::make_unique<TTestDatabase>(ReadFile(folder / "schema.sql") +
                                                    ReadFile(folder / "shop.sql"));
        Connect();
    }
    std::size_t PlaceOf(int number) const {
        const std::vector<int> numbers = Integers(TField::PLU_NUMB);
        return static_cast<std::size_t>(std::find(numbers.begin(), numbers.end(), number) -
                                        numbers.begin());
    }
    bool IsPromoted(int number) const {
        return articles_.Boolean(articles_.RowAt(PlaceOf(number)), TField::HasActivePromotion);
    }
};

TEST_F(DemoShopTest, Lists300ArticlesAndTheirRepeats) {
    Loader().ReadBaseCurrency();
    Loader().CheckDatabase();
    EXPECT_EQ(LoadEvents().back(), "hide");
    const std::vector<int> numbers = Integers(TField::PLU_NUMB);
    EXPECT_EQ(std::set<int>(numbers.begin(), numbers.end()).size(), 300U);
    // Two articles have a second barcode; one has two barcodes and two promotions.
    EXPECT_EQ(numbers.size(), 305U);
    EXPECT_EQ(Shown(0, TField::PLU_SELL_PRICE_LV), "7,10 EUR");
}

TEST_F(DemoShopTest, PromotionsAreTheSameOnAnyDayAndHour) {
    for (int day = 6; day <= 12; ++day) {
        for (const int hour : {0, 12, 23}) {
            clock_.now = {{2024, 5, day}, {hour, 0, 0, 0}};
            Loader().LoadArticles();
            int promoted = 0;
            for (const TRowId row : articles_.Order())
                promoted += articles_.Boolean(row, TField::HasActivePromotion) ? 1 : 0;
            EXPECT_EQ(promoted, 14);
        }
    }
}

}  // namespace
}  // namespace tolvane::test
