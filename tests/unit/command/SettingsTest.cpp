// What variables and the configuration file add to the command line.

#include "command/Settings.h"

#include <gtest/gtest.h>

#include "tests/unit/command/OptionsFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using std::chrono::seconds;

TEST(Settings, AFlagBeatsAVariableBeatsTheFileBeatsTheDefault) {
    TCommandLine line;
    const std::string config = line.Config("[tolvane]\r\nlock-wait = 1\r\n");
    EXPECT_EQ(line.Options({"write"}).lockWait, seconds(0));
    EXPECT_EQ(line.Options({"write", "--config", config}).lockWait, seconds(1));
    line.variables["TOLVANE_LOCK_WAIT"] = "2";
    EXPECT_EQ(line.Options({"write", "--config", config}).lockWait, seconds(2));
    EXPECT_EQ(line.Options({"write", "--config", config, "--lock-wait", "3"}).lockWait, seconds(3));
    EXPECT_EQ(line.Options({"write", "--lock-wait=3"}).lockWait, seconds(3));
}

TEST(Settings, ReachEachOptionWithAValue) {
    TCommandLine line;
    line.variables = {{"TOLVANE_SCALE", "3,7"},        {"TOLVANE_INI", "i"},
                      {"TOLVANE_STATE", "s"},          {"TOLVANE_DATABASE", "d"},
                      {"TOLVANE_USER", "u"},           {"TOLVANE_PASSWORD_FILE", "p"},
                      {"TOLVANE_CLIENT_LIBRARY", "c"}, {"TOLVANE_SERIAL", "COM1=x"},
                      {"TOLVANE_JOBS", "2"},           {"TOLVANE_PRICE", "wholesale"},
                      {"TOLVANE_DEADLINE", "1m"},      {"TOLVANE_LOG", "l"},
                      {"TOLVANE_TRACE", "t"},          {"TOLVANE_MAX_AGE", "1d"},
                      {"TOLVANE_NAME1", "ecr"},        {"TOLVANE_NAME2", "ecr"},
                      {"TOLVANE_UDP_LOCAL_PORT", "0"}};
    const TCommandOptions options = line.Options({"write"});
    EXPECT_EQ(options.scales, (std::vector<std::string>{"3,7"}));
    EXPECT_EQ(options.ini, "i");
    EXPECT_EQ(options.state, "s");
    EXPECT_EQ(options.database, "d");
    EXPECT_EQ(options.user, "u");
    EXPECT_EQ(options.passwordFile, "p");
    EXPECT_EQ(options.clientLibrary, "c");
    EXPECT_EQ(options.serialPorts.at("COM1"), "x");
    EXPECT_EQ(options.jobs, 2U);
    EXPECT_EQ(options.price, 1);
    EXPECT_EQ(options.deadline, seconds(60));
    EXPECT_EQ(options.log, "l");
    EXPECT_EQ(options.trace, "t");
    EXPECT_EQ(options.maxAge, seconds(86400));
    EXPECT_EQ(options.name1, 0);
    EXPECT_EQ(options.name2, 0);
    EXPECT_EQ(options.udpPort, 0);
}

TEST(Settings, NameTheReportOfThoseCommandsThatMakeOne) {
    TCommandLine line;
    line.variables = {{"TOLVANE_REPORT", "r.html"}};
    EXPECT_EQ(line.Options({"check"}).report, "r.html");
    EXPECT_EQ(line.Options({"write", "--report", "own.html"}).report, "own.html");
    EXPECT_TRUE(line.Options({"test"}).report.empty());
}

TEST(Settings, AreLeftOutWhereACommandHasNoUseForThem) {
    TCommandLine line;
    line.variables = {{"TOLVANE_PRICE", "wholesale"}, {"TOLVANE_MAX_AGE", "1d"}};
    EXPECT_FALSE(line.Options({"test"}).price);
    // A value that is a command's name makes no difference.
    EXPECT_EQ(line.Options({"test", "--log", "write"}).log, "write");
}

TEST(Settings, EmptyOnesSayNothing) {
    TCommandLine line;
    line.variables = {{"TOLVANE_LOCK_WAIT", ""}, {"TOLVANE_CONFIG", ""}};
    const std::string config = line.Config("[tolvane]\nlock-wait = 1\nuser =\n");
    EXPECT_EQ(line.Options({"write", "--config", config}).lockWait, seconds(1));
    EXPECT_EQ(line.Options({"write", "--config", config}).user, "");
}

