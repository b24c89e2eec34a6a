#include "command/LedgerText.h"

#include <gtest/gtest.h>

#include "tests/unit/command/Shop.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using std::chrono::seconds;

// The checksum of what follows it was computed by another program.
constexpr std::string_view kText = R"({
  "checksum": "0a34fd62d32ff6db",
  "format": 1,
  "saved": "2024-05-01T12:01:30Z",
  "scale": {
    "number": 3,
    "connection": "serial",
    "address": "COM1",
    "port": 0,
    "speed": 19200,
    "busAddress": 7,
    "model": "EVL",
    "encoding": 2
  },
  "choices": {
    "price": "retail",
    "name1": 1,
    "name2": 2
  },
  "reported": {
    "version": "1.04",
    "maxPlu": 4000,
    "labelMode": 1
  },
  "mayBeProgramming": true,
  "lastRun": {
    "start": "2024-05-01T12:00:00Z",
    "end": null,
    "outcome": "running",
    "error": "Везна",
    "written": 1,
    "unchanged": 2,
    "refused": 3,
    "leftOut": 5,
    "pending": 4
  },
  "claims": {
    "7": "0123456789abcdef 2024-05-01T12:00:00Z",
    "12": "ffffffffffffffff 2024-05-01T12:00:01Z"
  }
}
)";

TLedgerContent Content() {
    return {.identity = IdentityOf(SerialScale(), {}),
            .report = Report(),
            .mayBeProgramming = true,
            .lastRun = TLastRun{.start = kNoon,
                                .end = std::nullopt,
                                .outcome = TRunOutcome::Running,
                                .error = std::string("Везна"_cp1251),
                                .written = 1,
                                .unchanged = 2,
                                .refused = 3,
                                .leftOut = 5,
                                .pending = 4},
            .claims = {{7, {0x0123456789abcdef, kNoon}},
                       {12, {0xffffffffffffffff, kNoon + seconds(1)}}},
            .saved = kNoon + seconds(90)};
}

// Empty for a whole ledger.
std::string FaultOf(std::string_view bytes) {
    try {
        ParseLedgerText(bytes);
        return {};
    } catch (const TLedgerDamaged& damaged) {
        return damaged.what();
    } catch (const TLedgerNewer& newer) {
        return newer.what();
    }
}

TEST(LedgerText, IsJsonThatAPersonCanRead) {
    EXPECT_EQ(LedgerText(Content()), kText);
}

TEST(LedgerText, IsReadBack) {
    EXPECT_EQ(ParseLedgerText(kText), Content());
}

TEST(LedgerText, NeedsNeitherAReportNorARunNorClaims) {
    TLedgerContent content{.identity = IdentityOf(TcpScale(), {}),
                           .report = std::nullopt,
                           .lastRun = std::nullopt,
                           .claims = {},
                           .saved = kNoon};
    const std::string text = LedgerText(content);
    EXPECT_TRUE(text.starts_with("{\n  \"checksum\": \"ab42f8e7bb192f40\",\n")) << text;
    EXPECT_EQ(ParseLedgerText(text), content);
}

TEST(LedgerText, HoldsTheNumbersWithoutAClaim) {
    TLedgerContent content = Content();
    content.unsure = {3, 12007};
    const std::string text = LedgerText(content);
    EXPECT_NE(text.find("\"unsure\": [\n    3,\n    12007\n  ]"), std::string::npos) << text;
    EXPECT_EQ(ParseLedgerText(text), content);
}

TEST(LedgerText, HasANameForEachOutcome) {
    constexpr std::pair<TRunOutcome, std::string_view> kNames[] = {
        {TRunOutcome::Running, "running"}, {TRunOutcome::Done, "done"},
        {TRunOutcome::Failed, "failed"},   {TRunOutcome::Stopped, "stopped"},
        {TRunOutcome::Locked, "locked"},   {TRunOutcome::NotReached, "not reached"}};
    for (const auto& [outcome, name] : kNames) {
        EXPECT_EQ(OutcomeName(outcome), name);
        TLedgerContent content = Content();
        content.lastRun->outcome = outcome;
        EXPECT_EQ(ParseLedgerText(LedgerText(content)), content);
    }
}

// Files of the version before: "dead" where no scale was reached, and nothing about articles that
// were left out. The checksum was computed by another program.
TEST(LedgerText, IsReadAsFormerVersionsWroteIt) {
    std::string text(kText);
    const auto replace = [&](std::string_view from, std::string_view to) {
        text.replace(text.find(from), from.size(), to);
    };
    replace("    \"leftOut\": 5,\n", "");
    replace("running", "dead");
    replace("  \"mayBeProgramming\": true,\n", "");
    replace("0a34fd62d32ff6db", "0add1bbceecf338b");
    TLedgerContent content = Content();
    content.mayBeProgramming = false;
    content.lastRun->outcome = TRunOutcome::NotReached;
    content.lastRun->leftOut = 0;
    EXPECT_EQ(ParseLedgerText(text), content);
}

TEST(LedgerText, ShowsEveryByteThatIsNotAsItWas) {
    for (std::size_t at = 0; at < kText.size(); ++at) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string text(kText);
            text[at] = static_cast<char>(static_cast<unsigned char>(text[at]) ^ (1U << bit));
            ASSERT_NE(FaultOf(text), "") << "bit " << bit << " of byte " << at;
        }
    }
}

TEST(LedgerText, ShowsEveryByteThatIsLackingOrTooMuch) {
    for (std::size_t at = 0; at < kText.size(); ++at) {
        const std::string before(kText.substr(0, at));
        ASSERT_NE(FaultOf(before), "") << "cut at " << at;
        // Of two equal bytes side by side either may be the one that is taken out or put in.
        ASSERT_NE(FaultOf(before + std::string(kText.substr(at + 1))), "") << "without " << at;
        ASSERT_NE(FaultOf(before + '0' + std::string(kText.substr(at))), "") << "more at " << at;
        ASSERT_NE(FaultOf(before + std::string(kText.size() - at, '\0')), "") << "zeros at " << at;
    }
    ASSERT_NE(FaultOf(std::string(kText) + '\n'), "");
}

TEST(LedgerText, SaysWhatIsDamaged) {
    EXPECT_EQ(FaultOf(""), "the file is damaged: it is empty");
    EXPECT_EQ(FaultOf("[KASI]\r\n"), "the file is damaged: it does not begin as a ledger does");
    EXPECT_EQ(FaultOf(kText.substr(0, 300)), "the file is damaged: its checksum does not fit");
    EXPECT_EQ(FaultOf("{\n  \"checksum\": \"ba9c0e28518efca1\",\n  \"format\": 0\n}\n"),
              "the file is damaged: its format is unknown");
    EXPECT_EQ(FaultOf("{\n  \"checksum\": \"35789e30920b90c0\",\n  \"format\": 1\n}\n"),
              "the file is damaged: it lacks \"scale\"");
    EXPECT_EQ(FaultOf("{\n  \"checksum\": \"07cc9e07b494e21d\"\n"),
              "the file is damaged: it does not hold what a ledger holds");
}

TEST(LedgerText, OfANewerVersionIsNotDamaged) {
    const std::string text =
        "{\n  \"checksum\": \"63027cb585348451\",\n  \"format\": 2,\n  \"anything\": []\n}\n";
    EXPECT_EQ(FaultOf(text), "the file was made by a newer version of this program (format 2)");
}

}  // namespace
}  // namespace tolvane::test
