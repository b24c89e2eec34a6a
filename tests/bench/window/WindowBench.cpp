// Prints what the list window takes in a host process beside what bounds it: from
// OperationProcedure or F5 to a painted grid beside the query alone, what the user does in a list
// of 100,000 rows, and the memory that the open list takes. With --quick a small list only. run.sh
// makes the databases and all else that it needs.

#include <windows.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "articles/ArticleQueries.h"
#include "articles/ArticleSort.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "tests/bench/window/BareWindows.h"
#include "tests/bench/window/HostQuery.h"
#include "tests/bench/window/Times.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/Input.h"
#include "tests/support/window/ObjectCounts.h"

namespace tolvane::bench {
namespace {

using test::PressKey;
using test::TSession;

constexpr int kName = 3;
constexpr int kRounds = 11;
constexpr int kQuickRounds = 2;

// A host with the list of so many articles open.
class TList {
public:
    explicit TList(int articles)
        : session_("articles-" + std::to_string(articles) + ".fdb"), articles_(articles) {
        Open();
    }

    test::TGridReader Grid() const { return session_.Grid(); }
    void Open() {
        session_.Start();
        Paint();
        if (Grid().RowCount() != articles_) throw std::runtime_error("not every article is there");
    }
    void Close() { session_.CloseList(); }
    void Refresh() {
        PressKey(Grid().Handle(), VK_F5);
        Paint();
    }
    void Key(int virtualKey, bool control = false, bool shift = false) const {
        PressKey(Grid().Handle(), virtualKey, control, shift);
        Paint();
    }
    void ClickTitle(int column) const {
        Grid().ClickTitle(column);
        Paint();
    }
    // The article query alone, by the host's client library and on its connection.
    void Query() const { FetchAll(session_.connection.Database()->Handle, ArticleQuery()); }

private:
    void Paint() const {
        UpdateWindow(Grid().Handle());
        GdiFlush();
    }

    TSession session_;
    int articles_;
};

void CompareLoads(int articles, double atMost, int rounds) {
    const std::string count = std::to_string(articles) + " articles";
    TList list(articles);
    const TSide query{"  the article query alone", [&] { list.Query(); }};
    list.Query();
    const std::string open = "open until painted, " + count;
    Compare({open, [&] { list.Open(); }, [&] { list.Close(); }}, query, atMost, rounds);
    const std::string refresh = "F5 until painted, " + count;
    Compare({refresh, [&] { list.Refresh(); }}, query, atMost, rounds);
}

// The same texts in a table of this program, which is sorted by the code that the module has.
TArticleTable CopyOf(const test::TGridReader& grid) {
    TArticleTable articles;
    const int count = grid.RowCount();
    for (int row = 0; row < count; ++row) {
        const TRowId added = articles.Append();
        articles.SetInteger(added, TField::PLU_NUMB, row + 1);
        articles.SetText(added, TField::PLU_NAME, grid.Cell(row, kName));
    }
    return articles;
}

void TellSorts(const TList& list, int rounds) {
    TArticleTable articles = CopyOf(list.Grid());
    bool ascending = false;
    Compare({"sort by name, a click on the title", [&] { list.ClickTitle(kName); }},
            {"  the sort alone",
             [&] {
                 ascending = !ascending;
                 SortArticles(articles, TField::PLU_NAME, ascending);
             }},
            {}, rounds);
    list.ClickTitle(0);
}

void TellKeys(const TList& list, int rounds) {
    list.Key(VK_HOME);
    Tell(
        "line down", [&] { list.Key(VK_DOWN); }, rounds);
    Tell(
        "page down", [&] { list.Key(VK_NEXT); }, rounds);
    Tell(
        "column to the right", [&] { list.Key(VK_RIGHT); }, rounds);
    Tell(
        "to the end", [&] { list.Key(VK_END); }, rounds, [&] { list.Key(VK_HOME); });
    Tell(
        "mark all: Shift+End", [&] { list.Key(VK_END, false, true); }, rounds,
        [&] { list.Key(VK_HOME); });
    Tell(
        "mark all once more: Shift+End", [&] { list.Key(VK_END, false, true); }, rounds);
    Tell(
        "unmark all: Home", [&] { list.Key(VK_HOME); }, rounds,
        [&] { list.Key(VK_END, false, true); });
    Tell(
        "unmark all but one: Shift+Home", [&] { list.Key(VK_HOME, false, true); }, rounds,
        [&] {
            list.Key(VK_HOME);
            list.Key(VK_END, false, true);
        });
    list.Key(VK_HOME);
    list.Key(VK_END, false, true);
    Tell(
        "sort by name with all marked", [&] { list.ClickTitle(kName); }, rounds);
    list.Key(VK_HOME);
    list.ClickTitle(0);
    list.ClickTitle(0);
}

// What the process has more with the list open than with it closed, and once it is closed again.
// The list was open before, so what the system takes once for its windows is no part of it.
void TellMemory(TList& list, int articles) {
    constexpr double kMebibyte = 1 << 20;
    list.Close();
    const std::size_t before = test::PrivateBytes();
    const auto more = [&] {
        return static_cast<double>(test::PrivateBytes()) - static_cast<double>(before);
    };
    list.Open();
    std::printf("%-44s %9.2f MiB, %.0f bytes an article\n", "private memory of the open list",
                more() / kMebibyte, more() / articles);
    list.Close();
    std::printf("%-44s %9.2f MiB\n", "  once it is closed again", more() / kMebibyte);
    list.Open();
}

void Run(bool quick) {
    const int rounds = quick ? kQuickRounds : kRounds;
    std::printf("What Wine takes for the windows alone\n\n");
    TellBareWindows(rounds);
    std::printf("\nLoading\n\n");
    CompareLoads(1000, 2, rounds);
    if (!quick) {
        CompareLoads(10000, 1.3, rounds);
        CompareLoads(100000, 1.3, 5);
    }
    std::printf("In a list of %s rows\n\n", quick ? "1,000" : "100,000");
    const int articles = quick ? 1000 : 100000;
    TList list(articles);
    TellMemory(list, articles);
    TellSorts(list, rounds);
    TellKeys(list, rounds);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        tolvane::bench::Run(tolvane::bench::IsQuick(count, arguments));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
