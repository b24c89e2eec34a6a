// What the program shows on a terminal.

#include <algorithm>
#include <csignal>

#include "tests/command/program/ProgramTest.h"
#include "tests/command/program/Terminal_posix.h"

namespace tolvane::test {
namespace {

using TRows = std::vector<std::string>;

class TerminalTest : public TProgramTest {
protected:
    TerminalTest() { environment_["TERM"] = "xterm"; }

    TVirtualScale& AddSlow(int number, int milliseconds = 20) {
        TVirtualScale& scale = AddScale(number);
        scale.SetFaults(
            {.faults = {simulator::FaultFromText("slow,ms=" + std::to_string(milliseconds))}});
        return scale;
    }
    // Starts the program with a terminal for standard error.
    std::unique_ptr<TProcess> StartOn(TTerminal& terminal, const TWords& words) {
        const std::filesystem::path error = folder_ / "run" / "err";
        std::filesystem::remove(error);
        std::filesystem::create_symlink(terminal.Device(), error);
        std::unique_ptr<TProcess> process = Start(words);
        terminal.Listen();
        return process;
    }
    // What it prints on a terminal.
    std::string Shown(const TWords& words, int code, unsigned short columns = 80) {
        TTerminal terminal(columns);
        const std::unique_ptr<TProcess> process = StartOn(terminal, words);
        const TRun run = Ended(*process);
        EXPECT_EQ(run.exitCode, code) << run.out;
        EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
        return terminal.Text();
    }
    static bool HasBegin(const TRows& rows, const std::string& text) {
        return std::ranges::any_of(rows,
                                   [&](const std::string& row) { return row.starts_with(text); });
    }
};

TEST_F(TerminalTest, EachScaleHasABarInItsPlaceThatEndsAsItsOutcome) {
    AddSlow(1);
    AddSlow(2);
    AddDeadScale(3);
    const TScreen screen(Shown({"write"}, 3));
    EXPECT_EQ(screen.Rows(), (TRows{"1 Щанд 1  done, 3 written", "2 Щанд 2  done, 3 written",
                                    "3 Щанд 3  not reached, 2 pending"}));
    EXPECT_TRUE(HasBegin(screen.Ended(), "1 Щанд 1  waiting"));
    EXPECT_TRUE(HasBegin(screen.Ended(), "1 Щанд 1  [........................]  0/3"));
    EXPECT_TRUE(HasBegin(screen.Ended(), "1 Щанд 1  [########................]  1/3"));
    EXPECT_TRUE(HasBegin(screen.Ended(), "2 Щанд 2  [################........]  2/3"));
}

TEST_F(TerminalTest, NoLineIsWiderThanTheTerminal) {
    AddSlow(1);
    const std::string name = "ScaleName=" + std::string(50, 'M');
    const std::size_t begin = list_.find("ScaleName=");
    list_.replace(begin, list_.find("\r\n", begin) - begin, name);
    constexpr unsigned short kColumns = 80;
    const TScreen screen(Shown({"write"}, 0, kColumns));
    const std::string shown = "1 " + std::string(19, 'M') + "...";
    // A terminal may already begin a new line behind the last column.
    EXPECT_LT(screen.Widest(), kColumns);
    EXPECT_EQ(screen.Rows(), (TRows{shown + "  done, 3 written"}));
    EXPECT_TRUE(HasBegin(screen.Ended(), shown + "  [########................]  1/3"));
}

TEST_F(TerminalTest, AsManyScalesAsTheListCanHoldFitIn) {
    TRows expected;
    for (int number = 1; number <= 20; ++number) {
        AddScale(number);
        const std::string text = std::to_string(number);
        expected.push_back(text + " Щанд " + text + "  done");
    }
    EXPECT_EQ(TScreen(Shown({"test"}, 0)).Rows(), expected);
}

TEST_F(TerminalTest, AnInterruptIsToldAboveTheBars) {
    TVirtualScale& scale = AddSlow(1, 100);
    TTerminal terminal(80);
    const std::unique_ptr<TProcess> process = StartOn(terminal, {"write"});
    ASSERT_TRUE(scale.WaitForRequests(6, std::chrono::seconds(30)));
    process->Interrupt();
    EXPECT_EQ(Ended(*process).exitCode, 130);
    const TScreen screen(terminal.Text());
    const TRows rows = screen.Rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0],
              "Interrupted: each scale ends with the article in work. Again: ends at once.");
    // It may come before the first article or after the second.
    const TRows ends = {"1 Щанд 1  stopped, 3 pending", "1 Щанд 1  stopped, 1 written, 2 pending",
                        "1 Щанд 1  stopped, 2 written, 1 pending"};
    EXPECT_NE(std::find(ends.begin(), ends.end(), rows[1]), ends.end()) << rows[1];
    EXPECT_LT(screen.Widest(), 80U);
}

TEST_F(TerminalTest, WhereABarCannotBeDrawnLinesArePrinted) {
    AddScale(1);
    const std::string lines =
        "1 Щанд 1: connected, 1 article\r\n"
        "1 Щанд 1: done, 1 written\r\n";
    environment_["TERM"] = "dumb";
    EXPECT_EQ(Shown({"write", "--plu", "1"}, 0), lines);
    environment_["TERM"] = "xterm";
    EXPECT_EQ(Shown({"write", "--plu", "1", "--no-progress"}, 0), "");
    const std::string verbose = Shown({"write", "--plu", "1", "-v"}, 0);
    EXPECT_TRUE(verbose.ends_with("1 Щанд 1: 1 written: Ябълки\r\n1 Щанд 1: done, 1 written\r\n"))
        << verbose;
    EXPECT_EQ(verbose.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace tolvane::test
