#include "database/ClientLibrary.h"

#include <string>
#include <vector>

#include "database/ClientFunctions.h"
#include "database/DatabaseError.h"
#include "system/Library.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

struct TFoundLibrary {
    void* handle = nullptr;
    std::string name;
};

TFoundLibrary FindLibrary(const char* name) {
    const std::vector<std::string> names =
        name != nullptr ? std::vector<std::string>{name} : UsualClientLibraries();
    std::string tried;
    for (const std::string& each : names) {
        if (void* const handle = FindLoadedLibrary(each.c_str())) return {handle, each};
        tried.append(tried.empty() ? "" : ", ").append(each);
    }
    throw TDatabaseError(
        std::string("Клиентската библиотека на базата данни не е заредена: "_cp1251) + tried);
}

// Takes functions from a library, and keeps the name of the first one that it lacks.
class TBinding {
public:
    explicit TBinding(void* library) : library_(library) {}

    template <class F>
    void Find(F& function, const char* name) {
        function = reinterpret_cast<F>(FindFunction(library_, name));
    }
    template <class F>
    void Bind(F& function, const char* name) {
        Find(function, name);
        if (function == nullptr && missing_.empty()) missing_ = name;
    }
    const std::string& Missing() const { return missing_; }

private:
    void* library_;
    std::string missing_;
};

void BindFunctions(TBinding& library, TClientFunctions& f) {
    library.Bind(f.startMultiple, "isc_start_multiple");
    library.Bind(f.commitTransaction, "isc_commit_transaction");
    library.Bind(f.rollbackTransaction, "isc_rollback_transaction");
    library.Bind(f.allocateStatement, "isc_dsql_allocate_statement");
    library.Bind(f.prepare, "isc_dsql_prepare");
    library.Bind(f.describe, "isc_dsql_describe");
    library.Bind(f.execute, "isc_dsql_execute");
    library.Bind(f.executeImmediate, "isc_dsql_execute_immediate");
    library.Bind(f.fetch, "isc_dsql_fetch");
    library.Bind(f.freeStatement, "isc_dsql_free_statement");
    library.Bind(f.openBlob, "isc_open_blob2");
    library.Bind(f.getSegment, "isc_get_segment");
    library.Bind(f.closeBlob, "isc_close_blob");
    library.Bind(f.sqlCode, "isc_sqlcode");
    library.Find(f.interpret, "fb_interpret");
    library.Find(f.cancel, "fb_cancel_operation");
    if (f.interpret == nullptr) library.Bind(f.interpretUnbounded, "isc_interprete");
}

TClientFunctions FunctionsOf(const TFoundLibrary& library) {
    TClientFunctions functions;
    TBinding binding(library.handle);
    BindFunctions(binding, functions);
    if (binding.Missing().empty()) return functions;
    throw TDatabaseError(std::string("В клиентската библиотека "_cp1251) + library.name +
                         std::string(" липсва функцията "_cp1251) + binding.Missing());
}

std::string Cure() {
    return std::string(ClientLibraryCure()).append(", or name its file with --client-library.");
}

struct TOwnLibrary {
    TLibrary loaded;
    std::string name;
};

TOwnLibrary LoadFirst(const std::vector<std::filesystem::path>& names) {
    std::string tried;
    for (const std::filesystem::path& path : names) {
        const std::string name = PathText(path);
        try {
            return {TLibrary(path), name};
        } catch (const TFailure& failure) {
            tried.append("\n");
            // Some systems' words begin with the name.
            if (!failure.Text().starts_with(name)) tried.append(name).append(": ");
            tried.append(failure.Text());
        }
    }
    throw TDatabaseError("The Firebird client library cannot be loaded:" + tried + "\n" + Cure());
}

}  // namespace

TClientLibrary::TClientLibrary(const char* name) : TClientLibrary(FunctionsOf(FindLibrary(name))) {}

TClientLibrary::TClientLibrary(const TClientFunctions& functions)
    : functions_(std::make_unique<const TClientFunctions>(functions)) {}

TClientLibrary TClientLibrary::Load(const std::filesystem::path& name) {
    if (!name.empty()) return LoadOneOf({name});
    const std::vector<std::string> usual = UsualClientLibraries();
    return LoadOneOf({usual.begin(), usual.end()});
}

TClientLibrary TClientLibrary::LoadOneOf(const std::vector<std::filesystem::path>& names) {
    TOwnLibrary own = LoadFirst(names);
    TClientFunctions functions;
    TBinding binding(own.loaded.Handle());
    BindFunctions(binding, functions);
    binding.Bind(functions.attachDatabase, "isc_attach_database");
    binding.Bind(functions.detachDatabase, "isc_detach_database");
    if (!binding.Missing().empty())
        throw TDatabaseError(own.name + " is no Firebird client library: it lacks the function " +
                             binding.Missing() + ".\n" + Cure());
    own.loaded.Keep();
    return TClientLibrary(functions);
}

TCallCount TClientLibrary::Calls() const {
    return functions_->calls;
}

TClientLibrary::TClientLibrary(TClientLibrary&&) noexcept = default;
TClientLibrary& TClientLibrary::operator=(TClientLibrary&&) noexcept = default;
TClientLibrary::~TClientLibrary() = default;

}  // namespace tolvane
