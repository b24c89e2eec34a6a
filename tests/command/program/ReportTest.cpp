// The page that --report writes.

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class ReportTest : public TProgramTest {
protected:
    TRun RunWithReport(TWords words) {
        words.insert(words.end(), {"--report", file_.string()});
        return Run(words);
    }
    std::string Page() const { return GetFile(file_); }
    void ExpectOnPage(const std::string& text) const {
        EXPECT_NE(Page().find(text), std::string::npos) << text << "\n" << Page();
    }

    const std::filesystem::path file_ = folder_ / "report.html";
};

TEST_F(ReportTest, OfARunTellsWhatWasSentWhereAndWhatWasRefusedAndWhy) {
    AddScale(1).SetFaults(
        {.faults = {simulator::FaultFromText("error,command=SetParam,request=1,code=8")}});
    AddScale(2);
    AddDeadScale(3);
    const TRun run = RunWithReport({"write"});
    EXPECT_EQ(run.exitCode, 3) << run.err;
    ExpectOnPage("<h1>Articles written into scales</h1>");
    ExpectOnPage("<p class=\"word\">Some scales or articles failed</p>");
    // Of articles 1, 2, 3 the first scale refuses one; the third is to get 1 and 2.
    ExpectOnPage("<p>1 of 3 scales done, 5 written, 1 refused, 2 pending.</p>");
    ExpectOnPage("<dt>Asked for</dt><dd>write</dd>");
    ExpectOnPage("<dt>Made by</dt><dd>tolvane " TOLVANE_VERSION "</dd>");
    ExpectOnPage("<td class=\"number\">2</td><td class=\"name\">Щанд 2</td><td>TCP 127.0.0.1:");
    ExpectOnPage("<td class=\"bad\">not reached</td>");
    ExpectOnPage(
        "<td class=\"number\">1</td><td class=\"number\">1</td><td class=\"name\">Ябълки</td>"
        "<td class=\"bad\">refused</td><td>[SetParam:0][Име1] ErrCode: 8, ");
    ExpectOnPage("<tr><td class=\"number\">1</td><td class=\"name\">Ябълки</td><td>2</td></tr>");
    ExpectOnPage("<tr><td class=\"number\">2</td><td class=\"name\">Круши</td><td>1, 2</td></tr>");
    ExpectOnPage("<tr><td class=\"number\">4</td><td class=\"name\">Домати</td><td>2</td></tr>");
    ExpectOnPage("<tr><th scope=\"row\">3 Щанд 3</th><td class=\"picture\"><svg ");
}

TEST_F(ReportTest, APlanIsAPage) {
    AddDeadScale(1);
    EXPECT_EQ(RunWithReport({"write", "--dry-run"}).exitCode, 0);
    ExpectOnPage("<h1>What a run would write</h1>");
    ExpectOnPage("<p>1 scale, 3 to be written.</p>\n<p>This is a plan; no scale was touched.</p>");
    ExpectOnPage("<tr><td class=\"number\">3</td><td class=\"name\">Грозде</td><td>1</td></tr>");
}

TEST_F(ReportTest, OfAPruningRunTellsWhatWasDeleted) {
    AddScale(1);
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    Sql("update PLUES set PLU_FORSCALES = '2' where PLU_NUMB = 102");
    EXPECT_EQ(RunWithReport({"write", "--changed", "--prune"}).exitCode, 0);
    ExpectOnPage("<dt>Asked for</dt><dd>write --changed --prune</dd>");
    ExpectOnPage("<p>1 of 1 scale done, 2 unchanged, 1 deleted.</p>");
    ExpectOnPage("<th scope=\"col\">Deleted from scales</th>");
    ExpectOnPage("<tr><td class=\"number\">2</td><td>1</td></tr>");
}

TEST_F(ReportTest, OfACheckTellsTheProblemsAndTheirCures) {
    AddDeadScale(1);
    AddDeadScale(2);
    EXPECT_EQ(RunWithReport({"check"}).exitCode, 0);
    ExpectOnPage("<h1>Check of articles and scales</h1>");
    ExpectOnPage("<h2>Problems</h2>\n<p>None.</p>");
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    EXPECT_EQ(RunWithReport({"check", "-q"}).exitCode, 6);
    ExpectOnPage("<p class=\"word\">Problems found</p>");
    ExpectOnPage(
        "<td class=\"bad\">error</td><td class=\"number\">1</td>"
        "<td class=\"number\">3</td><td class=\"name\">Грозде</td>"
        "<td>the barcode is not of exactly 5 characters</td>");
    ExpectOnPage("<h2>Not known of these scales, and assumed (tolvane test asks them)</h2>");
}

