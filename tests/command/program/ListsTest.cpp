#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <thread>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

using ListsTest = TProgramTest;

// A device that every computer of the system has, in place of a serial port.
#ifdef _WIN32
constexpr const char* kDevice = "NUL";
#else
constexpr const char* kDevice = "/dev/null";
#endif

TEST_F(ListsTest, TheScalesAreListedAsTheyAreConfigured) {
    AddToList(3, TModel::Evl, "COM5", 1001, 0);
    AddToList(7, TModel::S300, "127.0.0.1", 2001, 1, false);
    AddToList(9, TModel::Ets, "127.0.0.1", 1001, 2);
    const TRun run = Run({"scales", "--serial", std::string("COM5=") + kDevice, "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    ASSERT_EQ(run.Rows().size(), 3U);
    EXPECT_EQ(run.Scale(3).at("name"), "Щанд 3");
    EXPECT_EQ(run.Scale(3).at("model"), "EVL");
    EXPECT_EQ(run.Scale(3).at("connection"), "COM5, 115200 bit/s, address 0");
    EXPECT_EQ(run.Scale(3).at("encoding"), "PC-866");
    EXPECT_EQ(run.Scale(3).at("checked"), true);
    EXPECT_EQ(run.Scale(7).at("model"), "S300");
    EXPECT_EQ(run.Scale(7).at("connection"), "TCP 127.0.0.1:2001");
    EXPECT_EQ(run.Scale(7).at("checked"), false);
    EXPECT_EQ(run.Scale(9).at("model"), "ETS");
    EXPECT_EQ(run.Scale(9).at("connection"), "UDP 127.0.0.1");
    EXPECT_EQ(run.Json().at("problems").size(), 0U);
}

TEST_F(ListsTest, WhatIsWrongWithTheScalesIsToldWithItsCure) {
    AddToList(1, TModel::S300, "127.0.0.1", 2001, 1);
    AddToList(2, TModel::S300, "127.0.0.1", 2001, 1);
    const TRun run = Run({"scales", "--json"});
    EXPECT_EQ(run.exitCode, 6);
    const auto problems = run.Json().at("problems");
    ASSERT_EQ(problems.size(), 1U) << problems;
    EXPECT_EQ(problems[0].at("scale"), 2);
    EXPECT_EQ(problems[0].at("problem"), "it has the connection of scale 1 \"Щанд 1\"");
    EXPECT_EQ(problems[0].at("cure"), "give each scale a connection of its own");
}

TEST_F(ListsTest, OnlyTheNamedScalesAreListed) {
    AddToList(1, TModel::S300, "127.0.0.1", 2001, 1);
    AddToList(2, TModel::S300, "127.0.0.1", 2001, 1);
    const TRun run = Run({"scales", "--scale", "2", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    ASSERT_EQ(run.Rows().size(), 1U);
    EXPECT_EQ(run.Rows()[0].at("number"), 2);
    EXPECT_EQ(Run({"scales", "--scale", "9"}).exitCode, 2);
}

TEST_F(ListsTest, ASerialPortThatIsNotThereIsTold) {
    AddToList(3, TModel::Evl, "COM200", 1001, 0);
    const TRun run = Run({"scales", "--json"});
    EXPECT_EQ(run.exitCode, 6);
    const auto problems = run.Json().at("problems");
    ASSERT_EQ(problems.size(), 1U) << problems;
    const std::string problem = problems[0].at("problem");
    EXPECT_TRUE(problem.starts_with("this computer has no serial port COM200")) << problem;
}

// Both would be written to the first one.
TEST_F(ListsTest, TwoNamesOfOneSerialPortAreTold) {
    AddToList(3, TModel::Evl, "COM5", 1001, 0);
    AddToList(4, TModel::Evl, "COM6", 1001, 0);
    const std::string device = kDevice;
    const TRun run =
        Run({"scales", "--serial", "COM5=" + device, "--serial", "COM6=" + device, "--json"});
    EXPECT_EQ(run.exitCode, 6);
    const auto problems = run.Json().at("problems");
    ASSERT_EQ(problems.size(), 1U) << problems;
    EXPECT_EQ(problems[0].at("problem"), "it has the connection of scale 3 \"Щанд 3\"");
}

TEST_F(ListsTest, TheArticlesOfAScaleAreListed) {
    AddDeadScale(1);
    const TRun run = Run({"articles", "--scale", "1", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(run.Rows("articles").size(), 3U) << "not 4, which is for scale 2";
    EXPECT_EQ(Run({"articles", "--scale", "9"}).exitCode, 2);
}

TEST_F(ListsTest, TheArticlesAreListedWithAllTheirFields) {
    const TRun run = Run({"articles", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const auto rows = run.Rows("articles");
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].at("PLU_NUMB"), 101);
    EXPECT_EQ(rows[0].at("PLU_SCALE_NUMB"), 1);
    EXPECT_EQ(rows[0].at("PLU_NAME"), "Ябълки");
    EXPECT_EQ(rows[0].at("PLU_BARCODE"), "20001");
    EXPECT_EQ(rows[0].at("PLU_SELL_PRICE"), 2.5);
    EXPECT_EQ(rows[0].at("LABEL_COMMENT1"), "Произход: България");
    EXPECT_EQ(rows[3].at("PLU_NAME"), "Домати");
}

TEST_F(ListsTest, TheLinesOfEachScaleAreListedWithWhatIsLeftOut) {
    AddDeadScale(1);
    AddDeadScale(2);
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 102");
    const TRun run = Run({"lines", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const auto rows = run.Rows("lines");
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[0].at("scale"), 1);
    EXPECT_EQ(rows[0].at("number"), 1);
    EXPECT_NE(std::string(rows[0].at("line")).find("Ябълки"), std::string::npos);
    EXPECT_EQ(rows[0].at("leftOut"), "");
    EXPECT_EQ(rows[1].at("number"), 2);
    EXPECT_EQ(rows[1].at("line"), "");
    EXPECT_EQ(rows[1].at("leftOut"), "the barcode is not of exactly 5 characters");
    EXPECT_EQ(rows[2].at("number"), 3);
    EXPECT_EQ(rows[5].at("scale"), 2);
    EXPECT_EQ(rows[5].at("number"), 4);
}

TEST_F(ListsTest, LinesThatWouldNotBeWrittenAreListedWithTheReason) {
    AddDeadScale(1);
    Sql("update PLUES set PLU_SELL_PRICE = 10000 where PLU_NUMB = 101");
    Sql("update PLUES set PLU_SELL_PRICE = 0.004 where PLU_NUMB = 102");
    Sql("update PLUES set PLU_SCALE_NUMB = 0 where PLU_NUMB = 103");
    Sql("update PLUES set PLU_FORSCALES = '1' where PLU_NUMB = 104");
    const auto rows = Run({"lines", "--json"}).Rows("lines");
    std::map<std::string, std::string> reasons;
    for (const auto& row : rows)
        reasons[row.at("name")] = row.at("leftOut");
    const std::map<std::string, std::string> expected = {
        {"Ябълки", "the price is above 9999.99, which a scale cannot hold"},
        {"Круши", "the price is below 0.005, which is zero"},
        {"Грозде", "the scale has no such number: it has 1 to 65535"},
        {"Домати", ""}};
    EXPECT_EQ(reasons, expected);
}

TEST_F(ListsTest, OfLinesWithOneNumberTheLastIsWritten) {
    AddDeadScale(1);
    Sql("update PLUES set PLU_SCALE_NUMB = 1 where PLU_NUMB = 102");
    const auto rows = Run({"lines", "--json"}).Rows("lines");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].at("leftOut"), "another article has the number 1 in this scale, too");
    EXPECT_EQ(rows[1].at("leftOut"), "");
}

// Who answers depends on the network of the computer; each row is complete.
TEST_F(ListsTest, TheModulesThatAnswerAreListed) {
    const TRun run = RunBare({"discover", "--json"});
    ASSERT_TRUE(run.Rows("modules").is_array());
    const bool isAnswered = !run.Rows("modules").empty();
    // Another search may have its port, or there is no network.
    const bool couldAsk = run.err.empty() || run.err == "No network module has answered.\n";
    EXPECT_EQ(run.exitCode, couldAsk ? 0 : isAnswered ? 3 : 5) << run.err;
    EXPECT_TRUE(isAnswered || !run.err.empty());
    for (const auto& row : run.Rows("modules")) {
        EXPECT_NE(row.at("address"), "");
        EXPECT_TRUE(row.at("kind") == "UDP" || row.at("kind") == "TCP") << row;
    }
}

class TakenPortTest : public ListsTest {
protected:
    // Another search of this computer may have it.
    TakenPortTest() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        holder_.open(asio::ip::udp::v4());
        asio::error_code error;
        do {
            holder_.bind({asio::ip::udp::v4(), 5001}, error);
        } while (error && std::chrono::steady_clock::now() < end);
        if (error) throw std::system_error(error);
    }

    asio::io_context context_;
    asio::ip::udp::socket holder_{context_};
};

TEST_F(TakenPortTest, ASearchThatCannotAskSaysWhyAndFails) {
    const TRun run = RunBare({"discover", "-q", "--json"});
    EXPECT_EQ(run.exitCode, run.Rows("modules").empty() ? 5 : 3);
    // A computer without any network says that before.
    EXPECT_NE(run.err.find("tolvane: UDP port 5001 cannot be opened: "), std::string::npos)
        << run.err;
    EXPECT_TRUE(run.err.ends_with(
        ". End the program that has it, such as another search, and search again.\n"))
        << run.err;
}

}  // namespace
}  // namespace tolvane::test
