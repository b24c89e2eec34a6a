#include "database/Attachment.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <string_view>
#include <utility>

#include "database/Status.h"
#include "system/EmbeddedEngine.h"
#include "system/SystemError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::string_view kCharacterSet = "WIN1251";
constexpr char kSqlDialect = 3;
// Of a server that accepts the connection and then says nothing.
constexpr char kAnswerSeconds = 30;
constexpr std::string_view kEmbeddedUser = "SYSDBA";
// A plain path must not be tried on a server of this computer when there is no engine.
constexpr std::string_view kEnginesOnly = "Providers=Engine14,Engine13,Engine12";

// The parameters of a connection, as the client library takes them.
class TParameterBlock {
public:
    void Add(int code, std::string_view value) {
        if (value.size() > std::numeric_limits<unsigned char>::max())
            throw TDatabaseError("the user or the password is longer than 255 bytes");
        block_ += static_cast<char>(code);
        block_ += static_cast<char>(value.size());
        block_ += value;
    }
    const std::string& Bytes() const { return block_; }

private:
    std::string block_{isc_dpb_version1};
};

TParameterBlock ParametersFor(const TDatabaseLogin& login, const std::string& user) {
    TParameterBlock block;
    block.Add(isc_dpb_lc_ctype, kCharacterSet);
    block.Add(isc_dpb_sql_dialect, {&kSqlDialect, 1});
    block.Add(isc_dpb_utf8_filename, {});
    block.Add(isc_dpb_connect_timeout, {&kAnswerSeconds, 1});
    if (!user.empty()) block.Add(isc_dpb_user_name, user);
    if (!login.password.empty()) block.Add(isc_dpb_password, login.password);
    if (IsEmbedded(login.database)) block.Add(isc_dpb_config, kEnginesOnly);
    return block;
}

// A file as the client's computer names it.
std::filesystem::path FileOf(const std::string& database) {
    return std::u8string(database.begin(), database.end());
}

// Windows' own number for a file that another program has.
constexpr std::int64_t kSharingViolation = 32;

bool IsInUse(const TDatabaseError& error) {
    return std::any_of(error.Status().begin(), error.Status().end(), [](const auto& each) {
        return (each.kind == isc_arg_gds && each.number == isc_already_opened) ||
               (each.kind == isc_arg_win32 && each.number == kSharingViolation);
    });
}

constexpr std::string_view kInUse =
    "Another program has the file open. If that is a server, name it: localhost:PATH.";

constexpr std::string_view kNoEngine =
    "A plain path needs the embedded engine (Debian: firebird3.0-server-core). A database of a "
    "server is written SERVER/PORT:PATH.";

// The words of a failure that is met before anybody knows the connection's character set.
std::string Words(const std::string& words) {
    return IsUtf8(words) ? FromUtf8(words) : words;
}

// Throws the failure of an attachment, with what comes before its words, and with its cure.
[[noreturn]] void ThrowFailure(const TDatabaseError& error, bool embedded, std::string lead) {
    std::string text = std::move(lead) + Words(error.what());
    if (embedded && IsInUse(error))
        throw TDatabaseInUse(text.append("\n").append(kInUse), error.Status(), error.SqlCode());
    if (embedded && error.ErrorCode() == isc_unavailable) text.append("\n").append(kNoEngine);
    throw TDatabaseError(text, error.Status(), error.SqlCode());
}

// Refuses a file that others use while they cannot see the engine's locks.
void CheckUse(const std::string& database, TFileUse allowed) {
    const TFileUse use = UseOf(FileOf(database));
    if (use == TFileUse::Unknown || use == allowed) return;
    if (allowed == TFileUse::Free) throw TDatabaseInUse(std::string(kInUse));
    throw TDatabaseError(
        use == TFileUse::Shared
            ? "The engine shares the file with other programs (ServerMode in firebird.conf), but "
              "its locks lie in a private folder. Let FIREBIRD_LOCK name the folder that all use."
            : std::string(kInUse));
}

}  // namespace

bool IsEmbedded(const std::string& database) {
    if (database.find("://") != std::string::npos || database.starts_with("\\\\")) return false;
    const std::size_t colon = database.find(':');
    if (colon == std::string::npos || database.front() == '/') return true;
    // The letter of a drive.
    return colon == 1 && std::isalpha(static_cast<unsigned char>(database.front())) != 0;
}

struct TAttachment::TState {
    explicit TState(const TDatabaseLogin& login)
        : library(TClientLibrary::Load(login.clientLibrary)) {}
    TState(const TState&) = delete;
    TState& operator=(const TState&) = delete;
    ~TState() {
        if (handle == isc_db_handle{}) return;
        // Its failure, after a lost connection, leaves nothing that could be freed.
        TStatus status(library.Functions());
        library.Functions().detachDatabase(status, &handle);
    }

    void Attach(const TDatabaseLogin& login, const std::string& user) {
        const bool isPrivate = IsEmbedded(login.database) && PrepareEngineLocks();
        if (isPrivate) CheckUse(login.database, TFileUse::Free);
        const TParameterBlock block = ParametersFor(login, user);
        TStatus status(library.Functions());
        {
            const TClientCallScope scope;
            library.Functions().attachDatabase(status, 0, login.database.c_str(), &handle,
                                               static_cast<short>(block.Bytes().size()),
                                               block.Bytes().data());
        }
        status.Check();
        if (isPrivate) CheckUse(login.database, TFileUse::Exclusive);
    }

    TClientLibrary library;
    isc_db_handle handle{};
};

TAttachment::TAttachment(const TDatabaseLogin& login) : state_(std::make_unique<TState>(login)) {
    const bool embedded = IsEmbedded(login.database);
    const std::string user =
        embedded && login.user.empty() ? std::string(kEmbeddedUser) : login.user;
    std::string failed = "The database \"" + FromUtf8(login.database) + "\" cannot be opened";
    if (!user.empty()) failed.append(" as user \"").append(FromUtf8(user)).append("\"");
    failed.append(":\n");
    try {
        state_->Attach(login, user);
    } catch (const TDatabaseInUse& error) {
        throw TDatabaseInUse(failed + error.what());
    } catch (const TDatabaseError& error) {
        ThrowFailure(error, embedded, failed);
    } catch (const std::exception& error) {
        throw TDatabaseError(failed + FailureText(error));
    }
}

TAttachment::TAttachment(TAttachment&&) noexcept = default;
TAttachment& TAttachment::operator=(TAttachment&&) noexcept = default;
TAttachment::~TAttachment() = default;

const TClientLibrary& TAttachment::Library() const noexcept {
    return state_->library;
}

void* TAttachment::Handle() noexcept {
    return &state_->handle;
}

}  // namespace tolvane
