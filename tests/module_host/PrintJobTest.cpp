#include "host/PrintJob.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "host/GridReader.h"
#include "host/HostMenu.h"
#include "tests/module_host/FilePrinter.h"
#include "tests/module_host/HostSession.h"

namespace tolvane::test {
namespace {

// The fake operation's grid, 200 rows of which 37 stand on a page: six pages.
class HostPrintJobTest : public testing::Test {
protected:
    HostPrintJobTest() : file_(session_.Folder()) {
        session_.OpenWorking();
        THostSession::Fake().rows = 200;
        session_.Command(host::kFirstOperation);
        grid_.emplace(THostSession::Fake().grid);
        painter_.emplace(*grid_, host::TPageTexts{L"Title", L"Date"});
    }

    host::TPrintResult Print(std::size_t first, std::size_t end,
                             const std::function<bool(std::size_t)>& goOn) {
        const host::TPrinter printer(file_.MakeDc(), first, end);
        return host::PrintPages(printer, *painter_, goOn);
    }
    host::TPrintResult Print(std::size_t first, std::size_t end) {
        return Print(first, end, [](std::size_t) { return true; });
    }

    std::size_t PrintedPages() const {
        const std::string text = file_.Output();
        const std::regex page("%%Page: ");
        return static_cast<std::size_t>(
            std::distance(std::sregex_iterator(text.begin(), text.end(), page), {}));
    }

    THostSession session_;
    TFilePrinter file_;
    std::optional<host::TGridReader> grid_;
    std::optional<host::TPagePainter> painter_;
};

TEST_F(HostPrintJobTest, AllPagesArePrintedInOrder) {
    std::vector<std::size_t> pages;
    EXPECT_EQ(Print(0, painter_->Layout().PageCount(),
                    [&](std::size_t page) {
                        pages.push_back(page);
                        return true;
                    }),
              host::TPrintResult::Done);
    EXPECT_EQ(pages, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(PrintedPages(), 6U);
}

TEST_F(HostPrintJobTest, OnlyTheChosenPagesArePrinted) {
    EXPECT_EQ(Print(2, 4), host::TPrintResult::Done);
    EXPECT_EQ(PrintedPages(), 2U);
}

TEST_F(HostPrintJobTest, StoppingPrintsNoFurtherPage) {
    EXPECT_EQ(Print(0, 6, [](std::size_t page) { return page < 3; }), host::TPrintResult::Stopped);
    EXPECT_LE(PrintedPages(), 3U);
}

TEST_F(HostPrintJobTest, TheTableStandsInTrueSizeOnTheSheet) {
    ASSERT_EQ(Print(0, 1), host::TPrintResult::Done);
    // At 600 dots per inch, counted from the first dot that can be printed on, 18 points (150 dots)
    // from the sheet's edge. The first line drawn is the left one: it starts 12 mm from the sheet's
    // left edge (283.5 dots) and 12 + 13 mm from its upper edge (590.6 dots), and is 38 rows of
    // 4.5 mm long (4039.4 dots). The sheet, given in whole points, is 2 dots smaller than A4.
    const std::string text = file_.Output();
    std::smatch line;
    ASSERT_TRUE(std::regex_search(
        text, line, std::regex("\n([0-9]+) ([0-9]+) moveto\n([0-9]+) ([0-9]+) lineto\n")));
    EXPECT_NEAR(std::stod(line[1]), 283.5 - 150, 2);
    EXPECT_NEAR(std::stod(line[2]), 590.6 - 150, 2);
    EXPECT_EQ(line[3], line[1]);
    EXPECT_NEAR(std::stod(line[4]) - std::stod(line[2]), 4039.4, 2);
}

TEST_F(HostPrintJobTest, APrinterThatRefusesTheJobIsAFailure) {
    const host::TPrinter none(nullptr, 0, 1);
    EXPECT_EQ(host::PrintPages(none, *painter_, [](std::size_t) { return true; }),
              host::TPrintResult::Failed);
}

}  // namespace
}  // namespace tolvane::test
