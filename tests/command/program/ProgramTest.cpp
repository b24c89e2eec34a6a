#include "tests/command/program/ProgramTest.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "database/Query.h"
#include "simulator/Commands.h"
#include "tests/support/Environment.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr std::chrono::seconds kLongest{60};

#ifdef _WIN32
constexpr bool kHasEngine = false;
#else
constexpr bool kHasEngine = true;
#endif

std::string Server() {
    return Environment("TOLVANE_FB_SERVER");
}

// A copy of the small shop, which no server has open.
std::filesystem::path CopyOfShop() {
    static std::atomic<int> count = 0;
    const std::filesystem::path folder = Environment("TOLVANE_FB_DIR");
    const std::filesystem::path file =
        folder /
        ("program-" + std::to_string(++count) + "-" +
         std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + ".fdb");
    std::filesystem::copy_file(folder / "small.fdb", file);
    return file;
}

// The embedded engine's threads may still be ending when leaks are looked for, which that does not
// survive.
bool UsesDatabase(const TWords& words) {
    constexpr std::array<std::string_view, 5> kVerbs = {"articles", "check", "lines", "status",
                                                        "write"};
    return !words.empty() && std::ranges::find(kVerbs, words.front()) != kVerbs.end();
}

int ModelCode(TModel model) {
    switch (model) {
        case TModel::Evl:
            return 16;
        case TModel::Ets:
            return 5000;
        case TModel::S300:
            return 300;
    }
    return 0;
}

// Empty for a device, which has no end.
std::string FileText(const std::filesystem::path& file) {
    if (!std::filesystem::is_regular_file(file)) return {};
    std::string text = GetFile(file);
    std::erase(text, '\r');
    return text;
}

}  // namespace

nlohmann::json TRun::Json() const {
    return nlohmann::json::parse(out);
}

nlohmann::json TRun::Rows(const std::string& table) const {
    return Json().at(table);
}

nlohmann::json TRun::Scale(int number) const {
    for (const nlohmann::json& row : Rows())
        if (row.at("number") == number) return row;
    throw std::runtime_error("no scale " + std::to_string(number) + " in " + out + err);
}

std::vector<nlohmann::json> EventsIn(const std::filesystem::path& log) {
    std::vector<nlohmann::json> events;
    std::istringstream lines(GetFile(log));
    for (std::string line; std::getline(lines, line);)
        events.push_back(nlohmann::json::parse(line));
    return events;
}

TProgramTest::TProgramTest() : database_(CopyOfShop()) {
    for (const char* name : {"INI", "DATABASE", "USER", "STATE", "JOBS", "SCALE", "LOG", "TRACE"})
        environment_[std::string("TOLVANE_") + name] = "";
    // A program that ends itself amid a call of the engine leaves the engine's locks taken, and
    // whoever shares them waits forever.
    environment_["FIREBIRD_LOCK"] = (folder_ / "locks").string();
    for (const char* run : {"run", "beside", "locks"})
        std::filesystem::create_directory(folder_ / run);
    PutFile(folder_ / "password", Environment("TOLVANE_FB_PASSWORD") + "\n");
}

TProgramTest::~TProgramTest() {
    std::error_code ignored;
    std::filesystem::remove(database_, ignored);
}

TVirtualScale& TProgramTest::AddScale(int number, TModel model, TScaleOptions options) {
    options.scale = simulator::DefaultProperties(model);
    options.scale.capacity = capacity_;
    scales_.push_back(std::make_unique<TVirtualScale>(std::move(options)));
    TVirtualScale& scale = *scales_.back();
    scale.Start();
    if (scale.Port() != 0) AddToList(number, model, "127.0.0.1", scale.Port(), 1);
    return scale;
}

void TProgramTest::AddDeadScale(int number) {
    TVirtualScale scale;
    scale.Start();
    AddToList(number, TModel::S300, "127.0.0.1", scale.Port(), 1);
    scale.Stop();
}

void TProgramTest::AddToList(int number, TModel model, const std::string& address,
                             std::uint16_t port, int commType, bool checked) {
    const std::string text = std::to_string(number);
    list_ += "[SCALE" + text + "]\r\nScaleNumb=" + text +
             "\r\nScaleName=" + FromUtf8("Щанд " + text) + "\r\nTCPAddress=" + address +
             "\r\nTCPPort=" + std::to_string(port) + "\r\nChecked=" + (checked ? "1" : "0") +
             "\r\nBaudRate=4\r\nScaleType=" + std::to_string(ModelCode(model)) +
             "\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=" + std::to_string(commType) + "\r\n";
}

