// Problems of scales, and of their articles.

#include <gtest/gtest.h>

#include "command/InScaleProblems.h"
#include "command/ProblemTable.h"
#include "command/RunLock.h"
#include "command/ScaleProblems.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

const TScaleVersion kVersion = {.maxPlu = 3000, .mode = 2, .text = "1.23"};

// "error 7: the problem | the cure", or "warning" and no number.
std::string Line(const TProblem& problem) {
    return (problem.severity == TSeverity::Error ? "error" : "warning") +
           (problem.number != 0 ? " " + std::to_string(problem.number) : "") + ": " +
           ToUtf8(problem.problem) + " | " + ToUtf8(problem.cure);
}

TEvents Lines(const std::vector<TProblem>& problems) {
    TEvents lines;
    for (const TProblem& problem : problems)
        lines.push_back(Line(problem));
    return lines;
}

std::vector<TListedScale> Listed(const std::vector<TScaleRec>& scales) {
    std::vector<TListedScale> listed;
    for (const TScaleRec& rec : scales)
        listed.push_back({.rec = rec});
    return listed;
}

// A computer that reaches every network and has the ports COM1 to COM9.
TReach Reach() {
    return {.hasRoute = [](std::uint32_t) { return true; },
            .hasSerialPort = [](const std::string& name) { return name.size() == 4; },
            .serialPortOf = [](const TScaleRec& rec) { return rec.TCPAddress.Str(); },
            .linkOf = [](const TScaleRec& rec) { return RunLockName(rec); }};
}

TEvents OfScales(const std::vector<TScaleRec>& scales, const TReach& reach = Reach()) {
    return Lines(ProblemsOfScales(Listed(scales), reach));
}

TScaleRec Evl() {
    TScaleRec rec = NetworkScale(7, "A");
    rec.Encoding = 0;
    return rec;
}

TEvents InScale(const std::vector<TArticle>& articles, const TScaleRec& rec = Evl()) {
    const auto table = TableOf(articles);
    return Lines(
        ProblemsInScale(ArticlesForScale(*table, rec.ScaleNumb, {}, {}), *table, rec, kVersion));
}

TEST(ProblemsOfScales, FindNothingInScalesThatDiffer) {
    EXPECT_EQ(OfScales({NetworkScale(1, "A"), NetworkScale(2, "B"),
                        tolvane::SerialScale(3, "C", "COM1")}),
              TEvents{});
}

TEST(ProblemsOfScales, TellTheSameAddressAndPortHoweverTheyAreWritten) {
    EXPECT_EQ(OfScales({NetworkScale(1, "Meat", "10.0.0.5", 100),
                        NetworkScale(2, "Milk", "10.0.0.05", 100),
                        NetworkScale(3, "Eggs", "10.0.0.5", 101)}),
              TEvents{"error: it has the connection of scale 1 \"Meat\" | give each scale a "
                      "connection of its own"});
}

TEST(ProblemsOfScales, TellTheSameSerialAddressOnly) {
    TScaleRec first = tolvane::SerialScale(1, "Meat", "COM1");
    TScaleRec second = tolvane::SerialScale(2, "Milk", "com1");
    second.ScaleAddr = 9;
    EXPECT_EQ(OfScales({first, second}), TEvents{});
    second.ScaleAddr = first.ScaleAddr;
    EXPECT_EQ(OfScales({first, second}).size(), 1U);
}

// Two names of one device.
TEST(ProblemsOfScales, TellTheSameDeviceUnderTwoNames) {
    TReach reach = Reach();
    reach.linkOf = [](const TScaleRec&) { return "com-/dev/ttyUSB0"; };
    EXPECT_EQ(
        OfScales({tolvane::SerialScale(1, "Meat", "COM1"), tolvane::SerialScale(2, "Milk", "COM2")},
                 reach),
        TEvents{"error: it has the connection of scale 1 \"Meat\" | give each scale a "
                "connection of its own"});
}

TEST(ProblemsOfScales, TellSerialPortsThatAreNotThere) {
    EXPECT_EQ(OfScales({tolvane::SerialScale(1, "Meat", "COM30")}),
              TEvents{"error: this computer has no serial port COM30 | plug it in, or correct the "
                      "scale's port"});
    TReach reach = Reach();
    reach.serialPortOf = [](const TScaleRec&) { return "/dev/ttyUSB7"; };
    EXPECT_EQ(OfScales({tolvane::SerialScale(1, "Meat", "COM1")}, reach),
              TEvents{"error: this computer has no serial port COM1, which is /dev/ttyUSB7 | plug "
                      "it in, or correct the scale's port"});
}

