#include "tests/command/program/ProgramTest.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

class OptionsTest : public TProgramTest {
protected:
    // The numbers of the scales that a command works with.
    std::vector<int> Chosen(const TWords& words) {
        const TRun run = Run(words);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        std::vector<int> numbers;
        for (const auto& row : run.Rows())
            numbers.push_back(row.at("number"));
        return numbers;
    }
    // Ends with 2, says this, and prints no data.
    void ExpectRefused(const TWords& words, const std::string& text) {
        const TRun run = Run(words);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
};

TEST_F(OptionsTest, TheHelpBeginsWithThreeExamples) {
    const TRun run = RunBare({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    const std::size_t examples = run.out.find("Examples:\n  tolvane check ");
    ASSERT_LT(examples, 100U) << run.out;
    EXPECT_NE(run.out.find("\n  tolvane write --changed ", examples), std::string::npos);
    EXPECT_NE(run.out.find("\n  tolvane status --json ", examples), std::string::npos);
}

TEST_F(OptionsTest, EachCommandHasHelp) {
    for (const char* command : {"check", "write", "delete", "test", "release", "status", "articles",
                                "lines", "scales", "discover", "ledger"}) {
        const TRun run = RunBare({command, "--help"});
        EXPECT_EQ(run.exitCode, 0) << command;
        EXPECT_NE(run.out.find(std::string("tolvane ") + command), std::string::npos) << run.out;
    }
    EXPECT_EQ(RunBare({"ledger", "forget", "--help"}).exitCode, 0);
}

TEST_F(OptionsTest, ItTellsItsVersion) {
    const TRun run = RunBare({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, std::string("tolvane ") + TOLVANE_VERSION + "\n");
}

TEST_F(OptionsTest, WithoutACommandItPointsToTheHelp) {
    const TRun run = RunBare({});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("tolvane --help"), std::string::npos) << run.err;
}

TEST_F(OptionsTest, AnUnknownWordIsAnsweredWithTheNearestKnownOne) {
    ExpectRefused({"wriet"}, "wriet is unknown; did you mean write?");
    ExpectRefused({"write", "--chnaged"}, "--chnaged is unknown; did you mean --changed?");
}

TEST_F(OptionsTest, WhatCannotBeIsRefused) {
    ExpectRefused({"write", "--all", "--changed"}, "--changed");
    ExpectRefused({"write", "--all", "--plu", "1"}, "--plu");
    ExpectRefused({"write", "--plu", "apple"}, "apple");
    ExpectRefused({"write", "--price", "half"}, "half");
    ExpectRefused({"write", "--name1", "long"}, "long");
    ExpectRefused({"write", "--jobs", "0"}, "jobs");
    ExpectRefused({"write", "--deadline", "soon"}, "\"soon\" is not a time");
    ExpectRefused({"write", "--lock-wait", "-3"}, "\"-3\" is not a time");
    ExpectRefused({"write", "--serial", "COM1"}, "COM1=/dev/ttyUSB0");
    ExpectRefused({"write", "--json", "--csv"}, "--json");
    ExpectRefused({"write", "-q", "-v"}, "--quiet");
    ExpectRefused({"delete"}, "say which articles");
    ExpectRefused({"delete", "--everything"}, "say --yes, too");
    ExpectRefused({"ledger", "forget"}, "SCALE is required");
}

TEST_F(OptionsTest, APasswordIsNoArgument) {
    ExpectRefused({"articles", "--password", "secret"}, "--password is unknown");
}

TEST_F(OptionsTest, AnOptionBeatsAVariableWhichBeatsTheFileWhichBeatsTheDefault) {
    AddDeadScale(1);
    AddDeadScale(2);
    AddDeadScale(3);
    const std::string config = (folder_ / "tolvane.conf").string();
    PutFile(config, "[tolvane]\nscale = 2\n");
    EXPECT_EQ(Chosen({"status", "--json"}), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(Chosen({"status", "--json", "--config", config}), (std::vector<int>{2}));
    environment_["TOLVANE_SCALE"] = "3";
    EXPECT_EQ(Chosen({"status", "--json", "--config", config}), (std::vector<int>{3}));
    EXPECT_EQ(Chosen({"status", "--json", "--config", config, "--scale", "1"}),
              (std::vector<int>{1}));
}

TEST_F(OptionsTest, TheConfigurationFileCanHoldEverySettingOfARun) {
    AddScale(1);
    AddScale(2);
    PutFile(folder_ / "tolvane.conf",
            "[tolvane]\r\nscale=2\r\nprice=wholesale\r\njobs=1\r\nlock-wait=1s\r\n"
            "deadline=10m\r\nmax-age=1d\r\nname1=label\r\nname2=name\r\n");
    const TRun run = Run({"write", "--json", "--config", (folder_ / "tolvane.conf").string()});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Rows().size(), 1U);
    EXPECT_EQ(run.Scale(2).at("written"), 3);
}

TEST_F(OptionsTest, AConfigurationFileThatIsNotThereIsTold) {
    ExpectRefused({"scales", "--config", (folder_ / "no.conf").string()},
                  "There is no configuration file");
}

TEST_F(OptionsTest, AScaleIsNamedByItsNumberOrItsName) {
    AddDeadScale(1);
    AddDeadScale(2);
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "Щанд 2"}), (std::vector<int>{2}));
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "щанд 1"}), (std::vector<int>{1}));
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "2", "--scale", "1"}),
              (std::vector<int>{1, 2}));
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "2,1"}), (std::vector<int>{1, 2}));
}

TEST_F(OptionsTest, AScalesNameMayHoldACommaItself) {
    AddDeadScale(1);
    list_ += FromUtf8(
        "[SCALE2]\r\nScaleNumb=2\r\nScaleName=Месо, 1\r\nTCPAddress=127.0.0.1\r\n"
        "TCPPort=9\r\nScaleType=300\r\nCommType=1\r\n");
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "Месо, 1"}), (std::vector<int>{2}));
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "2, 1"}), (std::vector<int>{1, 2}));
    ExpectRefused({"status", "--scale", "Месо, 3"}, "There is no scale \"Месо\".");
    ExpectRefused({"status", "--scale", ","}, "There is no scale \",\".");
    environment_["TOLVANE_SCALE"] = "Месо, 1";
    EXPECT_EQ(Chosen({"status", "--json"}), (std::vector<int>{2}));
    environment_["TOLVANE_SCALE"] = "";
    const std::string config = (folder_ / "tolvane.conf").string();
    PutFile(config, FromUtf8("[tolvane]\nscale = Месо, 1\n"));
    EXPECT_EQ(Chosen({"status", "--json", "--config", config}), (std::vector<int>{2}));
}

TEST_F(OptionsTest, ASearchIsNotForSingleScales) {
    AddDeadScale(1);
    ExpectRefused({"discover", "--scale", "1"},
                  "discover: it asks everybody in the network, whatever is listed; leave out "
                  "--scale");
}

TEST_F(OptionsTest, WithoutANameTheCheckedScalesAreMeant) {
    AddDeadScale(1);
    AddToList(2, TModel::S300, "127.0.0.1", 9, 1, false);
    EXPECT_EQ(Chosen({"status", "--json"}), (std::vector<int>{1}));
    EXPECT_EQ(Chosen({"status", "--json", "--scale", "2"}), (std::vector<int>{2}));
}

}  // namespace
}  // namespace tolvane::test
