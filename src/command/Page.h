#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "command/ExitCode.h"
#include "command/Report.h"

namespace tolvane {

// A line of a picture that compares times.
struct TPageBar {
    std::string name{};
    double seconds = 0.0;
    std::string text{};   // behind the bar
    std::string state{};  // colours the bar: a word of the table's cells, such as "failed"
};

// A part of a page: a table, a picture, or a sentence.
struct TPageSection {
    std::string title{};
    std::string note{};
    TReportTable table{};  // without rows: none
    std::vector<TPageBar> bars{};
};

struct TPageFact {
    std::string name{};
    std::string value{};
};

// What a page tells. Texts are UTF-8 and become HTML only in PageText.
struct TPage {
    std::string title{};
    TExitCode exitCode = TExitCode::Done;
    std::vector<std::string> messages{};  // in short; each may have several lines
    std::vector<TPageFact> facts{};
    std::vector<TPageSection> sections{};
};

// What a page begins with.
inline constexpr std::string_view kPageStart = "<!DOCTYPE html>";

// The whole page: HTML that needs no other file and no script, light or dark as its reader likes,
// and on paper. Columns that say nothing are left out, as on a terminal.
std::string PageText(const TPage& page);

// "12.3 s", "3 min 20 s"
std::string SecondsText(double seconds);

}  // namespace tolvane
