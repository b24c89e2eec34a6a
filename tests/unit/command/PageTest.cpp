#include "command/Page.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

TPageSection SectionWith(std::vector<std::vector<TCell>> rows) {
    return {.title = "Scales",
            .table = {.key = "scales",
                      .title = {},
                      .columns = {{"name", "Name"}, {"count", "Count"}, {"outcome", "Outcome"}},
                      .rows = std::move(rows)}};
}

std::string TextOf(TPageSection section) {
    TPage page{.title = "Title"};
    page.sections.push_back(std::move(section));
    return PageText(page);
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Page, IsOneDocumentThatLoadsNothing) {
    const std::string text = PageText({.title = "Report"});
    EXPECT_TRUE(text.starts_with("<!DOCTYPE html>\n<html lang=\"en\">\n"));
    EXPECT_TRUE(text.ends_with("</body>\n</html>\n"));
    EXPECT_TRUE(Has(text, "<meta charset=\"utf-8\">"));
    EXPECT_TRUE(Has(text, "content=\"default-src 'none'; style-src 'unsafe-inline'\""));
    for (const char* part : {"http:", "https:", "<script", "<link", "<img", "url(", "@import"})
        EXPECT_FALSE(Has(text, part)) << part;
}

TEST(Page, SuitsPaperAndBothSchemes) {
    const std::string text = PageText({.title = "Report"});
    EXPECT_TRUE(Has(text, "@media screen and (prefers-color-scheme: dark)"));
    EXPECT_TRUE(Has(text, "@media print"));
    EXPECT_TRUE(Has(text, "<meta name=\"color-scheme\" content=\"light dark\">"));
}

TEST(Page, BeginsWithItsTitleTheVerdictAndTheFacts) {
    const std::string text = PageText({.title = "Report",
                                       .exitCode = TExitCode::NoScaleReached,
                                       .messages = {"0 of 1 scale done.", "Look\nhere."},
                                       .facts = {{"Begun", "today"}, {"Database", ""}}});
    EXPECT_TRUE(Has(text,
                    "<h1>Report</h1>\n"
                    "<div class=\"verdict bad\">\n"
                    "<p class=\"word\">No scale was reached</p>\n"
                    "<p>0 of 1 scale done.</p>\n"
                    "<p>Look\nhere.</p>\n"
                    "</div>\n"
                    "<dl>\n<dt>Begun</dt><dd>today</dd>\n</dl>\n"))
        << text;
}

TEST(Page, HasAVerdictForEachExitCode) {
    const auto verdict = [](TExitCode code) {
        const std::string text = PageText({.exitCode = code});
        const std::size_t at = text.find("<div class=\"verdict ");
        return text.substr(at, text.find("</p>", at) - at);
    };
    const auto expected = [](const std::string& color, const std::string& word) {
        return "<div class=\"verdict " + color + "\">\n<p class=\"word\">" + word;
    };
    EXPECT_EQ(verdict(TExitCode::Done), expected("good", "Done"));
    EXPECT_EQ(verdict(TExitCode::Internal), expected("bad", "Internal error"));
    EXPECT_EQ(verdict(TExitCode::Usage),
              expected("bad", "The options or the configuration do not fit"));
    EXPECT_EQ(verdict(TExitCode::SomeFailed), expected("bad", "Some scales or articles failed"));
    EXPECT_EQ(verdict(TExitCode::Database), expected("bad", "The database was not read"));
    EXPECT_EQ(verdict(TExitCode::NoScaleReached), expected("bad", "No scale was reached"));
    EXPECT_EQ(verdict(TExitCode::ProblemsFound), expected("warn", "Problems found"));
    EXPECT_EQ(verdict(TExitCode::Locked), expected("warn", "Another run works on a scale"));
    EXPECT_EQ(verdict(TExitCode::Interrupted), expected("warn", "Interrupted"));
}

TEST(Page, ShowsATableWithItsNumbersToTheRightAndItsWordsInColor) {
    EXPECT_TRUE(Has(TextOf(SectionWith({{std::string("Щанд"), std::int64_t{7}, std::string("done")},
                                        {std::string("B"), std::int64_t{0}, std::string("locked")},
                                        {std::string("C"), {}, std::string("failed")}})),
                    "<section>\n<h2>Scales</h2>\n<div class=\"wide\"><table>\n"
                    "<thead><tr><th scope=\"col\">Name</th>"
                    "<th scope=\"col\" class=\"number\">Count</th>"
                    "<th scope=\"col\">Outcome</th></tr></thead>\n<tbody>\n"
                    "<tr><td class=\"name\">Щанд</td><td class=\"number\">7</td>"
                    "<td class=\"good\">done</td></tr>\n"
                    "<tr><td class=\"name\">B</td><td class=\"number\">0</td><td "
                    "class=\"warn\">locked</td></tr>\n"
                    "<tr><td class=\"name\">C</td><td></td><td class=\"bad\">failed</td></tr>\n"
                    "</tbody>\n</table></div>\n</section>\n"));
}

