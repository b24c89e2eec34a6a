#include <string>
#include <string_view>

#include "TranscriptFixture.h"
#include "simulator/Faults.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using simulator::TFault;
using simulator::TFaultKind;

using RefusalTranscript = TranscriptTest;

constexpr std::string_view kUnreachable = "[TCP] Fail open (10.0.0.2:1001) - Connect timed out.";

TFault Refusal(std::uint8_t command, int code) {
    TFault fault;
    fault.kind = TFaultKind::Error;
    fault.command = command;
    fault.code = code;
    return fault;
}

TFault Always(TFaultKind kind) {
    TFault fault;
    fault.kind = kind;
    return fault;
}

// The log of a scale that takes both articles.
std::string Written(const std::string& scale) {
    return Summary(2, 2) + Start(scale) + std::string(kConnected) +
           "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n"
           "   Брой записани артикули: 2\n"
           "Успешно записани артикули във везна: " +
           scale + "\n\n";
}

TEST_F(RefusalTranscript, TheSecondOfThreeScalesIsUnreachable) {
    AddScales(3);
    SetDead(2, kUnreachable);
    EXPECT_EQ(Write(TwoGoods()), Written("Везна 1") +
                                     "Обработени 2 артикула.\n"
                                     "Валидни са 2 артикула.\n"
                                     "Ще бъдат записани само валидните артикули\n"
                                     "-----------------------------------------\n"
                                     "Старт на запис във везна: Везна 2\n"
                                     "InitComm >> Fail init communication interface: "
                                     "[TCP] Fail open (10.0.0.2:1001) - Connect timed out.\n"
                                     "Грешка при запис артикули във везна: Везна 2\n"
                                     "\n" +
                                     Written("Везна 3") +
                                     "-----------------------------------------\n");
    EXPECT_EQ(State(1).articles.size(), 2U);
    EXPECT_EQ(State(2).requests.total, 0);
    EXPECT_EQ(State(3).articles.size(), 2U);
}

TEST_F(RefusalTranscript, TheSecondOfThreeScalesIsSilent) {
    AddScales(3);
    SetFaults(2, {Always(TFaultKind::Silent)});
    EXPECT_EQ(Write(TwoGoods()),
              Written("Везна 1") +
                  "Обработени 2 артикула.\n"
                  "Валидни са 2 артикула.\n"
                  "Ще бъдат записани само валидните артикули\n"
                  "-----------------------------------------\n"
                  "Старт на запис във везна: Везна 2\n"
                  "Осъществена връзка с устройството за комуникация\n"
                  "Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 1000, Fail set Weight mode: "
                  "[ReadResponce][SCRIPT] Fail read data (peer) - Read timeout occured\n"
                  "Грешка при запис артикули във везна: Везна 2\n"
                  "\n" +
                  Written("Везна 3") + "-----------------------------------------\n");
    EXPECT_TRUE(State(2).articles.empty());
}

TEST_F(RefusalTranscript, TheSecondOfThreeScalesIsUnreachableWhenEverythingIsDeleted) {
    AddScales(3);
    for (int scale = 1; scale <= 3; ++scale)
        SetCapacity(scale, 2);
    SetDead(2, kUnreachable);
    EXPECT_EQ(DeleteEverything(),
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 2; Mode:2\n"
              "Успешно изтрити артикули от везна: Везна 1\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 2\n"
              "InitComm >> Fail init communication interface: "
              "[TCP] Fail open (10.0.0.2:1001) - Connect timed out.\n"
              "Грешка при изтриване артикули от везна: Везна 2\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 3\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 2; Mode:2\n"
              "Успешно изтрити артикули от везна: Везна 3\n"
              "-----------------------------------------\n");
}