TEST(ProblemsOfScales, WarnOfTheSameNumber) {
    EXPECT_EQ(OfScales({NetworkScale(1, "Meat"), NetworkScale(1, "Milk", "10.0.0.9", 100)}),
              TEvents{"warning: it has the number of scale \"Meat\"; what has changed cannot be "
                      "told, so everything is written each time | give each scale a number of its "
                      "own"});
}

TEST(ProblemsOfScales, TellUnknownModelsSpeedsAndCodeTables) {
    TScaleRec rec = NetworkScale(1, "Meat");
    rec.ScaleType = 17;
    EXPECT_EQ(OfScales({rec}),
              TEvents{"error: model 17 is unknown; it would get price, name, best-before and "
                      "barcode only | choose the model"});
    rec = tolvane::SerialScale(1, "Meat", "COM1");
    rec.BaudRate = 5;
    EXPECT_EQ(OfScales({rec}), TEvents{"error: speed 5 is unknown; it would be spoken to with "
                                       "38400 bit/s | choose the speed"});
    for (const int table : {-1, 3, 258}) {
        rec = NetworkScale(1, "Meat");
        rec.Encoding = table;
        EXPECT_EQ(OfScales({rec}), TEvents{"error: code table " + std::to_string(table) +
                                           " is unknown; the scale would show other letters | "
                                           "choose the code table"});
    }
}

TEST(ProblemsOfScales, TellAddressesThatAreNoneAndNetworksWithoutAWay) {
    EXPECT_EQ(OfScales({NetworkScale(1, "Meat", "scale.local", 100)}),
              TEvents{"error: \"scale.local\" is not an IP address | correct the scale's address"});
    std::vector<std::uint32_t> asked;
    TReach reach = Reach();
    reach.hasRoute = [&](std::uint32_t address) {
        asked.push_back(address);
        return false;
    };
    const auto problems = ProblemsOfScales(
        Listed({NetworkScale(1, "Meat", "10.0.0.5", 100), tolvane::SerialScale(2, "Milk", "COM1")}),
        reach);
    EXPECT_EQ(asked, std::vector<std::uint32_t>{0x0A000005});
    EXPECT_EQ(Lines(problems),
              TEvents{"error: this computer has no route to 10.0.0.5 | check the network, or "
                      "correct the scale's address"});
    EXPECT_EQ(problems[0].scale, 1);
    EXPECT_EQ(problems[0].name, "Meat");
}

// It has no place on the wire that another one could have, too.
TEST(ProblemsOfScales, TellWhyNoRunCanUseAScale) {
    const TListedScale faulty = {.rec = NetworkScale(1, "Meat", "", 0),
                                 .fault = "it has no address",
                                 .cure = "enter the address"};
    const auto problems =
        ProblemsOfScales({faulty, {.rec = NetworkScale(2, "Milk")}, faulty}, Reach());
    EXPECT_EQ(Lines(problems),
              (TEvents{"error: it has no address | enter the address",
                       "warning: it has the number of scale \"Meat\"; what has changed cannot be "
                       "told, so everything is written each time | give each scale a number of its "
                       "own",
                       "error: it has no address | enter the address"}));
    EXPECT_EQ(problems[0].scale, 1);
}

TEST(ProblemsInScale, FindNothingInAnArticleThatFits) {
    EXPECT_EQ(InScale({Goods(7, "Eggs")}), TEvents{});
}

TEST(ProblemsInScale, TellEachReasonToLeaveAnArticleOut) {
    TArticle barcode = Goods(1, "A");
    barcode.barcode = "2201";
    TArticle longBarcode = Goods(2, "A");
    longBarcode.barcode = "220123";
    TArticle free = Goods(3, "A");
    free.retail = 0;
    TArticle unnamed = Goods(4, "");
    TArticle unlabelled = Goods(5, "A");
    unlabelled.labelName = "";
    const std::string cure = "fill the name, or choose another one with --name1 and --name2";
    EXPECT_EQ(InScale({barcode, longBarcode, free, unnamed, unlabelled}),
              (TEvents{"error 1: the barcode is not of exactly 5 characters | give it a barcode of "
                       "5 characters without |",
                       "error 2: the barcode is not of exactly 5 characters | give it a barcode of "
                       "5 characters without |",
                       "error 3: the price is zero | give it the chosen price",
                       "error 4: label name 1 is empty | " + cure,
                       "error 5: label name 2 is empty | " + cure}));
}