TEST_F(ReportTest, OfOneArticleTellsWhatTheScalesWouldHold) {
    AddDeadScale(1);
    EXPECT_EQ(RunWithReport({"check", "--show", "1"}).exitCode, 0);
    ExpectOnPage("<dt>Asked for</dt><dd>check --show 1</dd>");
    ExpectOnPage("<h2>What the scales would hold</h2>");
    ExpectOnPage("<td>Произход: България</td>");
}

TEST_F(ReportTest, ShowsAnArticlesNameAsItIs) {
    AddScale(1);
    Sql("update PLUES set PLU_NAME = '<b>A&B' where PLU_NUMB = 101");
    EXPECT_EQ(RunWithReport({"write", "--name1", "name"}).exitCode, 0);
    ExpectOnPage("<td class=\"name\">&lt;b&gt;A&amp;B</td>");
    EXPECT_EQ(Page().find("<b>"), std::string::npos);
}

TEST_F(ReportTest, ARunThatFailsBeforeAnyScaleTellsWhy) {
    AddDeadScale(1);
    const TRun run = RunWithReport({"write", "--client-library", "no-such-client"});
    EXPECT_EQ(run.exitCode, 4);
    ExpectOnPage("<p class=\"word\">The database was not read</p>");
    ExpectOnPage("no-such-client");
    EXPECT_EQ(RunWithReport({"write", "--scale", "7"}).exitCode, 2);
    ExpectOnPage("<p>There is no scale &quot;7&quot;. There are: 1 Щанд 1.</p>");
}

TEST_F(ReportTest, AnInterruptedRunHasItsReport) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=100")}});
    const std::unique_ptr<TProcess> process = Start({"write", "--report", file_.string()});
    ASSERT_TRUE(scale.WaitForRequests(6, std::chrono::seconds(30)));
    process->Interrupt();
    EXPECT_EQ(Ended(*process).exitCode, 130);
    ExpectOnPage("<p class=\"word\">Interrupted</p>");
    ExpectOnPage("<p>The run was interrupted; each scale ended with the article in work.");
    ExpectOnPage("<td class=\"warn\">stopped</td>");
}

TEST_F(ReportTest, AReportThatCannotBeWrittenEndsTheRunBeforeAnythingIsSent) {
    const TVirtualScale& scale = AddScale(1);
    PutFile(folder_ / "prices.txt", "not a page");
    for (const auto& [file, why] :
         {std::pair(folder_ / "no" / "report.html", std::string()),
          std::pair(folder_.Path(), std::string("it is there and is no file.")),
          std::pair(folder_ / "prices.txt",
                    std::string("the file is there and is no page. Name another one."))}) {
        const TRun run = Run({"write", "--report", file.string()});
        EXPECT_EQ(run.exitCode, 2) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.starts_with("tolvane: The report " + file.string() +
                                        " cannot be written: " + why))
            << run.err;
    }
    EXPECT_EQ(scale.State().requests.total, 0);
    EXPECT_EQ(GetFile(folder_ / "prices.txt"), "not a page");
}

TEST_F(ReportTest, AFolderThatVanishesMeanwhileIsAFailure) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=100")}});
    std::filesystem::create_directory(folder_ / "gone");
    const std::filesystem::path file = folder_ / "gone" / "report.html";
    const std::unique_ptr<TProcess> process = Start({"write", "--report", file.string()});
    ASSERT_TRUE(scale.WaitForRequests(2, std::chrono::seconds(30)));
    std::filesystem::remove(folder_ / "gone");
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_NE(run.err.find("tolvane: The report " + file.string() + " cannot be written: "),
              std::string::npos)
        << run.err;
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2, 3}));
}

TEST_F(ReportTest, NothingIsLeftBesideIt) {
    AddScale(1);
    std::filesystem::create_directory(folder_ / "pages");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Run({"write", "--report", (folder_ / "pages" / "a.html").string()}).exitCode, 0);
    EXPECT_EQ(Run({"write"}).exitCode, 0);
    const std::filesystem::directory_iterator pages(folder_ / "pages");
    EXPECT_EQ(std::distance(pages, std::filesystem::directory_iterator()), 1);
}

}  // namespace
}  // namespace tolvane::test
