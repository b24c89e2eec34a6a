#include "command/Report.h"

#include <gtest/gtest.h>

#include "command/Columns.h"

namespace tolvane::test {
namespace {

TReport OneTable(std::vector<std::vector<TCell>> rows) {
    return {.command = "check",
            .tables = {{.key = "rows",
                        .title = {},
                        .columns = {{"name", "Name"}, {"count", "Count"}, {"note", "Note"}},
                        .rows = std::move(rows)}}};
}

std::string Format(const TReport& report, TFormat format) {
    return FormatReport(report, format, TExitCode::Done);
}

TEST(Report, AlignsCyrillicByLettersAndNumbersToTheRight) {
    EXPECT_EQ(Format(OneTable({{std::string("Щанд"), std::int64_t{7}, std::string("a")},
                               {std::string("Z"), std::int64_t{1234567}, std::string("b")}}),
                     TFormat::Table),
              "Name    Count  Note\n"
              "Щанд        7  a\n"
              "Z     1234567  b\n");
}

TEST(Report, LeavesOutColumnsThatSayNothing) {
    EXPECT_EQ(Format(OneTable({{std::string("A"), std::int64_t{0}, {}}}), TFormat::Table),
              "Name\nA\n");
    EXPECT_EQ(Format(OneTable({{std::string(), std::int64_t{2}, false}}), TFormat::Table),
              "Name  Count\n          2\n");
}

TEST(Report, ShowsATextOnOneLine) {
    EXPECT_EQ(Format(OneTable({{std::string("a\r\nb\tc\x1b[1m"), {}, {}}}), TFormat::Table),
              "Name\na  b c [1m\n");
}

TEST(Report, PrintsNothingOfAnEmptyTable) {
    EXPECT_EQ(Format(OneTable({}), TFormat::Table), "");
    EXPECT_EQ(Format(OneTable({}), TFormat::Csv), "name,count,note\r\n");
    EXPECT_EQ(Format(OneTable({}), TFormat::Json),
              "{\n  \"command\": \"check\",\n  \"exitCode\": 0,\n  \"rows\": []\n}\n");
    EXPECT_EQ(Format({.command = "check"}, TFormat::Table), "");
    EXPECT_EQ(Format({.command = "check"}, TFormat::Csv), "");
}

TEST(Report, PrintsAllTablesForPeopleAndTheFirstAsCsv) {
    TReport report = OneTable({{std::string("A"), {}, {}}});
    report.tables.push_back(
        {.key = "more", .title = "More", .columns = {{"x", "X"}}, .rows = {{true}}});
    report.tables.push_back({.key = "none", .title = "None", .columns = {{"x", "X"}}, .rows = {}});
    EXPECT_EQ(Format(report, TFormat::Table), "Name\nA\n\nMore\nX\nyes\n");
    EXPECT_EQ(Format(report, TFormat::Csv), "name,count,note\r\nA,,\r\n");
}

TEST(Report, QuotesCsvFieldsThatNeedIt) {
    EXPECT_EQ(Format(OneTable({{std::string("a,b"), 1.5, std::string("say \"x\"")},
                               {std::string("Щанд"), std::int64_t{-3}, true}}),
                     TFormat::Csv),
              "name,count,note\r\n"
              "\"a,b\",1.5,\"say \"\"x\"\"\"\r\n"
              "Щанд,-3,yes\r\n");
}

TEST(Report, KeepsKindsOfValuesInJson) {
    EXPECT_EQ(FormatReport(OneTable({{std::string("a\"\n\\Щ"), 1.5, {}},
                                     {std::string("\xFF"), std::int64_t{7}, false}}),
                           TFormat::Json, TExitCode::SomeFailed),
              "{\n"
              "  \"command\": \"check\",\n"
              "  \"exitCode\": 3,\n"
              "  \"rows\": [\n"
              "    {\n      \"name\": \"a\\\"\\n\\\\Щ\",\n      \"count\": 1.5,\n"
              "      \"note\": null\n    },\n"
              "    {\n      \"name\": \"\xEF\xBF\xBD\",\n      \"count\": 7,\n"
              "      \"note\": false\n    }\n"
              "  ]\n"
              "}\n");
}

TEST(Columns, AreLettersAndATextIsCutAtLetters) {
    EXPECT_EQ(Columns("Щанд 1"), 6U);
    EXPECT_EQ(Fitted("Щанд месо", 9), "Щанд месо");
    EXPECT_EQ(Fitted("Щанд месо", 8), "Щанд ...");
    EXPECT_EQ(Fitted("Щанд", 3), "...");
    EXPECT_EQ(Fitted("Щанд", 2), "..");
}

}  // namespace
}  // namespace tolvane::test