TEST(ProblemsInScale, TellPricesThatAScaleCannotHold) {
    TArticle dear = Goods(1, "A");
    dear.retail = 10000;
    TArticle justFits = Goods(2, "A");
    justFits.retail = 9999.99;
    TArticle negative = Goods(3, "A");
    negative.retail = -1;
    TArticle tiny = Goods(4, "A");
    tiny.retail = 0.004;
    TArticle huge = Goods(5, "A");
    huge.retail = 21474836.48;
    EXPECT_EQ(InScale({dear, justFits, negative, tiny, huge}),
              (TEvents{"error 1: the price is above 9999.99, which a scale cannot hold | correct "
                       "the price, or sell it by another unit",
                       "error 3: the price is below zero | correct the price",
                       "error 4: the price is below 0.005, which is zero | correct the price",
                       "error 5: the price is above 9999.99, which a scale cannot hold | correct "
                       "the price, or sell it by another unit"}));
}

TEST(ProblemsInScale, TellWhichOfTwoRowsOrNumbersWins) {
    EXPECT_EQ(InScale({Goods(7, "Eggs"), Goods(7, "Milk")}),
              TEvents{"error 7: it has the number 7 in the scale, as 7 \"Milk\", which wins | give "
                      "one of them another number"});
    EXPECT_EQ(InScale({Goods(12007, "Eggs"), Goods(2007, "Milk")}),
              TEvents{"error 12007: it has the number 2007 in the scale, as 2007 \"Milk\", which "
                      "wins | give one of them another number"});
}

// The scale keeps the other one.
TEST(ProblemsInScale, AnArticleThatCannotBeWrittenOverwritesNothing) {
    TArticle negative = Goods(7, "Milk");
    negative.retail = -1;
    EXPECT_EQ(InScale({Goods(7, "Eggs"), negative}),
              TEvents{"error 7: the price is below zero | correct the price"});
    EXPECT_EQ(InScale({Goods(10000, "Eggs"), Goods(20000, "Milk")}),
              (TEvents{"error 10000: the scale has no such number: it has 1 to 3000 | give it "
                       "another number",
                       "error 20000: the scale has no such number: it has 1 to 3000 | give it "
                       "another number"}));
}

TEST(ProblemsInScale, TellTextsThatAreCut) {
    TArticle article = Goods(7, "A");
    article.comment1 = "1234567890123456789012345678901";  // 31 letters fit
    EXPECT_EQ(InScale({article}), TEvents{});
    article.comment1 = "12345678901234567890123456789012";
    EXPECT_EQ(
        InScale({article}),
        TEvents{"warning 7: Етикет1 is cut to \"1234567890123456789012345678901\" | shorten the "
                "text"});
}

// Table 2 has no sign for №, which is B9; it becomes 79, y.
TEST(ProblemsInScale, TellLettersThatTheCodeTableLacks) {
    TScaleRec rec = Evl();
    rec.Encoding = 2;
    EXPECT_EQ(InScale({Goods(7, "Мляко № 1"_cp1251)}, rec),
              TEvents{"warning 7: the scale's code table lacks \"№\" of Име1; it would show "
                      "\"Мляко y 1\" | use other letters, or choose the code table that the scale "
                      "really has"});
    EXPECT_EQ(InScale({Goods(7, "Мляко № 1"_cp1251)}), TEvents{});
}

TEST(ProblemsInScale, ConcernOnlyTheScalesArticles) {
    TArticle other = Goods(7, "");
    other.forScales = "8";
    EXPECT_EQ(InScale({other}), TEvents{});
}

TEST(ProblemTable, ShowsEachField) {
    const TReportTable table = ProblemTable({{.severity = TSeverity::Warning,
                                              .scale = 3,
                                              .number = 0,
                                              .name = "Щанд"_cp1251.data(),
                                              .problem = "p",
                                              .cure = "c"}});
    ASSERT_EQ(table.rows.size(), 1U);
    const std::vector<TCell> row = {std::string("warning"), std::int64_t{3},  {},
                                    std::string("Щанд"),    std::string("p"), std::string("c")};
    EXPECT_EQ(table.rows[0], row);
    EXPECT_EQ(table.key, "problems");
    EXPECT_EQ(table.columns.size(), row.size());
}

}  // namespace
}  // namespace tolvane::test
