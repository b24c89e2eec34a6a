// What the command line says to people.

#include <gtest/gtest.h>

#include "tests/unit/command/OptionsFixture.h"

namespace tolvane::test {
namespace {

TEST(OptionTexts, HelpBeginsWithThreeExamples) {
    const TCommandLine line;
    const TParsedOptions parsed = line.Parse({"--help"});
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exitCode, TExitCode::Done);
    EXPECT_EQ(parsed.error, "");
    const std::string examples = parsed.output.substr(0, parsed.output.find("Usage:"));
    std::size_t count = 0;
    for (std::size_t at = 0; (at = examples.find("\n  tolvane ", at)) != std::string::npos; ++at)
        ++count;
    EXPECT_EQ(count, 3U) << examples;
    EXPECT_EQ(line.Parse({"-h"}).output, parsed.output);
}

TEST(OptionTexts, HelpNamesEachCommandOptionAndExitCode) {
    const TCommandLine line;
    const std::string help = line.Parse({"--help"}).output;
    for (const char* word : {"check",         "write",           "delete",
                             "test",          "release",         "status",
                             "articles",      "lines",           "scales",
                             "discover",      "ledger",          "--scale",
                             "--ini",         "--config",        "--database",
                             "--user",        "--password-file", "--client-library",
                             "--jobs",        "--deadline",      "--lock-wait",
                             "--json",        "--csv",           "--log",
                             "--trace",       "--no-progress",   "-q,",
                             "-v,",           "--version",       "0    done",
                             "1    internal", "2    usage",      "3    some",
                             "4    database", "5    no scale",   "6    check",
                             "11   another",  "130  interrupted"})
        EXPECT_NE(help.find(word), std::string::npos) << word;
}

TEST(OptionTexts, HelpOfACommandNamesItsOptions) {
    const TCommandLine line;
    const std::string help = line.Parse({"write", "--help"}).output;
    for (const char* word : {"--changed", "--all", "--plu", "--prune", "--dry-run", "--price",
                             "--name1", "--name2", "--max-age", "tolvane --help"})
        EXPECT_NE(help.find(word), std::string::npos) << word;
    EXPECT_NE(line.Parse({"ledger", "forget", "--help"}).output.find("SCALE"), std::string::npos);
}

TEST(OptionTexts, HelpNeedsNoConfiguration) {
    const TCommandLine line;
    EXPECT_EQ(line.Parse({"write", "--help", "--config", "/nowhere/at/all"}).exitCode,
              TExitCode::Done);
}

TEST(OptionTexts, VersionIsOneLine) {
    const TCommandLine line;
    const TParsedOptions parsed = line.Parse({"--version"});
    EXPECT_TRUE(parsed.output.starts_with("tolvane ")) << parsed.output;
    EXPECT_EQ(parsed.output.find('\n'), parsed.output.size() - 1);
    EXPECT_EQ(parsed.exitCode, TExitCode::Done);
}

TEST(OptionTexts, ALineWithoutACommandIsRefused) {
    const TCommandLine line;
    EXPECT_NE(line.Refusal({}), "");
    EXPECT_NE(line.Refusal({"--json"}), "");
    EXPECT_NE(line.Refusal({"ledger"}), "");
    EXPECT_NE(line.Refusal({"ledger", "forget"}).find("SCALE"), std::string::npos);
}

TEST(OptionTexts, AnUnknownWordNamesTheNearest) {
    const TCommandLine line;
    EXPECT_EQ(line.Refusal({"chekc"}), "chekc is unknown; did you mean check?");
    EXPECT_EQ(line.Refusal({"--jobs", "2", "wirte"}), "wirte is unknown; did you mean write?");
    EXPECT_EQ(line.Refusal({"write", "--chagned"}),
              "--chagned is unknown; did you mean --changed?");
    EXPECT_EQ(line.Refusal({"-q", "check", "--dtabase", "x"}),
              "--dtabase is unknown; did you mean --database?");
    EXPECT_EQ(line.Refusal({"ledger", "forgte", "3"}), "forgte is unknown; did you mean forget?");
    EXPECT_EQ(line.Refusal({"check", "something"}), "something is unknown");
}

TEST(OptionTexts, AnOptionOfAnotherCommandIsCalledThat) {
    const TCommandLine line;
    EXPECT_EQ(line.Refusal({"test", "--price", "retail"}), "--price does not belong to test");
}

TEST(OptionTexts, APasswordIsNoArgumentAndIsNotRepeated) {
    const TCommandLine line;
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"check", "--password", "s3cret"},
          {"check", "--password=s3cret"},
          {"--password", "s3cret", "check"}}) {
        const std::string refusal = line.Refusal(words);
        EXPECT_TRUE(refusal.starts_with("--password is unknown")) << refusal;
        EXPECT_EQ(refusal.find("s3cret"), std::string::npos) << refusal;
    }
}

}  // namespace
}  // namespace tolvane::test