TEST(Page, LeavesOutColumnsThatSayNothingAndEmptyTables) {
    const std::string text = TextOf(SectionWith({{std::string("A"), std::int64_t{0}, {}}}));
    EXPECT_TRUE(Has(text, "<tr><th scope=\"col\">Name</th></tr>"));
    EXPECT_TRUE(Has(text, "<tr><td class=\"name\">A</td></tr>"));
    TPageSection empty = SectionWith({});
    empty.note = "None.";
    EXPECT_TRUE(Has(TextOf(empty), "<section>\n<h2>Scales</h2>\n<p>None.</p>\n</section>\n"));
}

TEST(Page, ShowsNoTextAsMarks) {
    const std::string bad = "<script>alert(\"1\")</script>&amp;";
    const std::string good = "&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt;&amp;amp;";
    TPageSection section = SectionWith({{bad, std::int64_t{1}, bad}});
    section.title = bad;
    section.note = bad;
    section.table.columns[0].title = bad;
    section.bars = {{.name = bad, .seconds = 1, .text = bad, .state = bad}};
    const std::string text = PageText({.title = bad,
                                       .messages = {bad},
                                       .facts = {{.name = bad, .value = bad}},
                                       .sections = {section}});
    EXPECT_FALSE(Has(text, "<script"));
    // Title, heading, message, fact (2), section (2), column, cells (2), bar (2).
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(good, at)) != std::string::npos; at += good.size())
        ++count;
    EXPECT_EQ(count, 12U);
}

TEST(Page, IsUtf8WithoutControlCharacters) {
    const std::string text = PageText({.title = std::string("a\0b\x1b[1m\r\t\x7F", 10) + "Щ\xFF"});
    EXPECT_TRUE(Has(text, "<h1>a b [1m   Щ?</h1>")) << text.substr(text.find("<h1>"), 40);
}

TEST(Page, DrawsBarsInProportionToTheLongest) {
    const std::string text =
        TextOf({.title = "Time",
                .bars = {{.name = "1 A", .seconds = 4.0, .text = "", .state = "done"},
                         {.name = "2 B", .seconds = 1.0, .text = "8 ms", .state = "failed"},
                         {.name = "3 C", .seconds = 0.0, .text = "", .state = "locked"}}});
    const std::string svg =
        "<svg viewBox=\"0 0 100 10\" preserveAspectRatio=\"none\" aria-hidden=\"true\"";
    EXPECT_TRUE(Has(text, "<tr><th scope=\"row\">1 A</th><td class=\"picture\">" + svg +
                              "><rect width=\"100.0\" height=\"10\"/></svg></td>"
                              "<td class=\"number\">4.0 s</td><td></td></tr>\n"
                              "<tr><th scope=\"row\">2 B</th><td class=\"picture\">" +
                              svg +
                              " class=\"bad\"><rect width=\"25.0\" height=\"10\"/></svg></td>"
                              "<td class=\"number\">1.0 s</td><td>8 ms</td></tr>\n"
                              "<tr><th scope=\"row\">3 C</th><td class=\"picture\">" +
                              svg +
                              " class=\"warn\"><rect width=\"0.0\" height=\"10\"/></svg></td>"
                              "<td class=\"number\">0.0 s</td><td></td></tr>\n"))
        << text;
}

TEST(Page, DrawsBarsOfNoTime) {
    EXPECT_TRUE(Has(TextOf({.bars = {{.name = "A"}}}), "<rect width=\"0.0\""));
}

TEST(Page, TellsLongTimesInMinutes) {
    EXPECT_EQ(SecondsText(0), "0.0 s");
    EXPECT_EQ(SecondsText(12.34), "12.3 s");
    EXPECT_EQ(SecondsText(59.94), "59.9 s");
    EXPECT_EQ(SecondsText(59.96), "1 min 0 s");
    EXPECT_EQ(SecondsText(200), "3 min 20 s");
    EXPECT_EQ(SecondsText(3601), "60 min 1 s");
}

}  // namespace
}  // namespace tolvane::test