TEST_F(RefusalTranscript, EveryArticleIsRefused) {
    AddScale();
    TArticle badBarcode = Goods(12, "Домати"_cp1251);
    badBarcode.barcode = "220";
    TArticle noPrice = Goods(7, "Яйца \"L\""_cp1251);
    noPrice.retail = 0;
    EXPECT_EQ(Write({badBarcode, noPrice}),
              "  Артикул \"Домати\" няма коректен баркод\n"
              "  ->> и ще бъде игнориран\n"
              "  Артикул \"Яйца \"L\"\" има нулева ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)\n"
              "  ->> и няма да може да бъде маркиран от везната\n"
              "Обработени 2 артикула.\n"
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
    EXPECT_TRUE(State(1).articles.empty());
}

TEST_F(RefusalTranscript, EveryScaleRefusesInItsOwnWay) {
    AddScales(6);
    SetDead(1, "[TCP] Fail open (10.0.0.1:1001) - Connection refused");
    SetFaults(2, {Refusal(simulator::kSetPrgMode, 9)});
    SetFaults(3, {Refusal(simulator::kGetVersion, 3)});
    SetFaults(4, {Refusal(simulator::kSetPriceWeight, 7)});
    SetFaults(5, {Refusal(simulator::kSetParam, 5)});
    SetFaults(6, {Always(TFaultKind::NoStx)});
    const std::string version = "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n";
    const auto part = [](const std::string& scale, const std::string& between) {
        return Summary(2, 2) + Start("Везна " + scale) + between +
               "Грешка при запис артикули във везна: Везна " + scale + "\n\n";
    };
    const std::string connected(kConnected);
    EXPECT_EQ(
        Write(TwoGoods()),
        part("1",
             "InitComm >> Fail init communication interface: "
             "[TCP] Fail open (10.0.0.1:1001) - Connection refused\n") +
            part("2", connected + "Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 9, "
                                  "Fail set Weight mode: Scale return Error code: 9\n") +
            part("3", connected + "Fail! Plu: 0 \"\" [GetVersion] ErrCode: 3, "
                                  "Fail get version: Scale return Error code: 3\n") +
            part("4", connected + version +
                          "Fail! Plu: 12 \"Домати\" [SetPrice] ErrCode: 7, "
                          "Fail set PLU price: Scale return Error code: 7\n") +
            part("5", connected + version +
                          "Fail! Plu: 12 \"Домати\" [SetParam:0][Име1] ErrCode: 5, "
                          "Fail set parameter: Plu:12 ParN:0 "
                          "ParT:\"Домати                         \"\r\n"
                          "Scale return Error code: 5\n") +
            part("6", connected +
                          "Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 1000, Fail set Weight mode: "
                          "[ReadResponce][SCRIPT] Fail read data (peer) - "
                          "Wrong answer. No STX byte.\n") +
            "-----------------------------------------\n");
}

TEST_F(RefusalTranscript, EveryScaleRefusesToDeleteEverything) {
    AddScales(3);
    for (int scale = 1; scale <= 3; ++scale)
        SetCapacity(scale, 2);
    items_[0].Rec.CommType = 9;
    SetFaults(2, {Refusal(simulator::kSetPrgMode, 9)});
    SetFaults(3, {Refusal(simulator::kSetPriceWeight, 7)});
    EXPECT_EQ(DeleteEverything(),
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 1\n"
              "Невалиден тип на комуникация с везна.\n"
              "Грешка при изтриване артикули от везна: Везна 1\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 2\n"
              "Осъществена връзка с устройството за комуникация\n"
              "ProcessDelete >> [SetPrgMode] ErrCode: 9, "
              "Fail set Weight mode: Scale return Error code: 9\n"
              "Грешка при изтриване артикули от везна: Везна 2\n"
              "-----------------------------------------\n"
              "Старт на запис във везна: Везна 3\n"
              "Осъществена връзка с устройството за комуникация\n"
              "   - Ver: 1.04; Max.PLU: 2; Mode:2\n"
              "ProcessDelete >> [SetPrice] ErrCode: 7, "
              "Fail set PLU price: Scale return Error code: 7\n"
              "Грешка при изтриване артикули от везна: Везна 3\n"
              "-----------------------------------------\n");
}

}  // namespace
}  // namespace tolvane::test
