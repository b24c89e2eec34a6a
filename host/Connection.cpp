#include "host/Connection.h"

#include <array>
#include <string_view>
#include <vector>

#include "system/Library.h"
#include "text/Cp1251.h"
#include "text/Joined.h"
#include "window/Handles.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

// The functions of the client library that a host needs, as the library declares them.
using TAttachDatabase = std::intptr_t(__stdcall*)(std::intptr_t* status, short nameLength,
                                                  const char* name, std::uint32_t* handle,
                                                  short parametersLength, const char* parameters);
using TDetachDatabase = std::intptr_t(__stdcall*)(std::intptr_t* status, std::uint32_t* handle);
using TCreateDatabase = std::intptr_t(__stdcall*)(std::intptr_t* status, short nameLength,
                                                  const char* name, std::uint32_t* handle,
                                                  short parametersLength, const char* parameters,
                                                  short unused);
using TStart = std::intptr_t(__stdcall*)(std::intptr_t* status, std::uint32_t* transaction,
                                         short count, void* databases);
using TEndTransaction = std::intptr_t(__stdcall*)(std::intptr_t* status,
                                                  std::uint32_t* transaction);
using TExecute = std::intptr_t(__stdcall*)(std::intptr_t* status, std::uint32_t* handle,
                                           std::uint32_t* transaction, unsigned short length,
                                           const char* text, unsigned short dialect,
                                           const void* parameters);
using TGetClientVersion = void(__stdcall*)(char* text);
using TInterpret = std::intptr_t(__stdcall*)(char* text, unsigned size,
                                             const std::intptr_t** status);

// Codes of the attachment's parameter block.
constexpr char kBlockVersion1 = 1;
constexpr char kPageSize = 4;
constexpr char kUserName = 28;
constexpr char kPassword = 29;
constexpr char kCharacterSet = 48;
constexpr char kConnectTimeout = 57;  // seconds, over a network
constexpr char kRoleName = 60;
constexpr char kDialect = 63;
constexpr char kDatabaseCharacterSet = 68;

constexpr unsigned short kSqlDialect = 3;

