#include "command/Options.h"

#include <gtest/gtest.h>

#include "tests/unit/command/OptionsFixture.h"

namespace tolvane::test {
namespace {

using std::chrono::seconds;
using TWords = std::vector<std::string>;

TEST(Options, KnowEachCommand) {
    const TCommandLine line;
    const std::pair<TWords, TVerb> verbs[] = {{{"check"}, TVerb::Check},
                                              {{"write"}, TVerb::Write},
                                              {{"delete", "--plu", "7"}, TVerb::Delete},
                                              {{"test"}, TVerb::Test},
                                              {{"release"}, TVerb::Release},
                                              {{"status"}, TVerb::Status},
                                              {{"articles"}, TVerb::Articles},
                                              {{"lines"}, TVerb::Lines},
                                              {{"scales"}, TVerb::Scales},
                                              {{"discover"}, TVerb::Discover},
                                              {{"ledger", "forget", "3"}, TVerb::LedgerForget}};
    for (const auto& [words, verb] : verbs)
        EXPECT_EQ(line.Options(words).verb, verb) << words[0];
    EXPECT_EQ(line.Options({"ledger", "forget", "Сирена 3"}).forget, "Сирена 3");
}

TEST(Options, HaveTheseDefaults) {
    TCommandLine line;
    line.variables["HOME"] = "/home/shop";
    const TCommandOptions options = line.Options({"write"});
    EXPECT_TRUE(options.scales.empty());
    EXPECT_EQ(options.ini, "/etc/tolvane/Tolvane.ini");
    EXPECT_EQ(options.state, "/home/shop/.local/state/tolvane");
    EXPECT_EQ(options.database, "");
    EXPECT_EQ(options.udpPort, 1001);
    EXPECT_EQ(options.jobs, 0U);
    EXPECT_FALSE(options.deadline);
    EXPECT_EQ(options.lockWait, seconds(0));
    EXPECT_EQ(options.format, TFormat::Table);
    EXPECT_TRUE(options.progress);
    EXPECT_FALSE(options.quiet || options.verbose || options.changedOnly || options.dryRun ||
                 options.prune || options.everything || options.createIndex);
    EXPECT_FALSE(options.price || options.name1 || options.name2 || options.numbers ||
                 options.show);
    EXPECT_EQ(options.maxAge, std::chrono::days(7));
}

TEST(Options, TakeEachCommonOptionBeforeAndBehindTheCommand) {
    const TCommandLine line;
    const TWords common = {"--ini=a b.ini",
                           "--state",
                           "Състояние",
                           "--database",
                           "srv/3050:/d.fdb",
                           "--user",
                           "SYSDBA",
                           "--password-file",
                           "pw",
                           "--client-library",
                           "l.so",
                           "--serial",
                           "com1=/dev/ttyUSB0,COM2=/dev/ttyUSB1",
                           "--udp-local-port",
                           "0",
                           "--jobs",
                           "4",
                           "--deadline",
                           "30m",
                           "--lock-wait",
                           "5",
                           "--log",
                           "l.json",
                           "--trace",
                           "t.pcapng",
                           "--csv",
                           "--no-progress",
                           "-v"};
    TWords before = common;
    before.emplace_back("test");
    TWords behind = {"test"};
    behind.insert(behind.end(), common.begin(), common.end());
    for (const TWords& words : {before, behind}) {
        const TCommandOptions options = line.Options(words);
        EXPECT_EQ(options.verb, TVerb::Test);
        EXPECT_EQ(options.ini, "a b.ini");
        EXPECT_EQ(options.state, u8"Състояние");
        EXPECT_EQ(options.database, "srv/3050:/d.fdb");
        EXPECT_EQ(options.user, "SYSDBA");
        EXPECT_EQ(options.passwordFile, "pw");
        EXPECT_EQ(options.clientLibrary, "l.so");
        EXPECT_EQ(options.serialPorts, (std::map<std::string, std::string>{
                                           {"COM1", "/dev/ttyUSB0"}, {"COM2", "/dev/ttyUSB1"}}));
        EXPECT_EQ(options.udpPort, 0);
        EXPECT_EQ(options.jobs, 4U);
        EXPECT_EQ(options.deadline, seconds(1800));
        EXPECT_EQ(options.lockWait, seconds(5));
        EXPECT_EQ(options.log, "l.json");
        EXPECT_EQ(options.trace, "t.pcapng");
        EXPECT_EQ(options.format, TFormat::Csv);
        EXPECT_FALSE(options.progress);
        EXPECT_TRUE(options.verbose);
    }
}

TEST(Options, ChooseTheDataFormat) {
    const TCommandLine line;
    EXPECT_EQ(line.Options({"check", "--json"}).format, TFormat::Json);
    EXPECT_EQ(line.Options({"check", "--csv"}).format, TFormat::Csv);
    EXPECT_NE(line.Refusal({"check", "--csv", "--json"}).find("--csv"), std::string::npos);
    EXPECT_NE(line.Refusal({"check", "-q", "-v"}).find("--verbose"), std::string::npos);
}

TEST(Options, NameAReportOfARunOrACheckOnly) {
    const TCommandLine line;
    EXPECT_EQ(line.Options({"write", "--report", "отчет.html"}).report, u8"отчет.html");
    EXPECT_EQ(line.Options({"check", "--report", "r.html"}).report, "r.html");
    EXPECT_TRUE(line.Options({"write"}).report.empty());
    EXPECT_EQ(line.Refusal({"test", "--report", "r.html"}), "--report does not belong to test");
    EXPECT_NE(line.Refusal({"write", "--report", ""}).find("--report"), std::string::npos);
}

TEST(Options, ShowNoProgressWhenTheyAreQuiet) {
    const TCommandLine line;
    EXPECT_FALSE(line.Options({"write", "-q"}).progress);
    EXPECT_TRUE(line.Options({"write", "-q"}).quiet);
}

TEST(Options, TakeScalesByNumberAndByNameWithBlanksAndCyrillic) {
    const TCommandLine line;
    const TWords scales = {"3", "Щанд месо", "7,8"};
    EXPECT_EQ(
        line.Options({"write", "--scale", "3", "--scale", "Щанд месо", "--scale", "7,8"}).scales,
        scales);
    EXPECT_EQ(line.Options({"--scale", "3", "write"}).scales, TWords{"3"});
    EXPECT_EQ(line.Options({"--scale", "3", "write"}).verb, TVerb::Write);
}

// What the configuration says of every run is no mistake there.
TEST(Options, NameNoScaleForASearch) {
    TCommandLine line;
    EXPECT_EQ(line.Refusal({"discover", "--scale", "3"}),
              "discover: it asks everybody in the network, whatever is listed; leave out --scale");
    line.variables["TOLVANE_SCALE"] = "3";
    EXPECT_TRUE(line.Options({"discover"}).scales.empty());
}

TEST(Options, TakeTheChoicesOfAWrite) {
    const TCommandLine line;
    const TCommandOptions options =
        line.Options({"write", "--changed", "--prune", "--dry-run", "--price", "wholesale",
                      "--name1", "ecr", "--name2", "number", "--max-age", "2d"});
    EXPECT_TRUE(options.changedOnly && options.prune && options.dryRun);
    EXPECT_EQ(options.price, 1);
    EXPECT_EQ(options.name1, 0);
    EXPECT_EQ(options.name2, 3);
    EXPECT_EQ(options.maxAge, seconds(172800));
    EXPECT_EQ(line.Options({"lines", "--price", "retail"}).price, 0);
    EXPECT_EQ(line.Options({"check", "--name1", "name"}).name1, 1);
    EXPECT_EQ(line.Options({"status", "--name2", "label"}).name2, 2);
    EXPECT_FALSE(line.Options({"write", "--all"}).changedOnly);
}

TEST(Options, RefuseChoicesThatContradictEachOther) {
    const TCommandLine line;
    EXPECT_NE(line.Refusal({"write", "--all", "--changed"}), "");
    EXPECT_NE(line.Refusal({"write", "--all", "--plu", "7"}), "");
    EXPECT_NE(line.Refusal({"write", "--prune", "--plu", "7"}), "");
    EXPECT_NE(line.Refusal({"delete", "--everything", "--yes", "--plu", "7"}), "");
    EXPECT_TRUE(line.Options({"write", "--changed", "--plu", "7"}).changedOnly);
}

TEST(Options, TakeSeveralArticles) {
    const TCommandLine line;
    const std::set<std::int32_t> numbers = {5, 7, 12007};
    EXPECT_EQ(line.Options({"write", "--plu", "7", "5", "--plu=12007"}).numbers, numbers);
    EXPECT_EQ(line.Options({"write", "--plu", "7,5,12007", "--dry-run"}).numbers, numbers);
    EXPECT_EQ(line.Options({"check", "--show", "7"}).show, 7);
    EXPECT_TRUE(line.Options({"check", "--create-index"}).createIndex);
    EXPECT_EQ(line.Refusal({"write", "--plu", "0"}), "--plu: 0 is below 1");
    EXPECT_NE(line.Refusal({"write", "--plu", "7", "x"}).find("x"), std::string::npos);
}

TEST(Options, DeleteOnlyWhatIsNamedAndEverythingOnlyWithAYes) {
    const TCommandLine line;
    EXPECT_EQ(line.Refusal({"delete"}),
              "delete: say which articles: --plu N, or --everything --yes");
    EXPECT_EQ(line.Refusal({"delete", "--everything"}),
              "delete: --everything deletes every article of the scales; say --yes, too");
    EXPECT_TRUE(line.Options({"delete", "--everything", "--yes"}).everything);
    EXPECT_EQ(line.Options({"delete", "--plu", "7"}).numbers, (std::set<std::int32_t>{7}));
}

TEST(Options, ReadTimes) {
    const TCommandLine line;
    const std::pair<const char*, int> times[] = {{"0", 0},      {"90", 90},   {"90s", 90},
                                                 {"30m", 1800}, {"2h", 7200}, {"7d", 604800}};
    for (const auto& [text, time] : times)
        EXPECT_EQ(line.Options({"write", "--deadline", text}).deadline, seconds(time)) << text;
    EXPECT_EQ(line.Options({"write", "--deadline", "10000d"}).deadline, seconds(864000000));
    for (const char* text :
         {"x", "s", "5x", "5 m", "-5", "+5", "1.5h", "5M", "10001d", "9999999999999999999"})
        EXPECT_EQ(
            line.Refusal({"write", "--lock-wait", text}),
            "--lock-wait: \"" + std::string(text) + "\" is not a time; write 90s, 30m, 2h or 7d");
}

TEST(Options, RefuseBadValuesByTheirOption) {
    const TCommandLine line;
    for (const TWords& words :
         {TWords{"--jobs", "0"}, TWords{"--jobs", "1001"}, TWords{"--jobs", "x"},
          TWords{"--udp-local-port", "65536"}, TWords{"--udp-local-port", "-1"},
          TWords{"--price", "cheap"}, TWords{"--name1", "first"}, TWords{"--serial", "COM1"},
          TWords{"--serial", "=/dev/ttyS0"}, TWords{"--serial", "COM1="}}) {
        const std::string refusal = line.Refusal({"write", words[0], words[1]});
        EXPECT_NE(refusal.find(words[0]), std::string::npos) << refusal;
        EXPECT_EQ(refusal.find("unknown"), std::string::npos) << refusal;
    }
}

TEST(Options, RefuseEmptyValues) {
    const TCommandLine line;
    EXPECT_EQ(line.Refusal({"write", "--password-file", ""}),
              "--password-file: its value is empty");
    EXPECT_EQ(line.Refusal({"write", "--password-file="}), "--password-file: its value is empty");
    EXPECT_EQ(line.Refusal({"write", "--database=", "--csv"}), "--database: its value is empty");
}

TEST(Options, OfOneLineDoNotInfluenceAnother) {
    const TCommandLine line;
    line.Options({"write", "--changed", "--plu", "7", "--scale", "3", "--json", "--price",
                  "wholesale", "--serial", "COM1=/dev/ttyS0"});
    line.Refusal({"write", "--jobs", "0"});
    const TCommandOptions options = line.Options({"write"});
    EXPECT_FALSE(options.changedOnly || options.numbers || options.price);
    EXPECT_TRUE(options.scales.empty() && options.serialPorts.empty());
    EXPECT_EQ(options.format, TFormat::Table);
}

}  // namespace
}  // namespace tolvane::test
