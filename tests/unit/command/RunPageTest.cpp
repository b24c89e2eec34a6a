#include "command/RunPage.h"

#include <gtest/gtest.h>

#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using namespace std::chrono_literals;
using TRow = std::vector<TCell>;

TCell Text(const char* text) {
    return std::string(text);
}

// One scale in which all went well, one that refused an article, one that did not answer.
TScaleResults ThreeScales() {
    TScaleResults results;
    results.scales.push_back({.rec = NetworkScale(1, "MEAT"),
                              .exchange = 8250us,
                              .written = 2,
                              .unchanged = 4,
                              .deleted = 1,
                              .leftOut = {{.number = 9, .name = "Milk", .reason = "no barcode"}},
                              .sent = {{.number = 5, .name = "Eggs"},
                                       {.number = 3, .name = "Ham"},
                                       {.number = 8, .name = "", .isDeleted = true}},
                              .duration = 4500ms});
    results.scales.push_back({.rec = NetworkScale(2, "FRUIT"),
                              .outcome = TScaleOutcome::Failed,
                              .ledgerNote = "the clock was set back",
                              .exchange = 12000us,
                              .written = 1,
                              .refused = {{.number = 3, .name = "Ham", .reason = "too dear"}},
                              .sent = {{.number = 5, .name = "Eggs"}},
                              .mayBeProgramming = true,
                              .duration = 1200ms});
    results.scales.push_back({.rec = tolvane::SerialScale(3, "FISH", "COM3"),
                              .outcome = TScaleOutcome::NotReached,
                              .error = "no answer",
                              .pending = 2,
                              .duration = 6000ms});
    return results;
}

const TPageSection* Find(const TPageContent& content, const std::string& title) {
    for (const TPageSection& section : content.sections)
        if (section.title == title) return &section;
    return nullptr;
}

TEST(RunPage, SaysInShortWhatBecameOfIt) {
    EXPECT_EQ(RunPage(ThreeScales(), false).messages,
              (std::vector<std::string>{
                  "1 of 3 scales done, 3 written, 4 unchanged, 1 deleted, 1 refused, 1 left out, "
                  "2 pending.",
                  "These scales may not weigh: 2 FRUIT. tolvane release puts them back to "
                  "weighing."}));
    TScaleResults stopped{.interrupted = true, .deadline = true, .traceFailed = true};
    stopped.scales.push_back({.rec = NetworkScale(1, "A"), .outcome = TScaleOutcome::Stopped});
    EXPECT_EQ(RunPage(stopped, false).messages,
              (std::vector<std::string>{
                  "0 of 1 scale done.",
                  "The run was interrupted; each scale ended with the article in work. The next "
                  "run with --changed goes on.",
                  "The deadline passed; each scale ended with the article in work.",
                  "The trace lacks its end."}));
}

TEST(RunPage, TellsOfEachScaleHowItIsReachedAndWhatBecameOfIt) {
    const TPageContent content = RunPage(ThreeScales(), false);
    const TPageSection* const scales = Find(content, "Scales");
    ASSERT_NE(scales, nullptr);
    const auto number = [](std::int64_t value) { return TCell(value); };
    EXPECT_EQ(
        scales->table.rows,
        (std::vector<TRow>{
            {number(1), Text("MEAT"), Text("TCP 10.0.0.1:100"), Text("done"), number(2), number(4),
             number(1), number(0), number(1), number(0)},
            {number(2), Text("FRUIT"), Text("TCP 10.0.0.2:100"), Text("failed"), number(1),
             number(0), number(0), number(1), number(0), number(0)},
            {number(3), Text("FISH"), Text("COM3, 9600 bit/s, address 0"), Text("not reached"),
             number(0), number(0), number(0), number(0), number(0), number(2)}}));
}

TEST(RunPage, TellsWhyAScaleFailedAndWhyItsLedgerWasNotTrusted) {
    const TPageContent content = RunPage(ThreeScales(), false);
    const TPageSection* const notes = Find(content, "Notes on the scales");
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(
        notes->table.rows,
        (std::vector<TRow>{{TCell(std::int64_t{2}), Text("FRUIT"),
                            Text("1 refused, first 3: too dear; it may not weigh"),
                            Text("the clock was set back")},
                           {TCell(std::int64_t{3}), Text("FISH"), Text("no answer"), Text("")}}));
}

