#include "upload/ScaleRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"
#include "upload/RunMarks.h"

namespace tolvane {
namespace {

using test::Goods;
using test::TArticle;
using test::TEvents;

constexpr const char* kRefused =
    "log:InitComm >> Fail init communication interface: [TCP] Fail open (10.0.0.1:1001) - refused";
constexpr const char* kLine = "log:-----------------------------------------";

class ScaleRunTest : public ::testing::Test {
protected:
    ScaleRunTest() { regional_.decimalSeparator = ','; }

    // Scale n: "Везна n" at 10.0.0.n, with a fake scale of its own when it is to be opened.
    TScaleObj Item(int number, bool checked = true) {
        TScaleObj item{NetworkScale(number, std::string("Везна "_cp1251) + std::to_string(number),
                                    "10.0.0." + std::to_string(number), 1001)};
        item.Rec.Checked = checked;
        item.Rec.Encoding = 0;
        if (checked) {
            factory_.scales.push_back(std::make_shared<test::TFakeScale>());
            factory_.scales.back()->mode = 1;
            factory_.scales.back()->maxPlu = 3000;
        }
        return item;
    }
    test::TFakeScale& Scale(std::size_t number) { return *factory_.scales.at(number - 1); }

    void Run(const std::vector<TScaleObj>& items, const std::vector<TArticle>& articles,
             bool write = true) {
        const auto table = test::TableOf(articles);
        TScaleRun(factory_, clock_, view_, stop_, regional_)
            .RunListed(items, {table, table->Order()}, {}, write);
    }
    void RunDelete(const std::vector<TScaleObj>& items) {
        TScaleRun(factory_, clock_, view_, stop_, regional_)
            .RunDeleteEverything(items, TRunMarks(items));
    }
    // Does what a user does at ScaleList while the n-th scale (from 1) is being connected.
    void WhileConnecting(std::size_t number, const std::function<void()>& action) {
        factory_.onOpen = [this, number, action] {
            if (Opened().size() == number) action();
        };
    }
    TEvents Opened() const { return test::Filtered(events_, {"open"}); }
    // What the user sees, and how drivers come and go; no requests, no pauses.
    TEvents Seen() const {
        return test::Filtered(events_, {"clear", "log:", "connection:", "progress:", "running",
                                        "at rest", "choices", "error:", "open", "freed"});
    }
    // What the view has shown of the run's articles: "1/3" for the first of three.
    TEvents Counts() const {
        TEvents counts;
        for (const TRunCount& count : view_.counts)
            counts.push_back(std::to_string(count.done) + "/" + std::to_string(count.all));
        return counts;
    }
    TEvents Logged() const { return test::Filtered(events_, {"log:"}); }
    TEvents PriceWrites() const { return test::Filtered(events_, {"49", "4A", "4B"}); }

