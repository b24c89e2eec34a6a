#include <gtest/gtest.h>

#include <windows.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/support/module/Commands.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

using simulator::TArticle;
using simulator::TBytes;
using simulator::TVirtualScale;
using TArticles = std::map<int, TArticle>;

constexpr int kCapacity = 130;
constexpr int kFirstRow = 6;  // of the articles that a scale takes

simulator::TScaleOptions Evl() {
    simulator::TScaleOptions options;
    options.scale = simulator::DefaultProperties(simulator::TModel::Evl);
    options.scale.capacity = kCapacity;
    options.scale.labelMode = 2;
    return options;
}

// What a delete leaves: price 0, a name of a zero byte and blanks, everything else as it was.
TArticle Deleted(TArticle article) {
    article.price = 0;
    ++article.priceWrites;
    TBytes& name = article.texts[0].bytes;
    name.assign(31, ' ');
    name[0] = 0;
    ++article.texts[0].writes;
    return article;
}

// The list window over articles of which a virtual scale holds three.
class ScaleRunsTest : public testing::Test {
protected:
    ScaleRunsTest() {
        scale_.Start();
        TConfiguration::WriteScale(scale_.Port());
        session_.Start();
        Run(kWriteAll, "SaveBtn");
    }

    // Opens the run window by its command, presses the button, and closes it when the run is over.
    void Run(int command, const std::string& button) {
        constexpr int kPatience = 60;
        const TBoxAnswerer yes(IDYES);
        const TDialogScript script(
            L"TSetPluForm",
            {[&](HWND window) { PostMessageW(ControlOf(window, button), BM_CLICK, 0, 0); },
             [&](HWND window) {
                 RunLoopUntil([&] { return TextOf(window, "StatusMemo").size() > 200; }, kPatience);
                 RunLoopUntil([&] { return IsEnabledIn(window, "OkBtn"); }, kPatience);
                 log_ = TextOf(window, "StatusMemo");
                 Press(window, "OkBtn");
             }});
        SendMessageW(session_.List(), WM_COMMAND, static_cast<WPARAM>(command), 0);
        RunLoopDry();
    }
    TArticles Held() const { return scale_.State().articles; }
    bool LogHas(const std::string& line) const {
        return log_.find(line + "\r\n") != std::string::npos;
    }

    TVirtualScale scale_{Evl()};
    TSession session_{"scales.fdb"};
    std::string log_;
};

}  // namespace

TEST_F(ScaleRunsTest, WritingAllFillsTheScale) {
    EXPECT_TRUE(LogHas("Обработени 9 артикула."));
    EXPECT_TRUE(LogHas("Валидни са 3 артикула."));
    EXPECT_TRUE(LogHas("Успешно записани артикули във везна: A"));
    const TArticles held = Held();
    ASSERT_EQ(held.size(), 3U);
    EXPECT_EQ(held.at(121).price, 340);
    EXPECT_EQ(held.at(122).price, 280);
    EXPECT_EQ(held.at(123).price, 415);
    EXPECT_EQ(held.at(121).BestBefore(), 5);
    EXPECT_EQ(held.at(122).Text(0, simulator::TCodeTable::Pc866), "Краставици");
    EXPECT_FALSE(scale_.State().programming);
}

TEST_F(ScaleRunsTest, DeletingMarkedArticlesClearsThemAndNothingElse) {
    TArticles expected = Held();
    ASSERT_EQ(expected.size(), 3U);
    session_.Grid().ClickRow(kFirstRow, 3);
    session_.Grid().ClickRow(kFirstRow + 2, 3, true);
    Run(kDeleteMarked, "SaveBtn");
    for (const int number : {121, 123})
        expected[number] = Deleted(expected[number]);
    EXPECT_EQ(Held(), expected);
    EXPECT_FALSE(scale_.State().programming);
    EXPECT_TRUE(LogHas("Обработени 2 артикула."));
    EXPECT_TRUE(LogHas("Успешно записани артикули във везна: A"));
}

TEST_F(ScaleRunsTest, DeletingAllArticlesClearsEveryNumberOfTheScaleAndNothingElse) {
    TArticles expected = Held();
    ASSERT_EQ(expected.size(), 3U);
    Run(kDeleteAll, "DeleteBtn");
    for (int number = 1; number <= kCapacity; ++number) {
        TArticle& article = expected[number];
        article.number = number;
        article = Deleted(article);
        article.weight = 0;  // this delete sends a weight field
    }
    EXPECT_EQ(Held(), expected);
    EXPECT_FALSE(scale_.State().programming);
    EXPECT_TRUE(LogHas("Успешно изтрити артикули от везна: A"));
}

}  // namespace tolvane::test
