// What --log appends, and the lines on standard error where no progress is shown.

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

// Linux answers every write to it as a full disk does, and Wine hands that on.
#ifdef _WIN32
constexpr const char* kFullDisk = "Z:\\dev\\full";
#else
constexpr const char* kFullDisk = "/dev/full";
#endif

class LogTest : public TProgramTest {
protected:
    // The events of one command, which ends with this code.
    std::vector<nlohmann::json> Events(TWords words, int code) {
        const std::filesystem::path file = folder_ / "run.log";
        std::filesystem::remove(file);
        words.insert(words.end(), {"--log", file.string()});
        const TRun run = Run(words);
        EXPECT_EQ(run.exitCode, code) << run.err;
        EXPECT_EQ(GetFile(file).find("masterkey"), std::string::npos);
        return EventsIn(file);
    }
    static std::string Names(const std::vector<nlohmann::json>& events) {
        std::string names;
        for (const auto& event : events)
            names += (names.empty() ? "" : " ") + std::string(event.at("event"));
        return names;
    }
};

TEST_F(LogTest, ARunHasAnObjectForEachEvent) {
    AddScale(1);
    const auto events = Events({"write"}, 0);
    ASSERT_EQ(Names(events), "begin connected written written written scale end");
    EXPECT_EQ(events[0].at("command"), "write");
    EXPECT_EQ(events[0].at("version"), TOLVANE_VERSION);
    EXPECT_EQ(events[0].at("scales"), "checked");
    EXPECT_EQ(events[1].at("scale"), 1);
    EXPECT_EQ(events[1].at("articles"), 3);
    EXPECT_EQ(events[2].at("number"), 1);
    EXPECT_EQ(events[2].at("text"), "Ябълки");
    EXPECT_EQ(events[5].at("outcome"), "done");
    EXPECT_EQ(events[5].at("written"), 3);
    EXPECT_EQ(events[6].at("exitCode"), 0);
    EXPECT_EQ(events[6].at("error"), "");
    const std::string time = events[0].at("time");
    EXPECT_EQ(time.size(), std::string("2026-11-22T10:00:00Z").size());
    const auto next = Events({"write", "--changed", "--scale", "1"}, 0);
    ASSERT_EQ(Names(next), "begin connected scale end");
    EXPECT_EQ(next[0].at("scales"), "1");
    EXPECT_EQ(next[2].at("unchanged"), 3);
}

TEST_F(LogTest, EveryCommandHasItsBeginAndItsEnd) {
    AddDeadScale(1);
    AddToList(2, TModel::S300, "127.0.0.1", 2002, 1, false);
    for (const char* command : {"scales", "articles", "lines", "status", "check"}) {
        const auto events = Events({command}, 0);
        ASSERT_EQ(Names(events), "begin end") << command;
        EXPECT_EQ(events[0].at("command"), command);
    }
    const auto forget = Events({"ledger", "forget", "1"}, 0);
    ASSERT_EQ(Names(forget), "begin end");
    EXPECT_EQ(forget[0].at("command"), "ledger forget");
    EXPECT_EQ(forget[0].at("scales"), "1");
    const auto test = Events({"test"}, 5);
    ASSERT_EQ(Names(test), "begin scale end");
    EXPECT_EQ(test[1].at("outcome"), "not reached");
    EXPECT_EQ(test[2].at("exitCode"), 5);
}

TEST_F(LogTest, AFailureBeforeAnyScaleIsItsEnd) {
    AddDeadScale(1);
    const auto events = Events({"write", "--client-library", "no-such-client"}, 4);
    ASSERT_EQ(Names(events), "begin end");
    EXPECT_EQ(events[1].at("exitCode"), 4);
    EXPECT_NE(std::string(events[1].at("error")).find("no-such-client"), std::string::npos);
}

TEST_F(LogTest, WhatIsNotSentIsTold) {
    AddScale(1);
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    Sql("update PLUES set PLU_SELL_PRICE = 10000 where PLU_NUMB = 102");
    for (const TWords& words : {TWords{"write"}, {"write", "--dry-run"}}) {
        std::vector<nlohmann::json> events = Events(words, 3);
        std::erase_if(events, [](const nlohmann::json& event) {
            return event.at("event") == "connected" || event.at("event") == "written";
        });
        ASSERT_EQ(Names(events), "begin refused leftOut scale end");
        EXPECT_EQ(events[1].at("scale"), 1);
        EXPECT_EQ(events[1].at("number"), 2);
        EXPECT_NE(events[1].at("text"), "");
        EXPECT_EQ(events[2].at("number"), 3);
        EXPECT_EQ(events[2].at("text"), "the barcode is not of exactly 5 characters");
    }
}

TEST_F(LogTest, ANumberThatNoArticleHasIsTold) {
    AddScale(1);
    const auto events = Events({"write", "--plu", "99"}, 3);
    ASSERT_EQ(Names(events), "begin leftOut connected scale end");
    EXPECT_EQ(events[1].at("number"), 99);
    EXPECT_EQ(events[1].at("text"), "no article has this number");
}

TEST_F(LogTest, WithoutProgressEachFailedScaleHasALineOnStandardError) {
    AddDeadScale(1);
    AddScale(2);
    for (const char* option : {"-q", "--no-progress"}) {
        const TRun run = Run({"test", option, "--json"});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.err,
                  "tolvane: scale 1 Щанд 1: " + std::string(run.Scale(1).at("error")) + "\n");
    }
}

// When all else went well; otherwise the first failure is told by the code.
TEST_F(LogTest, ALogThatCannotBeWrittenToItsEndIsAFailure) {
    AddScale(1);
    for (const TWords& words : {TWords{"scales"}, {"test"}}) {
        TWords all = words;
        all.insert(all.end(), {"--json", "--log", kFullDisk});
        const TRun run = Run(all);
        EXPECT_EQ(run.exitCode, 3) << words[0];
        EXPECT_EQ(run.Json().at("exitCode"), 3);
        EXPECT_NE(run.err.find("tolvane: The log could not be written to its end."),
                  std::string::npos)
            << run.err;
    }
    list_.clear();
    AddDeadScale(1);
    EXPECT_EQ(Run({"test", "--log", kFullDisk}).exitCode, 5);
}

}  // namespace
}  // namespace tolvane::test