TWords TProgramTest::WithShop(const TWords& words) {
    PutFile(folder_ / "Tolvane.ini", list_);
    TWords all = words;
    const auto add = [&](const std::string& option, const std::string& value) {
        all.push_back(option);
        all.push_back(value);
    };
    add("--ini", (folder_ / "Tolvane.ini").string());
    add("--state", StateFolder().string());
    if (kHasEngine) {
        add("--database", database_.string());
    } else {
        add("--database", Server() + ":" + database_.generic_string());
        add("--user", "SYSDBA");
        add("--password-file", (folder_ / "password").string());
    }
    return all;
}

TStart TProgramTest::StartOf(const TWords& words, const std::string& name) const {
    std::map<std::string, std::string> environment = environment_;
    environment["ASAN_OPTIONS"] = UsesDatabase(words) ? "detect_leaks=0" : "detect_leaks=1";
    return {.program = TOLVANE_PROGRAM,
            .arguments = words,
            .environment = environment,
            .folder = folder_ / name,
            .outIsFull = outIsFull_};
}

std::unique_ptr<TProcess> TProgramTest::Start(const TWords& words) {
    return StartBare(WithShop(words));
}

std::unique_ptr<TProcess> TProgramTest::StartBare(const TWords& words) {
    return StartIn(words, "run");
}

std::unique_ptr<TProcess> TProgramTest::StartIn(const TWords& words, const std::string& name) {
    return std::make_unique<TProcess>(StartOf(words, name));
}

TRun TProgramTest::Ended(TProcess& process) {
    return Ended(process, "run");
}

TRun TProgramTest::Ended(TProcess& process, const std::string& name) {
    const int exitCode = process.WaitFor(kLongest).value_or(-1);
    return {.exitCode = exitCode,
            .out = FileText(folder_ / name / "out"),
            .err = FileText(folder_ / name / "err")};
}

TRun TProgramTest::RunBare(const TWords& words) {
    TProcess process(StartOf(words, "run"));
    return Ended(process);
}

TRun TProgramTest::RunBeside(const TWords& words) {
    TProcess process(StartOf(WithShop(words), "beside"));
    return Ended(process, "beside");
}

TWords TProgramTest::OnServer(const TWords& words) {
    PutFile(folder_ / "Tolvane.ini", list_);
    TWords all = words;
    all.insert(all.end(),
               {"--ini", (folder_ / "Tolvane.ini").string(), "--state", StateFolder().string(),
                "--database", Server() + ":" + Environment("TOLVANE_FB_SHOP"), "--user", "SYSDBA",
                "--password-file", (folder_ / "password").string()});
    return all;
}

TRun TProgramTest::Run(const TWords& words) {
    return RunBare(WithShop(words));
}

TDatabaseLogin TProgramTest::Login() const {
    if (kHasEngine) return {.database = database_.string()};
    return {.database = Server() + ":" + database_.generic_string(),
            .user = "SYSDBA",
            .password = Environment("TOLVANE_FB_PASSWORD")};
}

void TProgramTest::Sql(const std::string& statement) const {
    TAttachment attachment(Login());
    TTransaction transaction(attachment.Library(), attachment.Handle());
    TQuery query(transaction);
    transaction.Start();
    query.SetText(FromUtf8(statement));
    query.Execute();
    transaction.Commit();
}

int PriceOf(const TVirtualScale& scale, int number) {
    const simulator::TScaleState state = scale.State();
    const auto article = state.articles.find(number);
    return article == state.articles.end() ? -1 : article->second.price.value_or(-1);
}

std::vector<int> NumbersOf(const TVirtualScale& scale) {
    std::vector<int> numbers;
    for (const auto& [number, article] : scale.State().articles)
        if (!article.IsCleared()) numbers.push_back(number);
    return numbers;
}

int CountOf(const TVirtualScale& scale, std::uint8_t command) {
    const auto counts = scale.State().requests.byCommand;
    const auto found = counts.find(command);
    return found == counts.end() ? 0 : found->second;
}

}  // namespace tolvane::test
