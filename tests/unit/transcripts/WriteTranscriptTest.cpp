#include <array>
#include <string>
#include <vector>

#include "TranscriptFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using simulator::TModel;

using WriteTranscript = TranscriptTest;

TEST_F(WriteTranscript, WithoutScalesOnlyThatIsLogged) {
    EXPECT_EQ(Write(TwoGoods()), "Не е дефинирана нито една везна.\n");
}

TEST_F(WriteTranscript, WithoutACheckedScaleOnlyThatAndTheLastLineAreLogged) {
    AddScale().Rec.Checked = false;
    AddScale().Rec.Checked = false;
    EXPECT_EQ(Write(TwoGoods()),
              "Не е избрана нито една везна.\n"
              "-----------------------------------------\n");
    EXPECT_TRUE(factory_.reached.empty());
}

TEST_F(WriteTranscript, TheLogOfAnEarlierRunGoesFirst) {
    AddScale().Rec.Checked = false;
    Write(TwoGoods());
    EXPECT_EQ(Write(TwoGoods()),
              "Не е избрана нито една везна.\n"
              "-----------------------------------------\n");
}

TEST_F(WriteTranscript, OneScaleOfThreeIsChecked) {
    AddScale().Rec.Checked = false;
    AddScale();
    AddScale().Rec.Checked = false;
    EXPECT_EQ(Write(TwoGoods()),
              "Обработени 2 артикула.\n"
              "Валидни са 2 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 2\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n"
              "   Брой записани артикули: 2\n"
              "Успешно записани артикули във везна: Везна 2\n"
              "\n"
              "-----------------------------------------\n");
    EXPECT_EQ(view_.progress,
              (std::vector<std::string>{"Запис артикул: 12 Домати", "Запис артикул: 7 Яйца", ""}));
}

// The log of a scale into which one article was written.
std::string Written(const std::string& number, const std::string& version) {
    return "Обработени 1 артикула.\n"
           "Валидни са 1 артикула.\n"
           "Ще бъдат записани само валидните артикули\n"
           "-----------------------------------------\n"
           "Старт на запис във везна: Везна " +
           number +
           "\n"
           "Осъществена връзка с устройството за комуникация\n"
           "   Везна " +
           version +
           "\n"
           "   Брой записани артикули: 1\n"
           "Успешно записани артикули във везна: Везна " +
           number + "\n\n";
}

TEST_F(WriteTranscript, OneScaleOfEachTypeAndTransport) {
    for (const TModel model : {TModel::Evl, TModel::Ets, TModel::S300}) {
        for (const std::uint8_t transport : {kCommSerial, kCommTcp, kCommUdp})
            AddScale(model, transport);
    }
    items_[0].Rec.BaudRate = 0;
    items_[3].Rec.BaudRate = 3;
    items_[6].Rec.BaudRate = 4;
    const std::string evl = "EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2";
    const std::string ets = "ETS - Ver: 2.10; Max.PLU: 9999; Mode: 2";
    const std::string s300 = "S300 - Ver: 3.02; Max.PLU: 9999; Mode: 2";
    EXPECT_EQ(Write({Goods(12, "Домати"_cp1251)}),
              Written("1", evl) + Written("2", evl) + Written("3", evl) + Written("4", ets) +
                  Written("5", ets) + Written("6", ets) + Written("7", s300) + Written("8", s300) +
                  Written("9", s300) + "-----------------------------------------\n");
    EXPECT_EQ(view_.connections, (std::vector<std::string>{
                                     "Хост: COM1 Скорост: 9600 bps", "Хост: 10.0.0.2 Порт: 1001",
                                     "Хост: 10.0.0.3 Порт: 1001", "Хост: COM4 Скорост: 576000 bps",
                                     "Хост: 10.0.0.5 Порт: 1001", "Хост: 10.0.0.6 Порт: 1001",
                                     "Хост: COM7 Скорост: 115200 bps", "Хост: 10.0.0.8 Порт: 1001",
                                     "Хост: 10.0.0.9 Порт: 1001", ""}));
    EXPECT_EQ(factory_.reached,
              (std::vector<std::string>{"COM1 9600", "TCP 10.0.0.2:1001", "UDP 10.0.0.3",
                                        "COM4 57600", "TCP 10.0.0.5:1001", "UDP 10.0.0.6",
                                        "COM7 115200", "TCP 10.0.0.8:1001", "UDP 10.0.0.9"}));
    for (int scale = 1; scale <= 9; ++scale) {
        const simulator::TScaleState state = State(scale);
        EXPECT_EQ(state.articles.size(), 1U) << scale;
        EXPECT_EQ(state.articles.at(12).price, 1234) << scale;
        EXPECT_FALSE(state.programming) << scale;
    }
}

TEST_F(WriteTranscript, AScaleOfAnotherTypeLogsNoVersion) {
    AddScale().Rec.ScaleType = 42;
    EXPECT_EQ(Write({Goods(12, "Домати"_cp1251)}),
              "Обработени 1 артикула.\n"
              "Валидни са 1 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   Брой записани артикули: 1\n"
              "Успешно записани артикули във везна: Везна 1\n"
              "\n"
              "-----------------------------------------\n");
}