template <class Function>
Function Find(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void AddText(std::string& block, char code, std::string_view text) {
    if (text.empty()) return;
    const std::string_view cut = text.substr(0, 255);
    block += code;
    block += static_cast<char>(static_cast<unsigned char>(cut.size()));
    block += cut;
}

std::string ParameterBlock(const THostSettings& settings) {
    std::string block(1, kBlockVersion1);
    AddText(block, kUserName, settings.user);
    AddText(block, kPassword, settings.password);
    AddText(block, kRoleName, settings.role);
    AddText(block, kCharacterSet, "WIN1251");
    AddText(block, kDialect, std::string_view("\3", 1));
    AddText(block, kConnectTimeout, std::string_view("\12", 1));
    return block;
}

// The database of a transaction, as the client library takes it.
struct TTransactionPart {
    std::uint32_t* database;
    std::int32_t length;
    const char* parameters;
};

constexpr std::size_t kLongestPath = 32768;

std::filesystem::path FileOf(HMODULE library) {
    std::wstring name(kLongestPath, L'\0');
    name.resize(GetModuleFileNameW(library, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

// Where Firebird looks for its engine instead; empty: beside its client library.
std::filesystem::path FolderOfFirebird() {
    std::wstring name(kLongestPath, L'\0');
    name.resize(GetEnvironmentVariableW(L"FIREBIRD", name.data(), static_cast<DWORD>(name.size())));
    return name;
}

// Whether the library is an engine, or has one that it can load.
bool BringsEngine(HMODULE library) {
    const std::filesystem::path file = FileOf(library);
    if (_wcsicmp(file.filename().c_str(), L"fbembed.dll") == 0) return true;
    std::filesystem::path folder = FolderOfFirebird();
    if (folder.empty()) folder = file.parent_path();
    std::error_code ignored;
    for (const wchar_t* const engine : {L"engine12.dll", L"engine13.dll", L"engine14.dll"})
        if (std::filesystem::exists(folder / L"plugins" / engine, ignored)) return true;
    return false;
}

std::string ClientFailure(DWORD error) {
    switch (error) {
        case ERROR_MOD_NOT_FOUND:
            return std::string("не е намерена"_cp1251);
        case ERROR_BAD_EXE_FORMAT:
            return std::string("не е 32-битова библиотека"_cp1251);
        case ERROR_PROC_NOT_FOUND:
            return std::string("не е клиент на Firebird или InterBase"_cp1251);
        default:
            return WindowsErrorText(error);
    }
}

}  // namespace

bool TConnection::TryClient(const std::filesystem::path& file) {
    TOwnedLibrary library(static_cast<HMODULE>(LoadLibraryOf(file)));
    if (!library) return false;
    if (Find<TAttachDatabase>(library.Get(), "isc_attach_database") == nullptr) {
        library.Reset();
        SetLastError(ERROR_PROC_NOT_FOUND);
        return false;
    }
    // It is never unloaded, see the header.
    client_ = library.Release();
    library_ = Narrow(file.wstring());
    return true;
}

void TConnection::LoadClient(const std::string& wanted, const std::filesystem::path& folder) {
    if (client_ != nullptr && wanted_ == wanted) return;
    std::vector<std::string> names = {wanted};
    if (wanted.empty()) names = UsualClientLibraries();
    std::string reasons;
    for (const std::string& name : names) {
        std::filesystem::path file(Wide(name));
        if (file.has_parent_path() && !file.is_absolute()) file = folder / file;
        if (TryClient(file)) {
            wanted_ = wanted;
            return;
        }
        reasons += Joined({"\r\n", name, ": ", ClientFailure(GetLastError())});
    }
    throw TConnectionError(Joined(
        {"Клиентската библиотека на Firebird не може да бъде заредена:"_cp1251, reasons,
         "\r\n\r\nИнсталирайте 32-битов клиент на Firebird или посочете файла му с ключа ClientLibrary в секция [Database] на TradeHost.ini. После изберете \"Връзка с базата\", \"Свързване\"."_cp1251}));
}

void TConnection::Open(const THostSettings& settings, const std::filesystem::path& folder) {
    Close();
    LoadClient(settings.clientLibrary, folder);
    Attach(settings);
    database_ = settings.database;
}

void TConnection::Attach(const THostSettings& settings) {
    const auto attach = Find<TAttachDatabase>(client_, "isc_attach_database");
    const std::string block = ParameterBlock(settings);
    // Length 0: the name ends with a zero byte.
    attach(status_, 0, settings.database.c_str(), &handle_, static_cast<short>(block.size()),
           block.data());
    if (status_[0] != 1 || status_[1] == 0) return;
    handle_ = 0;
    throw TConnectionError(Joined(
        {"Няма връзка с базата данни "_cp1251, settings.database, ":\r\n", ErrorText(),
         "\r\n\r\nПроверете дали сървърът работи и дали адресът, потребителят и паролата са верни: \"Връзка с базата\", \"База данни\". После изберете \"Свързване\"."_cp1251}));
}

bool TConnection::FindEngine(const THostSettings& settings, const std::filesystem::path& folder) {
    try {
        LoadClient(settings.clientLibrary, folder);
        return BringsEngine(client_);
    } catch (const TConnectionError&) {
        return false;
    }
}

void TConnection::Make(const THostSettings& settings, const std::filesystem::path& folder,
                       const std::vector<std::string>& statements) {
    Close();
    LoadClient(settings.clientLibrary, folder);
    try {
        Create(settings);
        Run(statements);
    } catch (const TConnectionError& error) {
        const auto drop = Find<TDetachDatabase>(client_, "isc_drop_database");
        if (handle_ != 0 && drop != nullptr) drop(status_, &handle_);
        Close();
        throw TConnectionError(Joined({"Базата данни "_cp1251, settings.database,
                                       " не може да бъде създадена:\r\n"_cp1251, error.what()}));
    }
    Close();
}

void TConnection::Create(const THostSettings& settings) {
    const auto create = Find<TCreateDatabase>(client_, "isc_create_database");
    if (create == nullptr) throw TConnectionError("isc_create_database");
    std::string block = ParameterBlock(settings);
    AddText(block, kPageSize, std::string_view("\0\40\0\0", 4));  // 8192
    AddText(block, kDatabaseCharacterSet, "WIN1251");
    create(status_, 0, settings.database.c_str(), &handle_, static_cast<short>(block.size()),
           block.data(), 0);
    CheckStatus();
}

void TConnection::Run(const std::vector<std::string>& statements) {
    const auto start = Find<TStart>(client_, "isc_start_multiple");
    const auto commit = Find<TEndTransaction>(client_, "isc_commit_transaction");
    const auto rollback = Find<TEndTransaction>(client_, "isc_rollback_transaction");
    const auto execute = Find<TExecute>(client_, "isc_dsql_execute_immediate");
    if (start == nullptr || commit == nullptr || rollback == nullptr || execute == nullptr)
        throw TConnectionError("isc_dsql_execute_immediate");
    std::uint32_t transaction = 0;
    try {
        for (const std::string& statement : statements) {
            TTransactionPart part{&handle_, 0, nullptr};
            if (transaction == 0) start(status_, &transaction, 1, &part);
            CheckStatus();
            if (statement == "commit")
                commit(status_, &transaction);
            else
                execute(status_, &handle_, &transaction, 0, statement.c_str(), kSqlDialect,
                        nullptr);
            CheckStatus();
        }
        if (transaction != 0) commit(status_, &transaction);
        CheckStatus();
    } catch (const TConnectionError&) {
        if (transaction != 0) rollback(status_, &transaction);
        throw;
    }
}

// Throws the library's words when the latest call has failed.
void TConnection::CheckStatus() const {
    if (status_[0] == 1 && status_[1] != 0) throw TConnectionError(ErrorText());
}

void TConnection::Close() noexcept {
    if (handle_ == 0) return;
    const auto detach = Find<TDetachDatabase>(client_, "isc_detach_database");
    if (detach != nullptr) detach(status_, &handle_);
    handle_ = 0;
    database_.clear();
}

std::string TConnection::ClientVersion() const {
    if (client_ == nullptr) return {};
    const auto version = Find<TGetClientVersion>(client_, "isc_get_client_version");
    if (version == nullptr) return {};
    std::array<char, 256> text{};  // as long as the library's own texts of this kind may be
    version(text.data());
    return text.data();
}

std::string TConnection::ErrorText() const {
    const auto interpret = Find<TInterpret>(client_, "fb_interpret");
    if (interpret == nullptr) return std::to_string(status_[1]);
    std::string text;
    std::array<char, 1024> line{};
    const std::intptr_t* at = status_;
    while (interpret(line.data(), static_cast<unsigned>(line.size()), &at) != 0) {
        if (!text.empty()) text += "\r\n";
        text += line.data();
    }
    return text;
}

}  // namespace tolvane::host