TEST(RunPage, NamesWhatTheScalesDoNotHoldAndWhy) {
    const TPageContent content = RunPage(ThreeScales(), false);
    const TPageSection* const articles =
        Find(content, "Articles that the scales do not hold as they are in the database");
    ASSERT_NE(articles, nullptr);
    EXPECT_EQ(articles->table.rows,
              (std::vector<TRow>{{TCell(std::int64_t{1}), TCell(std::int64_t{9}), Text("Milk"),
                                  Text("left out"), Text("no barcode")},
                                 {TCell(std::int64_t{2}), TCell(std::int64_t{3}), Text("Ham"),
                                  Text("refused"), Text("too dear")}}));
}

TEST(RunPage, DrawsHowLongEachScaleTook) {
    const TPageContent content = RunPage(ThreeScales(), false);
    const TPageSection* const time = Find(content, "Time per scale");
    ASSERT_NE(time, nullptr);
    ASSERT_EQ(time->bars.size(), 3U);
    EXPECT_EQ(time->bars[0].name, "1 MEAT");
    EXPECT_EQ(time->bars[0].seconds, 4.5);
    EXPECT_EQ(time->bars[0].text, "8.3 ms per exchange");
    EXPECT_EQ(time->bars[0].state, "done");
    EXPECT_EQ(time->bars[1].text, "failed, 12.0 ms per exchange");
    EXPECT_EQ(time->bars[2].text, "not reached");
    EXPECT_EQ(time->bars[2].seconds, 6.0);
    EXPECT_EQ(time->bars[2].state, "not reached");
}

TEST(RunPage, ListsEachArticleOnceWithTheScalesThatItWentTo) {
    const TPageContent content = RunPage(ThreeScales(), false);
    const TPageSection* const sent = Find(content, "Articles that were sent");
    ASSERT_NE(sent, nullptr);
    EXPECT_EQ(sent->note, "");
    EXPECT_EQ(sent->table.rows,
              (std::vector<TRow>{{TCell(std::int64_t{3}), Text("Ham"), Text("1"), Text("")},
                                 {TCell(std::int64_t{5}), Text("Eggs"), Text("1, 2"), Text("")},
                                 {TCell(std::int64_t{8}), Text("–"), Text(""), Text("1")}}));
}

TEST(RunPage, SaysThatNothingWasSentAndLeavesOutWhatIsEmpty) {
    TScaleResults results;
    results.scales.push_back({.rec = NetworkScale(1, "A"), .unchanged = 3});
    const TPageContent content = RunPage(results, false);
    EXPECT_EQ(content.messages, std::vector<std::string>{"1 of 1 scale done, 3 unchanged."});
    ASSERT_EQ(content.sections.size(), 3U);
    EXPECT_EQ(content.sections[1].title, "Time per scale");
    EXPECT_EQ(content.sections[2].note, "None.");
}

TEST(RunPage, OfAPlanTellsWhatWouldBeWritten) {
    TScaleResults results;
    results.scales.push_back({.rec = NetworkScale(1, std::string("Щанд"_cp1251)),
                              .pending = 1,
                              .sent = {{.number = 5, .name = std::string("Яйца"_cp1251)}}});
    const TPageContent content = RunPage(results, true);
    EXPECT_EQ(content.messages,
              (std::vector<std::string>{"1 scale, 1 to be written.",
                                        "This is a plan; no scale was touched."}));
    EXPECT_EQ(Find(content, "Time per scale"), nullptr);
    const TPageSection* const sent = Find(content, "Articles that would be written");
    ASSERT_NE(sent, nullptr);
    EXPECT_EQ(sent->table.columns[2].title, "Into scales");
    EXPECT_EQ(sent->table.rows,
              (std::vector<TRow>{{TCell(std::int64_t{5}), Text("Яйца"), Text("1"), Text("")}}));
}

}  // namespace
}  // namespace tolvane::test
