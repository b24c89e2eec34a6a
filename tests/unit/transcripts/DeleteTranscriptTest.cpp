#include <string>
#include <vector>

#include "TranscriptFixture.h"
#include "simulator/Faults.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using DeleteTranscript = TranscriptTest;

TEST_F(DeleteTranscript, WithoutScalesOnlyThatIsLogged) {
    EXPECT_EQ(DeleteEverything(), "Не е дефинирана нито една везна.\n");
    EXPECT_EQ(DeleteListed(TwoGoods()), "Не е дефинирана нито една везна.\n");
}

TEST_F(DeleteTranscript, WithoutACheckedScaleOnlyThatAndTheLastLineAreLogged) {
    AddScale().Rec.Checked = false;
    const std::string expected =
        "Не е избрана нито една везна.\n"
        "-----------------------------------------\n";
    EXPECT_EQ(DeleteEverything(), expected);
    EXPECT_EQ(DeleteListed(TwoGoods()), expected);
}

TEST_F(DeleteTranscript, ListedArticlesAreDeletedUnderTheWriteTexts) {
    AddScales(2);
    Write({Goods(12, "Домати"_cp1251), Goods(7, "Яйца"_cp1251), Goods(9, "Лук"_cp1251)});
    EXPECT_EQ(DeleteListed(TwoGoods()),
              "Обработени 2 артикула.\n"
              "Валидни са 2 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 4000; Mode:2\n"
              "Успешно записани артикули във везна: Везна 1\n"
              "\n"
              "Обработени 2 артикула.\n"
              "Валидни са 2 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 2\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 4000; Mode:2\n"
              "Успешно записани артикули във везна: Везна 2\n"
              "\n"
              "-----------------------------------------\n");
    for (int scale = 1; scale <= 2; ++scale) {
        const simulator::TScaleState state = State(scale);
        EXPECT_TRUE(state.articles.at(12).IsCleared());
        EXPECT_TRUE(state.articles.at(7).IsCleared());
        EXPECT_FALSE(state.articles.at(9).IsCleared());
        EXPECT_FALSE(state.programming);
    }
}

TEST_F(DeleteTranscript, AnArticleThatIsNotValidIsNotDeletedEither) {
    AddScale();
    TArticle bad = Goods(12, "Домати"_cp1251);
    bad.barcode = "1";
    EXPECT_EQ(DeleteListed({bad, Goods(7, "Яйца"_cp1251)}),
              "  Артикул \"Домати\" няма коректен баркод\n"
              "  ->> и ще бъде игнориран\n"
              "Обработени 2 артикула.\n"
              "Валидни са 1 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 4000; Mode:2\n"
              "Успешно записани артикули във везна: Везна 1\n"
              "\n"
              "-----------------------------------------\n");
    EXPECT_EQ(State(1).articles.count(12), 0U);
    EXPECT_TRUE(State(1).articles.at(7).IsCleared());
}

// A delete pass without lines would clear the whole scale, so there must be none here.
TEST_F(DeleteTranscript, WhereNoListedArticleIsForTheScaleNothingIsSentAndTheDeleteIsLoggedAsDone) {
    AddScales(3);
    Write({Goods(9, "Лук"_cp1251)});
    TArticle onlySecond = Goods(12, "Домати"_cp1251);
    onlySecond.forScales = "2";
    TArticle noScale = Goods(7, "Яйца"_cp1251);
    noScale.forScales = "";
    const int sent = State(1).requests.total;
    EXPECT_EQ(DeleteListed({onlySecond, noScale}),
              "Обработени 2 артикула.\n"
              "Валидни са 0 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "Успешно записани артикули във везна: Везна 1\n"
              "\n"
              "Обработени 2 артикула.\n"
              "Валидни са 1 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 2\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 4000; Mode:2\n"
              "Успешно записани артикули във везна: Везна 2\n"
              "\n"
              "Обработени 2 артикула.\n"
              "Валидни са 0 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 3\n"
              "Осъществена връзка с устройството за комуникация\n"
              "Успешно записани артикули във везна: Везна 3\n"
              "\n"
              "-----------------------------------------\n");
    for (const int scale : {1, 3}) {
        EXPECT_EQ(State(scale).requests.total, sent) << scale;
        EXPECT_EQ(State(scale).articles.size(), 1U) << scale;
        EXPECT_FALSE(State(scale).articles.at(9).IsCleared()) << scale;
        EXPECT_FALSE(State(scale).programming) << scale;
    }
    EXPECT_TRUE(State(2).articles.at(12).IsCleared());
    EXPECT_FALSE(State(2).articles.at(9).IsCleared());
}

TEST_F(DeleteTranscript, WhereNoListedArticleIsForAScaleThatIsUnreachableThatIsLogged) {
    AddScale();
    SetDead(1, "[TCP] Fail open (10.0.0.1:1001) - Connection refused (111)");
    TArticle other = Goods(12, "Домати"_cp1251);
    other.forScales = "2";
    EXPECT_EQ(DeleteListed({other}),
              "Обработени 1 артикула.\n"
              "Валидни са 0 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "InitComm >> Fail init communication interface: "
              "[TCP] Fail open (10.0.0.1:1001) - Connection refused (111)\n"
              "Грешка при запис артикули във везна: Везна 1\n"
              "\n"
              "-----------------------------------------\n");
}

TEST_F(DeleteTranscript, EverythingIsDeletedInEveryCheckedScale) {
    AddScales(3);
    SetCapacity(1, 3);
    SetCapacity(2, 3);
    SetCapacity(3, 1);
    items_[1].Rec.Checked = false;
    EXPECT_EQ(DeleteEverything(),
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 3; Mode:2\n"
              "Успешно изтрити артикули от везна: Везна 1\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 3\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 1; Mode:2\n"
              "Успешно изтрити артикули от везна: Везна 3\n"
              "-----------------------------------------\n");
    EXPECT_EQ(view_.connections, (std::vector<std::string>{"Хост: 10.0.0.1 Порт: 1001",
                                                           "Хост: 10.0.0.3 Порт: 1001", ""}));
    EXPECT_EQ(view_.progress,
              (std::vector<std::string>{"Изтриване всички артикули.", "Изтриване артикул #1",
                                        "Изтриване артикул #2", "Изтриване артикул #3",
                                        "Изтриване всички артикули.", "Изтриване артикул #1", ""}));
    EXPECT_EQ(State(1).articles.size(), 3U);
    EXPECT_EQ(State(2).requests.total, 0);
    for (int number = 1; number <= 3; ++number)
        EXPECT_TRUE(State(1).articles.at(number).IsCleared()) << number;
    EXPECT_TRUE(State(3).articles.at(1).IsCleared());
}

TEST_F(DeleteTranscript, ARefusedNameIsNotReported) {
    AddScale();
    SetCapacity(1, 2);
    simulator::TFault refused;
    refused.kind = simulator::TFaultKind::Error;
    refused.command = simulator::kSetParam;
    refused.code = 5;
    SetFaults(1, {refused});
    EXPECT_EQ(DeleteEverything(),
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 2; Mode:2\n"
              "Успешно изтрити артикули от везна: Везна 1\n"
              "-----------------------------------------\n");
    EXPECT_EQ(State(1).articles.at(2).price, 0);
}

}  // namespace
}  // namespace tolvane::test