    TEvents events_;
    test::TFakeClock clock_{events_};
    test::TRecordingView view_{events_};
    TRunStop stop_;
    TRegionalSettings regional_;
    test::TFakeFactory factory_{events_, clock_};
};

const TEvents kNoScales = {"clear", "log:Не е дефинирана нито една везна."};

TEST_F(ScaleRunTest, WithNoUsableScaleEitherButtonOnlyLogsThat) {
    Run({}, {Goods(1, "A")});
    EXPECT_EQ(events_, kNoScales);
    events_.clear();
    RunDelete({});
    EXPECT_EQ(events_, kNoScales);
}

TEST_F(ScaleRunTest, WithNoneCheckedARunLogsOnlyThatAndTheClosingSeparator) {
    Run({Item(1, false), Item(2, false)}, {Goods(1, "A")});
    EXPECT_EQ(events_,
              (TEvents{"clear", "choices off", "running", "log:Не е избрана нито една везна.",
                       "connection:", "progress:", kLine, "choices on", "at rest"}));
}

TEST_F(ScaleRunTest, WithNoneCheckedADeleteRunLogsOnlyThatAndTheClosingSeparator) {
    RunDelete({Item(1, false)});
    EXPECT_EQ(events_, (TEvents{"clear", "log:Не е избрана нито една везна.",
                                "connection:", "progress:", kLine, "at rest"}));
}

TEST_F(ScaleRunTest, AWriteRunShowsEveryStepInOrder) {
    TArticle bad = Goods(2, "Праз"_cp1251);
    bad.barcode = "1";
    Run({Item(1)}, {Goods(12, "Домати"_cp1251), bad});
    EXPECT_EQ(Seen(), (TEvents{"clear",
                               "choices off",
                               "running",
                               "log:  Артикул \"Праз\" няма коректен баркод",
                               "log:  ->> и ще бъде игнориран",
                               "log:Обработени 2 артикула.",
                               "log:Валидни са 1 артикула.",
                               "log:Ще бъдат записани само валидните артикули",
                               kLine,
                               "log:Старт на запис във везна: Везна 1",
                               "connection:Хост: 10.0.0.1 Порт: 1001",
                               "open TCP 10.0.0.1:1001",
                               "log:Осъществена връзка с устройството за комуникация",
                               "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 1",
                               "progress:Запис артикул: 12 Домати",
                               "log:   Брой записани артикули: 1",
                               "freed",
                               "log:Успешно записани артикули във везна: Везна 1",
                               "log:",
                               "connection:",
                               "progress:",
                               kLine,
                               "choices on",
                               "at rest"}));
    // the price 12,34 that the table holds
    EXPECT_EQ(PriceWrites(), (TEvents{"4A 00 0C 00 34 12 00 00 00 00"}));
}

TEST_F(ScaleRunTest, AScaleThatCannotBeOpenedIsLoggedAndTheNextOneIsWritten) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).openError = "[TCP] Fail open (10.0.0.1:1001) - refused";
    Run(items, {Goods(1, "A")});
    EXPECT_EQ(Seen(), (TEvents{"clear",
                               "choices off",
                               "running",
                               "log:Обработени 1 артикула.",
                               "log:Валидни са 1 артикула.",
                               "log:Ще бъдат записани само валидните артикули",
                               kLine,
                               "log:Старт на запис във везна: Везна 1",
                               "connection:Хост: 10.0.0.1 Порт: 1001",
                               "open TCP 10.0.0.1:1001",
                               "freed",
                               kRefused,
                               "log:Грешка при запис артикули във везна: Везна 1",
                               "log:",
                               "log:Обработени 1 артикула.",
                               "log:Валидни са 1 артикула.",
                               "log:Ще бъдат записани само валидните артикули",
                               kLine,
                               "log:Старт на запис във везна: Везна 2",
                               "connection:Хост: 10.0.0.2 Порт: 1001",
                               "open TCP 10.0.0.2:1001",
                               "log:Осъществена връзка с устройството за комуникация",
                               "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 1",
                               "progress:Запис артикул: 1 A",
                               "log:   Брой записани артикули: 1",
                               "freed",
                               "log:Успешно записани артикули във везна: Везна 2",
                               "log:",
                               "connection:",
                               "progress:",
                               kLine,
                               "choices on",
                               "at rest"}));
}

TEST_F(ScaleRunTest, ArticlesAreCountedOverAllScalesOfTheRun) {
    TArticle ofTheSecond = Goods(2, "A");
    ofTheSecond.forScales = "2";
    TArticle bad = Goods(3, "A");
    bad.barcode = "";
    Run({Item(1), Item(2), Item(3, false)}, {Goods(1, "A"), ofTheSecond, bad});
    EXPECT_EQ(Counts(), (TEvents{"0/3", "0/3", "1/3", "1/3", "1/3", "2/3", "3/3", "0/0"}));
}

TEST_F(ScaleRunTest, TheArticlesOfAScaleThatFailsAreNoPartOfTheCountAnyMore) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).openError = "refused";
    Run(items, {Goods(1, "A"), Goods(2, "A")}, false);
    EXPECT_EQ(Counts(), (TEvents{"0/4", "0/2", "0/2", "1/2", "2/2", "0/0"}));
}

TEST_F(ScaleRunTest, ADeleteRunTakesScalesThatItHasNotReachedForAsLargeAsTheLastOne) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).maxPlu = 2;
    Scale(2).maxPlu = 1;
    RunDelete(items);
    EXPECT_EQ(Counts(), (TEvents{"0/0", "0/4", "1/4", "2/4", "2/4", "2/3", "3/3", "0/0"}));
}

