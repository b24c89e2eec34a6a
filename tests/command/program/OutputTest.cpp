#include <sstream>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class OutputTest : public TProgramTest {
protected:
    OutputTest() { AddScale(1); }
    bool Says(const TRun& run, const std::string& text) const {
        return run.err.find(text) != std::string::npos;
    }
};

TEST_F(OutputTest, ElsewhereThanOnATerminalEachScaleHasALineAtItsBeginAndEnd) {
    const TRun run = Run({"write"});
    EXPECT_EQ(run.err,
              "1 Щанд 1: connected, 3 articles\n"
              "1 Щанд 1: done, 3 written\n");
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
}

TEST_F(OutputTest, ProgressCanBeLeftOut) {
    EXPECT_EQ(Run({"write", "--no-progress"}).err, "");
    EXPECT_EQ(Run({"write", "-q"}).err, "");
}

TEST_F(OutputTest, VerboseTellsWhatIsDone) {
    const TRun run = Run({"write", "--verbose"});
    EXPECT_TRUE(Says(run, "Tolvane.ini: 1 scale, chosen: 1 Щанд 1\n")) << run.err;
    EXPECT_TRUE(Says(run, ": 4 articles read\n")) << run.err;
    EXPECT_TRUE(Says(run, "1 Щанд 1: 2 written: Круши\n")) << run.err;
}

TEST_F(OutputTest, ATableShowsWhatSaysSomething) {
    const TRun run = Run({"write"});
    std::istringstream lines(run.out);
    std::string titles;
    std::string row;
    std::getline(lines, titles);
    std::getline(lines, row);
    EXPECT_TRUE(titles.starts_with("No  Scale")) << run.out;
    EXPECT_NE(titles.find("Written"), std::string::npos);
    EXPECT_EQ(titles.find("Error"), std::string::npos) << "an empty column";
    EXPECT_NE(row.find("Щанд 1"), std::string::npos);
    EXPECT_NE(row.find("done"), std::string::npos);
}

TEST_F(OutputTest, ATraceIsACaptureFile) {
    const std::filesystem::path file = folder_ / "run.pcapng";
    ASSERT_EQ(Run({"write", "--trace", file.string()}).exitCode, 0);
    const std::string bytes = GetFile(file);
    EXPECT_TRUE(bytes.starts_with("\x0A\x0D\x0D\x0A")) << "a section header";
    EXPECT_GT(bytes.size(), 1000U);
}

TEST_F(OutputTest, ALogThatCannotBeOpenedEndsTheRunBeforeItBegins) {
    const TRun run = Run({"write", "--log", (folder_ / "no" / "run.log").string()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(Says(run, "The log ")) << run.err;
    EXPECT_TRUE(Says(run, "cannot be written")) << run.err;
}

TEST_F(OutputTest, ATraceThatCannotBeOpenedEndsTheRunBeforeItBegins) {
    const TRun run = Run({"write", "--trace", (folder_ / "no" / "run.pcapng").string()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(Says(run, "run.pcapng")) << run.err;
}

TEST_F(OutputTest, OutputThatCannotBeWrittenIsAnError) {
    outIsFull_ = true;
    const TRun run = Run({"scales"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("Standard output cannot be written."), std::string::npos) << run.err;
}

}  // namespace
}  // namespace tolvane::test
