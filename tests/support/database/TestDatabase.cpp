#include "tests/support/database/TestDatabase.h"

#include <ibase.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "database/Query.h"
#include "database/Status.h"
#include "tests/support/Environment.h"
#include "text/Cp1251.h"

// The client library never frees some memory of its password arithmetic and of its first text
// converter.
extern "C" const char* __lsan_default_suppressions();   // NOLINT: the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
    return "leak:libtommath\nleak:iconv_open\n";
}

namespace tolvane::test {
namespace {

constexpr unsigned short kDialect = 3;

std::string Connection(const std::filesystem::path& file, const TLogin& login) {
    return login.address + ":" + file.string();
}

std::filesystem::path NewFile() {
    static int count = 0;
    return Server().folder /
           ("articles-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".fdb");
}

void AppendParameter(std::string& block, int code, std::string_view value) {
    block += static_cast<char>(code);
    block += static_cast<char>(value.size());
    block += value;
}

void Create(const std::filesystem::path& file) {
    const TLogin login;
    const std::string text = "create database '" + Connection(file, login) + "' user '" +
                             login.user + "' password '" + login.password +
                             "' page_size 8192 default character set win1251";
    isc_db_handle database = 0;
    isc_tr_handle transaction = 0;
    TStatus status(Library().Functions());
    isc_dsql_execute_immediate(status, &database, &transaction, 0, text.c_str(), kDialect, nullptr);
    status.Check();
    isc_detach_database(status, &database);
    status.Check();
}

// Each script makes one database, of which tests get copies. The server runs as this user, who may
// therefore copy its files.
std::filesystem::path TemplateOf(const std::string& script) {
    struct TTemplates {
        std::map<std::string, std::filesystem::path> files;
        ~TTemplates() {
            std::error_code ignored;
            for (const auto& [text, file] : files)
                std::filesystem::remove(file, ignored);
        }
    };
    static TTemplates templates;
    std::filesystem::path& file = templates.files[script];
    if (file.empty()) {
        const std::filesystem::path made = NewFile();
        Create(made);
        TAttachment(made, {}).RunScript(script);
        file = made;
    }
    return file;
}

bool IsDefinition(std::string_view statement) {
    return statement.starts_with("create") || statement.starts_with("alter") ||
           statement.starts_with("drop");
}

}  // namespace

const TServer& Server() {
    static const TServer kServer{Environment("TOLVANE_FB_SERVER"),
                                 Environment("TOLVANE_FB_PASSWORD"), Environment("TOLVANE_FB_DIR")};
    return kServer;
}

const TClientLibrary& Library() {
    static const TClientLibrary kLibrary(nullptr);
    return kLibrary;
}

struct TAttachment::TState {
    TState(std::filesystem::path itsFile, TLogin itsLogin)
        : file(std::move(itsFile)), login(std::move(itsLogin)) {
        Attach();
    }
    TState(const TState&) = delete;
    TState& operator=(const TState&) = delete;
    ~TState() { Detach(); }

    void Attach() {
        std::string block(1, isc_dpb_version1);
        AppendParameter(block, isc_dpb_user_name, login.user);
        AppendParameter(block, isc_dpb_password, login.password);
        AppendParameter(block, isc_dpb_lc_ctype, "WIN1251");
        // No test needs its database after a power failure, so nothing is forced to the disk. Only
        // the owner may ask for that.
        if (login.user == TLogin().user)
            AppendParameter(block, isc_dpb_force_write, std::string_view("\0", 1));
        TStatus status(Library().Functions());
        isc_attach_database(status, 0, Connection(file, login).c_str(), &handle,
                            static_cast<short>(block.size()), block.data());
        status.Check();
    }
    void Detach() {
        TStatus status(Library().Functions());
        isc_detach_database(status, &handle);
        handle = 0;
    }

    std::filesystem::path file;
    TLogin login;
    isc_db_handle handle = 0;
};

TAttachment::TAttachment(const std::filesystem::path& file, const TLogin& login)
    : state_(std::make_unique<TState>(file, login)) {}

TAttachment::~TAttachment() = default;

void TAttachment::Renew() {
    state_->Detach();
    state_->Attach();
}

void* TAttachment::Handle() {
    return &state_->handle;
}

void TAttachment::Run(std::string_view statement) {
    TTransaction transaction(Library(), Handle());
    TQuery query(transaction);
    transaction.Start();
    query.SetText(FromUtf8(statement));
    query.Execute();
    transaction.Commit();
}

void TAttachment::RunScript(std::string_view script) {
    TTransaction transaction(Library(), Handle());
    TQuery query(transaction);
    transaction.Start();
    std::istringstream lines{std::string(script)};
    std::string statement;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.starts_with("--")) continue;
        statement += line + '\n';
        if (line.back() != ';') continue;
        if (statement != "commit;\n") {
            query.SetText(FromUtf8(statement));
            query.Execute();
        }
        if (IsDefinition(statement)) {
            transaction.Commit();
            transaction.Start();
        }
        statement.clear();
    }
    transaction.Commit();
}

std::string TAttachment::Ask(std::string_view text) {
    TTransaction transaction(Library(), Handle());
    TQuery query(transaction);
    transaction.Start();
    query.SetText(FromUtf8(text));
    query.Open();
    std::string answer = query.AsText(0, 0, {});
    query.Close();
    transaction.Commit();
    return answer;
}

TTestDatabase::TTestDatabase(std::string_view script) : file_(NewFile()) {
    std::filesystem::copy_file(TemplateOf(std::string(script)), file_);
    host_ = Attach();
}

TTestDatabase::~TTestDatabase() {
    host_.reset();
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

std::unique_ptr<TAttachment> TTestDatabase::Attach(const TLogin& login) const {
    return std::make_unique<TAttachment>(file_, login);
}

void TTestDatabase::Reconnect(const TLogin& login) {
    host_.reset();
    host_ = Attach(login);
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string Schema(std::initializer_list<TSchemaChange> changes) {
    std::string text = ReadFile(std::filesystem::path(TOLVANE_DEMO_FOLDER) / "schema.sql");
    for (const TSchemaChange& change : changes) {
        const std::size_t at = text.find(change.from);
        if (at == std::string::npos)
            throw std::runtime_error("the schema has no " + std::string(change.from));
        text.replace(at, change.from.size(), change.to);
    }
    return text;
}

}  // namespace tolvane::test