TEST_F(ScaleRunTest, TheTimeLeftComesFromWhatTheArticlesHaveTaken) {
    const std::vector<TScaleObj> items = {Item(1)};
    Scale(1).errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x49) clock_.Sleep(TMilliseconds(1000));
        return 0;
    };
    Run(items, test::ManyGoods(8), false);
    // After the first two counts, one for each article. With the pause of 30 ms after its name an
    // article takes 1.03 s, so the last three 3.09 s.
    ASSERT_EQ(view_.counts.size(), 2U + 8U + 1U);
    EXPECT_EQ(view_.counts[5], (TRunCount{.done = 4, .all = 8}));
    EXPECT_EQ(view_.counts[6], (TRunCount{.done = 5, .all = 8, .left = std::chrono::seconds(4)}));
    EXPECT_EQ(view_.counts[9], (TRunCount{.done = 8, .all = 8}));
}

TEST_F(ScaleRunTest, AnUncheckedScaleIsLeftOut) {
    Run({Item(1, false), Item(2), Item(3, false)}, {Goods(1, "A")});
    EXPECT_EQ(test::Filtered(events_, {"open"}), (TEvents{"open TCP 10.0.0.2:1001"}));
}

TEST_F(ScaleRunTest, AScaleOfUnknownTransportIsNotOpenedAndFails) {
    TScaleObj item = Item(1);
    item.Rec.CommType = 7;
    Run({item}, {Goods(1, "A")});
    EXPECT_EQ(
        Seen(),
        (TEvents{"clear", "choices off", "running", "log:Обработени 1 артикула.",
                 "log:Валидни са 1 артикула.", "log:Ще бъдат записани само валидните артикули",
                 kLine, "log:Старт на запис във везна: Везна 1", "connection:Хост: 10.0.0.1",
                 "log:Невалиден тип на комуникация с везна.",
                 "log:Грешка при запис артикули във везна: Везна 1",
                 "log:", "connection:", "progress:", kLine, "choices on", "at rest"}));
}

TEST_F(ScaleRunTest, AfterStopInAWriteRunTheOtherScalesAreConnectedAndEachFailsWithTheStopText) {
    const std::vector<TScaleObj> items = {Item(1), Item(2), Item(3)};
    Scale(1).errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4A) stop_.Stop();
        return 0;
    };
    Run(items, {Goods(1, "Едно"_cp1251), Goods(2, "Две"_cp1251)});
    TEvents expected;
    for (const std::string number : {"1", "2", "3"}) {
        const TEvents part = {
            "log:Обработени 2 артикула.",
            "log:Валидни са 2 артикула.",
            "log:Ще бъдат записани само валидните артикули",
            kLine,
            "log:Старт на запис във везна: Везна " + number,
            "log:Осъществена връзка с устройството за комуникация",
            "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 1",
            number == "1" ? "log:Fail! Plu: 1 \"Едно\" Операцията прекратена от петребителя."
                          : "log:Fail! Plu: 0 \"\" Операцията прекратена от петребителя.",
            "log:Грешка при запис артикули във везна: Везна " + number,
            "log:"};
        expected.insert(expected.end(), part.begin(), part.end());
    }
    expected.emplace_back(kLine);
    EXPECT_EQ(Logged(), expected);
    EXPECT_EQ(
        test::Filtered(events_, {"open"}),
        (TEvents{"open TCP 10.0.0.1:1001", "open TCP 10.0.0.2:1001", "open TCP 10.0.0.3:1001"}));
    EXPECT_EQ(PriceWrites(), (TEvents{"4A 00 01 00 34 12 00 00 00 00"}));
    EXPECT_EQ(events_.back(), "at rest");
}

TEST_F(ScaleRunTest, AStopOfAnEarlierRunDoesNotReachTheNext) {
    stop_.Stop();
    Run({Item(1)}, {Goods(1, "A")});
    EXPECT_EQ(PriceWrites().size(), 1U);
}

