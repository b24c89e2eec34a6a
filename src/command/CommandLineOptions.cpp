// Which commands and options there are.

#include "command/CommandLine.h"
#include "command/CommandText.h"
#include "command/OptionValues.h"

namespace tolvane {
namespace {

// As in the help.
std::string ExitCodesHelp() {
    std::string text = "Ends with:";
    for (const TExitText& exit : kExitTexts) {
        const std::string code = std::to_string(static_cast<int>(exit.code));
        text += "\n  " + code + std::string(5 - code.size(), ' ') + std::string(exit.text);
    }
    return text;
}

}  // namespace

TCommandLine::TCommandLine() : app_("", "tolvane") {
    app_.description(std::string(kSummary) + "\n\nExamples:\n" + std::string(kExamples));
    app_.footer(std::string(kSettingsHelp) + "\n\n" + ExitCodesHelp());
    app_.set_version_flag("--version", std::string("tolvane ") + TOLVANE_VERSION,
                          "prints the version");
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    AddPlaces();
    AddRun();
    AddOutput();
    AddCheck();
    AddWrite();
    AddDelete();
    AddOtherCommands();
}

CLI::Option* TCommandLine::AddPath(CLI::App& app, const std::string& name,
                                   std::filesystem::path& path, const std::string& help) {
    return app.add_option_function<std::string>(
        name, [&path](const std::string& text) { path = PathOf(text); }, help);
}

void TCommandLine::AddPlaces() {
    CLI::App& app = app_;
    app.add_option("--scale", options_.scales, std::string(kScaleHelp))
        ->type_name("N|NAME")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    AddPath(app, "--ini", options_.ini, "the module's Tolvane.ini, which is only read")
        ->type_name("FILE");
    app.add_option("--config", config_, "settings for this command")->type_name("FILE");
    AddPath(app, "--state", options_.state, "folder of the ledgers and locks")->type_name("FOLDER");
    app.add_option("--database", options_.database, std::string(kDatabaseHelp))->type_name("D");
    app.add_option("--user", options_.user, "of the database")->type_name("U");
    AddPath(app, "--password-file", options_.passwordFile, "whose first line is the password")
        ->type_name("FILE");
    AddPath(app, "--client-library", options_.clientLibrary, "of InterBase or Firebird")
        ->type_name("FILE");
}

void TCommandLine::AddRun() {
    CLI::App& app = app_;
    app.add_option("--serial", raw_.serial, "what a serial port is here, such as COM1=/dev/ttyUSB0")
        ->type_name("COMn=DEVICE")
        ->delimiter(',')
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option("--udp-local-port", options_.udpPort, std::string(kUdpHelp))->type_name("PORT");
    app.add_option("--jobs", options_.jobs, "links at once; all of them without this")
        ->type_name("N")
        ->check(CLI::Range(1, 1000));
    app.add_option("--deadline", raw_.deadline, "stops between two articles after this time")
        ->type_name("30m");
    app.add_option("--lock-wait", raw_.lockWait, "waits so long for another run; 0 without this")
        ->type_name("TIME");
}

void TCommandLine::AddOutput() {
    CLI::App& app = app_;
    app.add_flag("--json", raw_.json, "prints data as JSON");
    app.add_flag("--csv", raw_.csv, "prints data as comma-separated values")->excludes("--json");
    AddPath(app, "--log", options_.log, "appends what happens, one JSON object a line")
        ->type_name("FILE");
    AddPath(app, "--trace", options_.trace, "writes every request and reply, for Wireshark")
        ->type_name("FILE");
    app.add_flag("--no-progress", raw_.noProgress, "shows no progress");
    app.add_flag("-q,--quiet", options_.quiet, "says only what has failed");
    app.add_flag("-v,--verbose", options_.verbose, "says more")->excludes("--quiet");
}

CLI::App* TCommandLine::Verb(const std::string& name, TVerb verb, std::string_view help) {
    CLI::App* const app = app_.add_subcommand(name, std::string(help));
    app->parse_complete_callback([this, verb] { options_.verb = verb; });
    return app;
}

void TCommandLine::AddChoices(CLI::App* app) {
    app->add_option("--price", raw_.price, "retail or wholesale")->check(CLI::IsMember(kPrices));
    app->add_option("--name1", raw_.name1, "ecr, name, label or number")
        ->check(CLI::IsMember(kNames));
    app->add_option("--name2", raw_.name2, "ecr, name, label or number")
        ->check(CLI::IsMember(kNames));
}

void TCommandLine::AddMaxAge(CLI::App* app) {
    app->add_option("--max-age", raw_.maxAge, "trusts a ledger so long, 7d without this")
        ->type_name("TIME");
}

void TCommandLine::AddReport(CLI::App* app) {
    AddPath(*app, "--report", options_.report, "writes what happened as a page for a browser")
        ->type_name("FILE");
}

CLI::Option* TCommandLine::AddNumbers(CLI::App* app, const std::string& help) {
    return app->add_option("--plu", raw_.numbers, help)
        ->type_name("N")
        ->delimiter(',')
        ->expected(1, 100000)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void TCommandLine::AddCheck() {
    CLI::App* const check = Verb("check", TVerb::Check, kCheckHelp);
    AddChoices(check);
    AddMaxAge(check);
    AddReport(check);
    check->add_option("--show", options_.show, "shows what the scales would hold of this article")
        ->type_name("PLU");
    check->add_flag("--create-index", options_.createIndex,
                    "creates the index that keeps reading fast");
}

void TCommandLine::AddWrite() {
    CLI::App* const write = Verb("write", TVerb::Write, kWriteHelp);
    AddChoices(write);
    AddMaxAge(write);
    AddReport(write);
    CLI::Option* const changed = write->add_flag(
        "--changed", options_.changedOnly, "only what differs from what the scale acknowledged");
    CLI::Option* const all = write->add_flag("--all", raw_.all, "every article (as without this)");
    CLI::Option* const plu = AddNumbers(write, "these articles, by their number in the scales");
    all->excludes(changed)->excludes(plu);
    write->add_flag("--prune", options_.prune, "deletes what has left the scale's list")
        ->excludes(plu);
    write->add_flag("--dry-run", options_.dryRun, "shows what would be sent; touches no scale");
}

void TCommandLine::AddDelete() {
    CLI::App* const remove = Verb("delete", TVerb::Delete, kDeleteHelp);
    AddMaxAge(remove);
    CLI::Option* const numbers =
        AddNumbers(remove, "these articles, by their number in the scales");
    remove->add_flag("--everything", options_.everything, "every number that the scale has")
        ->excludes(numbers);
    remove->add_flag("--yes", raw_.yes, "deletes everything without a question");
}

void TCommandLine::AddOtherCommands() {
    Verb("test", TVerb::Test, kTestHelp);
    Verb("release", TVerb::Release, kReleaseHelp);
    CLI::App* const status = Verb("status", TVerb::Status, kStatusHelp);
    AddChoices(status);
    AddMaxAge(status);
    Verb("articles", TVerb::Articles, kArticlesHelp);
    CLI::App* const lines = Verb("lines", TVerb::Lines, kLinesHelp);
    AddChoices(lines);
    Verb("scales", TVerb::Scales, kScalesHelp);
    Verb("discover", TVerb::Discover, kDiscoverHelp);
    CLI::App* const ledger = app_.add_subcommand("ledger", std::string(kLedgerHelp));
    ledger->require_subcommand(1);
    CLI::App* const forget = ledger->add_subcommand("forget", std::string(kForgetHelp));
    forget->add_option("SCALE", options_.forget, "its number or its name")->required();
    forget->parse_complete_callback([this] { options_.verb = TVerb::LedgerForget; });
}

}  // namespace tolvane
