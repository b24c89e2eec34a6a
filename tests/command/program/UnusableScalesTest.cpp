// Scales of the list that no run can use: each command names them.

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class UnusableScalesTest : public TProgramTest {
protected:
    UnusableScalesTest() { AddToList(5, TModel::S300, "", 2001, 1); }
    void ExpectFailed(const TRun& run, int code, const std::string& error) {
        EXPECT_EQ(run.exitCode, code) << run.err;
        EXPECT_EQ(run.Json().at("exitCode"), code);
        EXPECT_EQ(run.Scale(5).at("outcome"), "failed");
        EXPECT_EQ(run.Scale(5).at("error"), error);
    }
    // The list with one word in place of another.
    void Replace(const std::string& from, const std::string& to) {
        list_.replace(list_.find(from), from.size(), to);
    }

    const std::string noAddress_ = "it has no address; enter the address, or the serial port";
};

TEST_F(UnusableScalesTest, RunsNameThemBesideTheOthers) {
    const TVirtualScale& scale = AddScale(6);
    for (const TWords& words :
         {TWords{"write"}, {"test"}, {"delete", "--plu", "9"}, {"release"}, {"status"}}) {
        TWords all = words;
        all.emplace_back("--json");
        const TRun run = Run(all);
        ExpectFailed(run, 3, noAddress_);
        EXPECT_EQ(run.Scale(6).at("error"), "") << words[0];
    }
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2}));
    ExpectFailed(Run({"write", "--dry-run", "--json"}), 3, noAddress_);
}

TEST_F(UnusableScalesTest, AnotherPortThanTheListSaysIsNotTried) {
    const TVirtualScale& scale = AddScale(5);
    list_.erase(0, list_.rfind("[SCALE5]"));
    const std::string port = std::to_string(scale.Port());
    const std::string wrapped = std::to_string(65536 + scale.Port());
    Replace("TCPPort=" + port, "TCPPort=" + wrapped);
    ExpectFailed(Run({"write", "--json"}), 2,
                 "its port \"" + wrapped + "\" is not a number from 1 to 65535; correct the port");
    EXPECT_EQ(scale.State().requests.total, 0);
}

// It would be COM1, and its articles would go to the scale there.
TEST_F(UnusableScalesTest, APortThatIsNoneIsNotTakenForTheFirstOne) {
    list_.clear();
    AddToList(5, TModel::Evl, "COM2:", 1001, 0);
    ExpectFailed(Run({"write", "--json"}), 2,
                 "its address \"COM2:\" is no serial port; enter COM1, COM2 and so on, without a "
                 "blank or a colon");
}

TEST_F(UnusableScalesTest, AreAFaultOfTheListWhereThereAreNoOthers) {
    for (const TWords& words :
         {TWords{"write"}, {"test"}, {"delete", "--plu", "9"}, {"release"}, {"status"}}) {
        TWords all = words;
        all.emplace_back("--json");
        ExpectFailed(Run(all), 2, noAddress_);
    }
}

TEST_F(UnusableScalesTest, AreNotMeantWhenTheyAreNotCheckedUntilTheyAreNamed) {
    Replace("Checked=1", "Checked=0");
    AddScale(6);
    EXPECT_EQ(Run({"test"}).exitCode, 0);
    ExpectFailed(Run({"test", "--scale", "5", "--json"}), 2, noAddress_);
}

TEST_F(UnusableScalesTest, AreAProblemForScalesAndCheck) {
    AddToList(1, TModel::S300, "127.0.0.1", 2001, 1, false);
    AddToList(2, TModel::S300, "127.0.0.1", 2002, 1, false);
    for (const char* command : {"scales", "check"}) {
        const TRun run = Run({command, "--json"});
        EXPECT_EQ(run.exitCode, 6) << run.err;
        const auto problems = run.Json().at("problems");
        ASSERT_EQ(problems.size(), 1U) << problems;
        EXPECT_EQ(problems[0].at("severity"), "error");
        EXPECT_EQ(problems[0].at("scale"), 5);
        EXPECT_EQ(problems[0].at("problem"), "it has no address");
    }
    EXPECT_EQ(Run({"scales", "--json"}).Scale(5).at("name"), "Щанд 5");
}

TEST_F(UnusableScalesTest, AListOfNothingIsToldByEveryCommandThatReadsIt) {
    for (const char* text : {"", "\x01\x02\xFF[[[\nnothing=of=it\n", "[SCALE21]\nTCPAddress=x\n"}) {
        list_ = text;
        for (const char* command : {"scales", "check", "write"}) {
            const TRun run = Run({command});
            EXPECT_EQ(run.exitCode, 2);
            EXPECT_NE(
                run.err.find("holds no scale: it has none of the sections SCALE1 to SCALE20."),
                std::string::npos)
                << run.err;
        }
    }
}

}  // namespace
}  // namespace tolvane::test