TEST_F(ScaleRunTest, AStopInADeleteEverythingRunEndsOneScaleOnly) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).maxPlu = 3;
    Scale(2).maxPlu = 2;
    Scale(1).errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4A && request.plu == 2) stop_.Stop();
        return 0;
    };
    RunDelete(items);
    EXPECT_EQ(Seen(), (TEvents{"clear",
                               kLine,
                               "log:Старт на запис във везна: Везна 1",
                               "connection:Хост: 10.0.0.1 Порт: 1001",
                               "open TCP 10.0.0.1:1001",
                               "log:Осъществена връзка с устройството за комуникация",
                               "running",
                               "log:   - Ver: 1.23; Max.PLU: 3; Mode:1",
                               "progress:Изтриване всички артикули.",
                               "progress:Изтриване артикул #1",
                               "progress:Изтриване артикул #2",
                               "freed",
                               "log:Операцията прекратена от потребителя.",
                               "log:Грешка при изтриване артикули от везна: Везна 1",
                               kLine,
                               "log:Старт на запис във везна: Везна 2",
                               "connection:Хост: 10.0.0.2 Порт: 1001",
                               "open TCP 10.0.0.2:1001",
                               "log:Осъществена връзка с устройството за комуникация",
                               "running",
                               "log:   - Ver: 1.23; Max.PLU: 2; Mode:1",
                               "progress:Изтриване всички артикули.",
                               "progress:Изтриване артикул #1",
                               "progress:Изтриване артикул #2",
                               "freed",
                               "log:Успешно изтрити артикули от везна: Везна 2",
                               "connection:",
                               "progress:",
                               kLine,
                               "at rest"}));
    EXPECT_EQ(PriceWrites(),
              (TEvents{"4A 00 01 00 00 00 00 00 00 00", "4A 00 02 00 00 00 00 00 00 00",
                       "4A 00 01 00 00 00 00 00 00 00", "4A 00 02 00 00 00 00 00 00 00"}));
}

TEST_F(ScaleRunTest, AStopWhileTheNextScaleIsConnectedEndsThatScale) {
    const std::vector<TScaleObj> items = {Item(1)};
    Scale(1).maxPlu = 3;
    factory_.onOpen = [this] { stop_.Stop(); };
    RunDelete(items);
    EXPECT_EQ(PriceWrites(), TEvents{});
    EXPECT_EQ(test::Filtered(events_, {"log:Операцията"}),
              (TEvents{"log:Операцията прекратена от потребителя."}));
}

TEST_F(ScaleRunTest, AScaleThatCannotBeOpenedInADeleteRunLeavesTheControlsAlone) {
    const std::vector<TScaleObj> items = {Item(1)};
    Scale(1).openError = "refused";
    RunDelete(items);
    EXPECT_EQ(Seen(),
              (TEvents{"clear", kLine, "log:Старт на запис във везна: Везна 1",
                       "connection:Хост: 10.0.0.1 Порт: 1001", "open TCP 10.0.0.1:1001", "freed",
                       "log:InitComm >> Fail init communication interface: refused",
                       "log:Грешка при изтриване артикули от везна: Везна 1",
                       "connection:", "progress:", kLine, "at rest"}));
}

TEST_F(ScaleRunTest, AScaleOfUnknownTransportFailsInADeleteRunToo) {
    TScaleObj item = Item(1);
    item.Rec.CommType = 7;
    RunDelete({item});
    EXPECT_EQ(Seen(),
              (TEvents{"clear", kLine, "log:Старт на запис във везна: Везна 1",
                       "connection:Хост: 10.0.0.1", "log:Невалиден тип на комуникация с везна.",
                       "log:Грешка при изтриване артикули от везна: Везна 1",
                       "connection:", "progress:", kLine, "at rest"}));
}