TEST(Settings, FlagsAndSingleRunsAreNone) {
    TCommandLine line;
    line.variables = {{"TOLVANE_JSON", "1"},       {"TOLVANE_QUIET", "1"}, {"TOLVANE_PLU", "7"},
                      {"TOLVANE_EVERYTHING", "1"}, {"TOLVANE_YES", "1"},   {"TOLVANE_SHOW", "7"},
                      {"TOLVANE_PASSWORD", "x"},   {"TOLVANE_PRUNE", "1"}};
    const TCommandOptions options = line.Options({"write"});
    EXPECT_EQ(options.format, TFormat::Table);
    EXPECT_FALSE(options.quiet || options.numbers || options.everything || options.prune);
    EXPECT_NE(line.Refusal({"delete"}), "");
    EXPECT_NE(line.Parse({"--help"}).output.find("Flags such as --json stand only here"),
              std::string::npos);
}

TEST(Settings, TheFileMayBeNamedByAVariable) {
    TCommandLine line;
    line.variables["TOLVANE_CONFIG"] = line.Config("[tolvane]\njobs=3\n");
    EXPECT_EQ(line.Options({"write"}).jobs, 3U);
}

TEST(Settings, TheFileIsOfCodePage1251OrMarkedUtf8) {
    const TCommandLine line;
    const std::string name = "Щанд месо";
    EXPECT_EQ(line.Options({"write", "--config", line.Config("[tolvane]\nscale=" + FromUtf8(name))})
                  .scales.at(0),
              name);
    EXPECT_EQ(
        line.Options({"write", "--config", line.Config("\xEF\xBB\xBF[tolvane]\nscale=" + name)})
            .scales.at(0),
        name);
}

TEST(Settings, AFileThatIsNamedHasToBeThere) {
    TCommandLine line;
    const std::string missing = (line.folder / "none.conf").string();
    const std::string text = "There is no configuration file " + missing + ".";
    EXPECT_EQ(line.Refusal({"write", "--config", missing}), text);
    line.variables["TOLVANE_CONFIG"] = missing;
    EXPECT_EQ(line.Refusal({"write"}), text);
}

TEST(Settings, AFileWhoseSettingsStandInNoSectionIsRefused) {
    const TCommandLine line;
    for (const char* text : {"jobs=3\n", "[Tolvan]\njobs=3\n", "; a comment\n x\n"}) {
        const std::string config = line.Config(text);
        EXPECT_EQ(line.Refusal({"write", "--config", config}),
                  "The configuration file " + config +
                      " has no section [tolvane], in which the settings stand.");
    }
    for (const char* text : {"", "\r\n", " ; jobs=3\n# jobs=3\n", "[tolvane]", "[TOLVANE]\n"})
        EXPECT_EQ(line.Options({"write", "--config", line.Config(text)}).jobs, 0U) << text;
}

TEST(Settings, AFileThatCannotBeReadIsToldInEnglish) {
    const TCommandLine line;
    const std::string folder = line.folder.Path().string();
    const std::string refusal = line.Refusal({"write", "--config", folder});
    EXPECT_TRUE(refusal.starts_with("The configuration file " + folder + " cannot be read: "))
        << refusal;
}

TEST(Settings, AnUnknownOneIsRefusedAndNamesTheNearest) {
    const TCommandLine line;
    const std::string config = line.Config("[tolvane]\n; a comment\n# another\nlock_wait=5\n");
    EXPECT_EQ(line.Refusal({"write", "--config", config}),
              "The configuration file " + config +
                  " holds an unknown setting: lock_wait. Did you mean lock-wait?");
    line.Config("[tolvane]\njson=1\n");
    EXPECT_EQ(line.Refusal({"test", "--config", config}),
              "The configuration file " + config + " holds an unknown setting: json.");
    line.Config("[tolvane]\nLock-Wait=5\n[other]\nanything=1\n");
    EXPECT_EQ(line.Options({"write", "--config", config}).lockWait, seconds(5));
}

TEST(Settings, AnUnknownOneIsNamedWithoutItsControlCharacters) {
    using namespace std::string_literals;
    const TCommandLine line;
    const std::string config = line.Config("[tolvane]\na\0b\x1B[31m\tc=5\n"s);
    EXPECT_EQ(line.Refusal({"write", "--config", config}),
              "The configuration file " + config + " holds an unknown setting: a b [31m c.");
}

TEST(Settings, ABadValueNamesWhereItComesFrom) {
    TCommandLine line;
    const std::string config = line.Config("[tolvane]\ndeadline=soon\n");
    EXPECT_EQ(line.Refusal({"write", "--config", config}),
              "--deadline: \"soon\" is not a time; write 90s, 30m, 2h or 7d (" + config + ")");
    line.variables["TOLVANE_JOBS"] = "none";
    const std::string refusal = line.Refusal({"write"});
    EXPECT_NE(refusal.find("--jobs"), std::string::npos) << refusal;
    EXPECT_TRUE(refusal.ends_with(" (TOLVANE_JOBS)")) << refusal;
}

}  // namespace
}  // namespace tolvane::test
