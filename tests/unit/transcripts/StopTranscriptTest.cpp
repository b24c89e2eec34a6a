#include <string>

#include "TranscriptFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using StopTranscript = TranscriptTest;

const std::string kWriteVersion = "   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2\n";
const std::string kDeleteVersion = "   - Ver: 1.04; Max.PLU: 4000; Mode:2\n";

// The log of a scale in a run over the listed articles, up to its connection.
std::string Opened(const std::string& scale) {
    return "Обработени 2 артикула.\n"
           "Валидни са 2 артикула.\n"
           "Ще бъдат записани само валидните артикули\n"
           "-----------------------------------------\n"
           "Старт на запис във везна: " +
           scale +
           "\n"
           "Осъществена връзка с устройството за комуникация\n";
}

std::string OpenedAndWritten(const std::string& scale) {
    return Opened(scale) + kWriteVersion +
           "   Брой записани артикули: 2\n"
           "Успешно записани артикули във везна: " +
           scale + "\n\n";
}

// The log of a scale in which the run was stopped while it wrote the first article.
std::string StoppedInWork(const std::string& scale) {
    return Opened(scale) + kWriteVersion +
           "Fail! Plu: 12 \"Домати\" Операцията прекратена от петребителя.\n"
           "Грешка при запис артикули във везна: " +
           scale + "\n\n";
}

// The log of a scale after the run was stopped in an earlier one.
std::string StoppedBefore(const std::string& scale) {
    return Opened(scale) + kWriteVersion +
           "Fail! Plu: 0 \"\" Операцията прекратена от петребителя.\n"
           "Грешка при запис артикули във везна: " +
           scale + "\n\n";
}

TEST_F(StopTranscript, InTheFirstScaleOfAWriteRun) {
    AddScales(3);
    StopAt("Запис артикул: 12 Домати", 1);
    EXPECT_EQ(Write(TwoGoods()), StoppedInWork("Везна 1") + StoppedBefore("Везна 2") +
                                     StoppedBefore("Везна 3") + std::string(kSeparator));
    EXPECT_EQ(State(1).articles.size(), 1U);
    EXPECT_TRUE(State(1).programming);
    for (int scale = 2; scale <= 3; ++scale) {
        EXPECT_TRUE(State(scale).articles.empty());
        EXPECT_TRUE(State(scale).programming);
    }
}

TEST_F(StopTranscript, InTheSecondScaleOfAWriteRun) {
    AddScales(3);
    StopAt("Запис артикул: 12 Домати", 2);
    EXPECT_EQ(Write(TwoGoods()), OpenedAndWritten("Везна 1") + StoppedInWork("Везна 2") +
                                     StoppedBefore("Везна 3") + std::string(kSeparator));
    EXPECT_FALSE(State(1).programming);
    EXPECT_EQ(State(2).articles.size(), 1U);
    EXPECT_TRUE(State(3).articles.empty());
}

TEST_F(StopTranscript, InTheLastScaleOfAWriteRun) {
    AddScales(3);
    StopAt("Запис артикул: 12 Домати", 3);
    EXPECT_EQ(Write(TwoGoods()), OpenedAndWritten("Везна 1") + OpenedAndWritten("Везна 2") +
                                     StoppedInWork("Везна 3") + std::string(kSeparator));
    EXPECT_EQ(State(3).articles.size(), 1U);
}

TEST_F(StopTranscript, DuringTheLastArticleOfAScaleIsFeltInTheNextOneOnly) {
    AddScales(2);
    StopAt("Запис артикул: 7 Яйца", 1);
    EXPECT_EQ(Write(TwoGoods()),
              OpenedAndWritten("Везна 1") + StoppedBefore("Везна 2") + std::string(kSeparator));
}

std::string DeleteStopped(const std::string& scale) {
    return Opened(scale) + kDeleteVersion +
           "Операцията прекратена от потребителя.\n"
           "Грешка при запис артикули във везна: " +
           scale + "\n\n";
}

TEST_F(StopTranscript, InTheSecondScaleWhileListedArticlesAreDeleted) {
    AddScales(3);
    StopAt("Изтриване артикул: 12 Домати", 2);
    EXPECT_EQ(DeleteListed(TwoGoods()), Opened("Везна 1") + kDeleteVersion +
                                            "Успешно записани артикули във везна: Везна 1\n\n" +
                                            DeleteStopped("Везна 2") + DeleteStopped("Везна 3") +
                                            std::string(kSeparator));
    EXPECT_FALSE(State(1).programming);
    EXPECT_TRUE(State(2).programming);
    EXPECT_TRUE(State(3).programming);
}

// The log of a scale of three articles in a run that deletes everything.
std::string Deleted(const std::string& scale) {
    return "-----------------------------------------\n"
           "Старт на запис във везна: " +
           scale +
           "\n"
           "Осъществена връзка с устройството за комуникация\n"
           "   - Ver: 1.04; Max.PLU: 3; Mode:2\n"
           "Успешно изтрити артикули от везна: " +
           scale + "\n";
}

std::string NotDeleted(const std::string& scale) {
    return "-----------------------------------------\n"
           "Старт на запис във везна: " +
           scale +
           "\n"
           "Осъществена връзка с устройството за комуникация\n"
           "   - Ver: 1.04; Max.PLU: 3; Mode:2\n"
           "Операцията прекратена от потребителя.\n"
           "Грешка при изтриване артикули от везна: " +
           scale + "\n";
}

class DeleteEverythingStop : public TranscriptTest {
protected:
    DeleteEverythingStop() {
        AddScales(3);
        for (int scale = 1; scale <= 3; ++scale)
            SetCapacity(scale, 3);
    }
};

TEST_F(DeleteEverythingStop, InTheFirstScaleEndsThatScaleOnly) {
    StopAt("Изтриване артикул #2", 1);
    EXPECT_EQ(DeleteEverything(), NotDeleted("Везна 1") + Deleted("Везна 2") + Deleted("Везна 3") +
                                      std::string(kSeparator));
    EXPECT_EQ(State(1).articles.size(), 2U);
    EXPECT_TRUE(State(1).programming);
    EXPECT_EQ(State(2).articles.size(), 3U);
    EXPECT_FALSE(State(2).programming);
}

TEST_F(DeleteEverythingStop, InTheSecondScaleEndsThatScaleOnly) {
    StopAt("Изтриване артикул #2", 2);
    EXPECT_EQ(DeleteEverything(), Deleted("Везна 1") + NotDeleted("Везна 2") + Deleted("Везна 3") +
                                      std::string(kSeparator));
}

TEST_F(DeleteEverythingStop, InTheLastScaleEndsIt) {
    StopAt("Изтриване артикул #2", 3);
    EXPECT_EQ(DeleteEverything(), Deleted("Везна 1") + Deleted("Везна 2") + NotDeleted("Везна 3") +
                                      std::string(kSeparator));
}

}  // namespace
}  // namespace tolvane::test