TEST_F(ScaleRunTest, DeletingTheMarkedArticlesLogsTheWriteTexts) {
    Run({Item(1)}, {Goods(12, "Домати"_cp1251)}, false);
    EXPECT_EQ(Logged(),
              (TEvents{"log:Обработени 1 артикула.", "log:Валидни са 1 артикула.",
                       "log:Ще бъдат записани само валидните артикули", kLine,
                       "log:Старт на запис във везна: Везна 1",
                       "log:Осъществена връзка с устройството за комуникация",
                       "log:   - Ver: 1.23; Max.PLU: 3000; Mode:1",
                       "log:Успешно записани артикули във везна: Везна 1", "log:", kLine}));
    EXPECT_EQ(PriceWrites(), (TEvents{"49 00 0C 00 00 00 00"}));
    EXPECT_EQ(test::Filtered(events_, {"progress:И"}),
              (TEvents{"progress:Изтриване артикул: 12 Домати"}));
}

TEST_F(ScaleRunTest, AFailedDeleteOfMarkedArticlesLogsTheWriteFailure) {
    const std::vector<TScaleObj> items = {Item(1)};
    Scale(1).errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x49 ? 7 : 0;
    };
    Run(items, {Goods(12, "Домати"_cp1251)}, false);
    EXPECT_EQ(test::Filtered(events_, {"log:ProcessDelete", "log:Грешка"}),
              (TEvents{"log:ProcessDelete >> [SetPrice] ErrCode: 7, Fail set PLU price: "
                       "Scale return Error code: 7",
                       "log:Грешка при запис артикули във везна: Везна 1"}));
}

TEST_F(ScaleRunTest, DeletingMarkedArticlesOfWhichNoneIsForTheScaleDeletesNothing) {
    TArticle article = Goods(12, "A");
    article.forScales = "9";
    Run({Item(1)}, {article}, false);
    EXPECT_EQ(PriceWrites(), TEvents{});
    EXPECT_EQ(test::Filtered(events_, {"log:Валидни", "log:Успешно"}),
              (TEvents{"log:Валидни са 0 артикула.",
                       "log:Успешно записани артикули във везна: Везна 1"}));
}

TEST_F(ScaleRunTest, AnErrorWhileLinesAreBuiltEndsTheRunAndLeavesTheControls) {
    TArticle article = Goods(12, "A");
    article.bestBefore = "x";
    Run({Item(1), Item(2)}, {article});
    EXPECT_EQ(events_,
              (TEvents{"clear", "choices off", "running",
                       "error:Артикул \"A\": стойността \"x\" на поле LABEL_BESTBEFORE не е цяло "
                       "число."}));
}

TEST_F(ScaleRunTest, AbandoningARunEndsItWithTheScaleInWork) {
    const std::vector<TScaleObj> items = {Item(1), Item(2), Item(3)};
    Scale(1).errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4A) stop_.Abandon();
        return 0;
    };
    Run(items, {Goods(1, "A"), Goods(2, "B")});
    EXPECT_EQ(PriceWrites().size(), 1U);
    EXPECT_EQ(test::Filtered(events_, {"open", "freed"}),
              (TEvents{"open TCP 10.0.0.1:1001", "freed"}));
}

TEST_F(ScaleRunTest, AbandoningADeleteEverythingRunReachesNoFurtherScale) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).maxPlu = 3;
    Scale(1).errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4A) stop_.Abandon();
        return 0;
    };
    RunDelete(items);
    EXPECT_EQ(PriceWrites().size(), 1U);
    EXPECT_EQ(test::Filtered(events_, {"open"}), (TEvents{"open TCP 10.0.0.1:1001"}));
}

TEST_F(ScaleRunTest, ARunAbandonedBeforeItsFirstScaleSaysNothingOfChecking) {
    const std::vector<TScaleObj> items = {Item(1)};
    stop_.Abandon();
    Run(items, {Goods(1, "A")});
    EXPECT_EQ(events_, (TEvents{"clear", "choices off", "running",
                                "connection:", "progress:", kLine, "choices on", "at rest"}));
    events_.clear();
    RunDelete(items);
    EXPECT_EQ(events_, (TEvents{"clear", "connection:", "progress:", kLine, "at rest"}));
}