TEST_F(WriteTranscript, AnUnknownTransportIsOneFailureAmongOthers) {
    AddScales(2);
    items_[0].Rec.CommType = 3;
    EXPECT_EQ(Write({Goods(12, "Домати"_cp1251)}),
              "Обработени 1 артикула.\n"
              "Валидни са 1 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Невалиден тип на комуникация с везна.\n"
              "Грешка при запис артикули във везна: Везна 1\n"
              "\n" +
                  Written("2", "EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2") +
                  "-----------------------------------------\n");
    EXPECT_EQ(view_.connections,
              (std::vector<std::string>{"Хост: 10.0.0.1", "Хост: 10.0.0.2 Порт: 1001", ""}));
    EXPECT_EQ(factory_.reached, (std::vector<std::string>{"TCP 10.0.0.2:1001"}));
}

// Article n of 300 is wrong in way n modulo 15; ways 0 and 14 are right.
TArticle ArticleOfKind(int number, const std::string& name) {
    TArticle article = Goods(number, name);
    switch ((number - 1) % 15) {
        case 1:
            article.barcode = "";
            break;
        case 2:
            article.barcode = "2201";
            break;
        case 3:
            article.barcode = "220123";
            break;
        case 4:
            article.retail = 0;
            break;
        case 5:
            article.promotion = true;
            article.promotionPrice = 0;
            break;
        case 6:
            article.name = "";
            break;
        case 7:
            article.labelName = "";
            break;
        case 8:
            article.forScales = "2,3";
            break;
        case 9:
            article.forScales = "x,0";
            break;
        case 10:
            article.forScales = "";
            break;
        case 11:
            article.scaleNumber = 0;
            break;
        case 12:
            article.scaleNumber = 4001;
            break;
        case 13:
            article.retail = -1.5;
            break;
        case 14:
            article.retail = 0;
            article.promotion = true;
            article.promotionPrice = 2.5;
            break;
        default:
            break;
    }
    return article;
}

// The log of 15 articles, of which the first is the n-th.
std::string RefusalsFrom(int n) {
    const auto named = [n](int kind) { return "  Артикул \"Стока " + std::to_string(n + kind); };
    return named(1) + "\" няма коректен баркод\n  ->> и ще бъде игнориран\n" +  //
           named(2) + "\" няма коректен баркод\n  ->> и ще бъде игнориран\n" +  //
           named(3) + "\" няма коректен баркод\n  ->> и ще бъде игнориран\n" +  //
           named(4) +
           "\" има нулева ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)\n"
           "  ->> и няма да може да бъде маркиран от везната\n" +
           named(5) +
           "\" има нулева ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)\n"
           "  ->> и няма да може да бъде маркиран от везната\n"
           "  Артикул \"\" няма коректно ИМЕ\n  ->> и ще бъде игнориран\n" +
           named(7) + "\" няма коректно ЕТИКЕТНО ИМЕ\n  ->> и ще бъде игнориран\n";
}

TEST_F(WriteTranscript, ThreeHundredArticlesWithEveryKindOfRefusal) {
    AddScale();
    std::vector<std::string> names;
    for (int number = 1; number <= 300; ++number)
        names.push_back(std::string("Стока "_cp1251) + std::to_string(number));
    std::vector<TArticle> articles;
    for (int number = 1; number <= 300; ++number)
        articles.push_back(ArticleOfKind(number, names[static_cast<std::size_t>(number) - 1]));

    std::string expected;
    for (int first = 1; first <= 286; first += 15)
        expected += RefusalsFrom(first);
    // Of 15 articles five make a line (0, 11, 12, 13, 14), and the scale takes two (0, 14).
    expected +=
        "Обработени 300 артикула.\n"
        "Валидни са 100 артикула.\n"
        "Ще бъдат записани само валидните артикули\n"
        "-----------------------------------------\n"
        "Старт на запис във везна: Везна 1\n"
        "Осъществена връзка с устройството за комуникация\n"
        "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n"
        "   Брой записани артикули: 40\n"
        "Успешно записани артикули във везна: Везна 1\n"
        "\n"
        "-----------------------------------------\n";
    EXPECT_EQ(Write(articles), expected);
    const simulator::TScaleState state = State(1);
    EXPECT_EQ(state.articles.size(), 40U);
    EXPECT_EQ(state.articles.at(1).price, 1234);
    EXPECT_EQ(state.articles.at(300).price, 250);
}

TEST_F(WriteTranscript, TheOtherChoicesAreNamedByTheirOwnCaptions) {
    AddScale();
    TArticle noPrice = Goods(1, "Сирене"_cp1251);
    noPrice.wholesale = 0;
    TArticle noLabelName = Goods(2, "Кашкавал"_cp1251);
    noLabelName.labelName = "";
    noLabelName.ecrName = "K";
    TArticle noCashName = Goods(3, "Извара"_cp1251);
    EXPECT_EQ(Write({noPrice, noLabelName, noCashName}, {kWholesalePrice, 2, 0}),
              "  Артикул \"Сирене\" има нулева ПРОДАЖНА ЦЕНА ЕДРО (ЛВ)\n"
              "  ->> и няма да може да бъде маркиран от везната\n"
              "  Артикул \"Кашкавал\" няма коректно ЕТИКЕТНО ИМЕ\n"
              "  ->> и ще бъде игнориран\n"
              "  Артикул \"Извара\" няма коректно КАСОВО ИМЕ\n"
              "  ->> и ще бъде игнориран\n"
              "Обработени 3 артикула.\n"
              "Валидни са 0 артикула.\n"
              "Ще бъдат записани само валидните артикули\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n"
              "   Брой записани артикули: 0\n"
              "Успешно записани артикули във везна: Везна 1\n"
              "\n"
              "-----------------------------------------\n");
}

}  // namespace
}  // namespace tolvane::test
