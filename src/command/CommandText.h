#pragma once

// The texts of the help, the manual page and the completion. UTF-8.

#include <array>
#include <string_view>

#include "command/ExitCode.h"

namespace tolvane {

inline constexpr std::string_view kSummary =
    "Writes a shop's weighted articles into its label scales, without a window.";
inline constexpr std::string_view kExamples =
    "  tolvane check                      what is wrong with articles and scales; touches no "
    "scale\n"
    "  tolvane write --changed            sends what the scales do not hold yet\n"
    "  tolvane status --json              what each scale holds, for a program";
inline constexpr std::string_view kSettingsHelp =
    "Options with a value, except --plu and --show, may stand in the environment\n"
    "(TOLVANE_LOCK_WAIT for --lock-wait) and, but for --config, in the configuration file\n"
    "(lock-wait = 5 in section [tolvane]); an option here beats a variable, which beats the file.\n"
    "Flags such as --json stand only here, and a password only in its file.";

struct TExitText {
    TExitCode code;
    std::string_view text;
};
inline constexpr auto kExitTexts = std::to_array<TExitText>({
    {TExitCode::Done, "done"},
    {TExitCode::Internal, "internal error"},
    {TExitCode::Usage, "usage or configuration"},
    {TExitCode::SomeFailed, "some scales or articles failed"},
    {TExitCode::Database, "database"},
    {TExitCode::NoScaleReached, "no scale reached"},
    {TExitCode::ProblemsFound, "check or scales found problems"},
    {TExitCode::Locked, "another run works on the scale"},
    {TExitCode::Interrupted, "interrupted"},
});

inline constexpr std::string_view kScaleHelp =
    "only this scale; may be repeated. Without it: the scales that are checked in the window";
inline constexpr std::string_view kDatabaseHelp =
    "server/port:path, server:path, or a path alone for the embedded engine";
inline constexpr std::string_view kUdpHelp =
    "local port for UDP scales, 1001 as modules expect it; 0 takes any";

inline constexpr std::string_view kCheckHelp =
    "says what would be refused or go wrong; touches no scale";
inline constexpr std::string_view kWriteHelp = "writes articles into the scales";
inline constexpr std::string_view kDeleteHelp = "deletes articles in the scales";
inline constexpr std::string_view kTestHelp =
    "reaches every scale: version, capacity, label mode, time of an exchange";
inline constexpr std::string_view kReleaseHelp =
    "puts scales that were left in programming mode back to weighing";
inline constexpr std::string_view kStatusHelp =
    "shows each scale's last run, what it holds by the ledger, and what is pending";
inline constexpr std::string_view kArticlesHelp = "prints the articles";
inline constexpr std::string_view kLinesHelp =
    "prints the article lines of the scales, and what is left out and why";
inline constexpr std::string_view kScalesHelp = "prints the configured scales, checked";
inline constexpr std::string_view kDiscoverHelp = "prints the network modules that answer";
inline constexpr std::string_view kLedgerHelp = "what is known of the scales";
inline constexpr std::string_view kForgetHelp =
    "forgets what is known of a scale, so that everything is written again";

}  // namespace tolvane