TEST_F(ScaleRunTest, AScaleUntickedBeforeItsTurnIsNotConnectedByADeleteEverythingRun) {
    const std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).openError = "refused";
    TRunMarks marks(items);
    WhileConnecting(1, [&] { marks.Set(1, false); });
    TScaleRun(factory_, clock_, view_, stop_, regional_).RunDeleteEverything(items, marks);
    EXPECT_EQ(Opened(), (TEvents{"open TCP 10.0.0.1:1001"}));
    EXPECT_EQ(PriceWrites(), TEvents{});
    EXPECT_EQ(events_.back(), "at rest");
}

TEST_F(ScaleRunTest, AScaleTickedBeforeItsTurnIsErasedByADeleteEverythingRun) {
    std::vector<TScaleObj> items = {Item(1), Item(2)};
    Scale(1).openError = "refused";
    Scale(2).maxPlu = 1;
    items[1].Rec.Checked = false;
    TRunMarks marks(items);
    WhileConnecting(1, [&] { marks.Set(1, true); });
    TScaleRun(factory_, clock_, view_, stop_, regional_).RunDeleteEverything(items, marks);
    EXPECT_EQ(Opened(), (TEvents{"open TCP 10.0.0.1:1001", "open TCP 10.0.0.2:1001"}));
    EXPECT_EQ(PriceWrites(), (TEvents{"4A 00 01 00 00 00 00 00 00 00"}));
}

TEST_F(ScaleRunTest, WithEveryScaleUntickedBeforeItsTurnADeleteRunSaysThatNoneIsChosen) {
    const std::vector<TScaleObj> items = {Item(1)};
    TRunMarks marks(items);
    view_.onClear = [&] { marks.Set(0, false); };
    TScaleRun(factory_, clock_, view_, stop_, regional_).RunDeleteEverything(items, marks);
    EXPECT_EQ(events_, (TEvents{"clear", "log:Не е избрана нито една везна.",
                                "connection:", "progress:", kLine, "at rest"}));
}

TEST_F(ScaleRunTest, AScaleWhoseConnectionOutlivesTheWindowGetsNothing) {
    const std::vector<TScaleObj> items = {Item(1)};
    WhileConnecting(1, [this] { stop_.Abandon(); });
    Run(items, {Goods(1, "A")});
    EXPECT_TRUE(Scale(1).requests.empty());
    EXPECT_EQ(test::Filtered(events_, {"open", "freed"}),
              (TEvents{"open TCP 10.0.0.1:1001", "freed"}));
}

TEST_F(ScaleRunTest, AScaleWhoseConnectionOutlivesTheWindowKeepsItsArticles) {
    const std::vector<TScaleObj> items = {Item(1)};
    for (const bool everything : {false, true}) {
        SCOPED_TRACE(everything);
        events_.clear();
        TRunStop stop;
        WhileConnecting(1, [&] { stop.Abandon(); });
        TScaleRun run(factory_, clock_, view_, stop, regional_);
        const auto table = test::TableOf({Goods(1, "A")});
        if (everything) {
            run.RunDeleteEverything(items, TRunMarks(items));
        } else {
            run.RunListed(items, {table, table->Order()}, {}, false);
        }
        EXPECT_TRUE(Scale(1).requests.empty());
    }
}

TEST_F(ScaleRunTest, AWindowClosedBeforeProgrammingLeavesTheScaleInWeighingMode) {
    const std::vector<TScaleObj> items = {Item(1)};
    Scale(1).errorCode = [this](const test::TRequest&) -> std::uint8_t {
        stop_.Abandon();
        return 0;
    };
    Run(items, {Goods(1, "A")});
    Scale(1).errorCode = nullptr;
    // Only the command for weighing mode, without the pause that ends a programming mode: there was
    // none.
    EXPECT_EQ(test::Filtered(events_, {"3C", "36", "48", "wait"}), (TEvents{"3C", "wait 500"}));
}

TEST_F(ScaleRunTest, AStopWhileAScaleIsBeingConnectedStillGoesThroughProgrammingMode) {
    const std::vector<TScaleObj> items = {Item(1)};
    WhileConnecting(1, [this] { stop_.Stop(); });
    Run(items, {Goods(1, "A")});
    EXPECT_EQ(test::Filtered(events_, {"3C", "36", "48", "4A"}), (TEvents{"3C", "36", "48"}));
    EXPECT_EQ(test::Filtered(events_, {"log:Fail"}),
              (TEvents{"log:Fail! Plu: 0 \"\" Операцията прекратена от петребителя."}));
}

TEST_F(ScaleRunTest, ASerialScaleAndAUdpScaleAreReachedTheirOwnWay) {
    std::vector<TScaleObj> items = {Item(1), Item(2)};
    items[0].Rec.CommType = kCommSerial;
    items[0].Rec.TCPAddress = "COM7";
    items[0].Rec.BaudRate = 4;
    items[1].Rec.CommType = kCommUdp;
    Run(items, {Goods(1, "A")});
    EXPECT_EQ(test::Filtered(events_, {"open", "connection:Хост"}),
              (TEvents{"connection:Хост: COM7 Скорост: 115200 bps", "open COM7 115200",
                       "connection:Хост: 10.0.0.2 Порт: 1001", "open UDP 10.0.0.2"}));
    EXPECT_EQ(PriceWrites().size(), 2U);
}

TEST_F(ScaleRunTest, AViewThatFailsToShowTheErrorShowsTheTextThatNeedsNoMemory) {
    view_.onLog = [](const std::string&) { throw std::runtime_error("no log"); };
    view_.onRunError = [] { throw std::bad_alloc(); };
    Run({Item(1)}, {Goods(1, "A")});
    ASSERT_GE(events_.size(), 2U);
    EXPECT_EQ(events_[events_.size() - 2], "error:no log");
    EXPECT_EQ(events_.back(), "out of memory");
}

TEST_F(ScaleRunTest, WhatIsNoExceptionOfTheLibraryIsShownAsWell) {
    view_.onLog = [](const std::string&) { throw 42; };
    Run({Item(1)}, {Goods(1, "A")});
    EXPECT_EQ(events_.back(), "error:Неизвестна грешка");
}

TEST_F(ScaleRunTest, EachScaleGetsItsOwnArticles) {
    TArticle first = Goods(1, "A");
    first.forScales = "1";
    TArticle second = Goods(2, "B");
    second.forScales = "2";
    Run({Item(1), Item(2)}, {first, second});
    ASSERT_EQ(Scale(1).requests.size(), Scale(2).requests.size());
    EXPECT_EQ(Scale(1).requests.at(3).plu, 1);
    EXPECT_EQ(Scale(2).requests.at(3).plu, 2);
}

std::string Connection(std::uint8_t commType, std::uint8_t baudRate, std::string_view address) {
    TScaleRec rec = NetworkScale(7, "A", address, 2000);
    rec.CommType = commType;
    rec.BaudRate = baudRate;
    return ToUtf8(ConnectionText(rec));
}

TEST(ConnectionText, ASerialScaleShowsItsSpeed) {
    EXPECT_EQ(Connection(0, 0, "COM1"), "Хост: COM1 Скорост: 9600 bps");
    EXPECT_EQ(Connection(0, 1, "COM1"), "Хост: COM1 Скорост: 19200 bps");
    EXPECT_EQ(Connection(0, 2, "COM1"), "Хост: COM1 Скорост: 38400 bps");
    EXPECT_EQ(Connection(0, 4, "COM1"), "Хост: COM1 Скорост: 115200 bps");
    EXPECT_EQ(Connection(0, 5, "COM1"), "Хост: COM1 Скорост: N/A");
}

TEST(ConnectionText, AScaleWhoseBaudRateIs3Shows576000) {
    EXPECT_EQ(Connection(0, 3, "COM1"), "Хост: COM1 Скорост: 576000 bps");
}

TEST(ConnectionText, ANetworkScaleShowsItsPort) {
    EXPECT_EQ(Connection(1, 0, "192.168.100.200"), "Хост: 192.168.100.200 Порт: 2000");
    EXPECT_EQ(Connection(2, 0, "10.0.0.7"), "Хост: 10.0.0.7 Порт: 2000");
}

TEST(ConnectionText, AnUnknownTransportShowsTheHostOnly) {
    EXPECT_EQ(Connection(3, 0, "10.0.0.7"), "Хост: 10.0.0.7");
}

}  // namespace
}  // namespace tolvane
