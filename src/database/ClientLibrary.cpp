#include "database/ClientLibrary.h"

#include "database/ClientFunctions.h"
#include "database/DatabaseError.h"
#include "system/LoadedLibrary.h"
#include "text/Cp1251.h"

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

template <class F>
void Find(F& function, const TFoundLibrary& library, const char* name) {
    function = reinterpret_cast<F>(FindFunction(library.handle, name));
}

template <class F>
void Bind(F& function, const TFoundLibrary& library, const char* name) {
    Find(function, library, name);
    if (function != nullptr) return;
    throw TDatabaseError(std::string("В клиентската библиотека "_cp1251) + library.name +
                         std::string(" липсва функцията "_cp1251) + name);
}

TClientFunctions BindFunctions(const TFoundLibrary& library) {
    TClientFunctions f;
    Bind(f.startMultiple, library, "isc_start_multiple");
    Bind(f.commitTransaction, library, "isc_commit_transaction");
    Bind(f.rollbackTransaction, library, "isc_rollback_transaction");
    Bind(f.allocateStatement, library, "isc_dsql_allocate_statement");
    Bind(f.prepare, library, "isc_dsql_prepare");
    Bind(f.describe, library, "isc_dsql_describe");
    Bind(f.execute, library, "isc_dsql_execute");
    Bind(f.executeImmediate, library, "isc_dsql_execute_immediate");
    Bind(f.fetch, library, "isc_dsql_fetch");
    Bind(f.freeStatement, library, "isc_dsql_free_statement");
    Bind(f.openBlob, library, "isc_open_blob2");
    Bind(f.getSegment, library, "isc_get_segment");
    Bind(f.closeBlob, library, "isc_close_blob");
    Bind(f.sqlCode, library, "isc_sqlcode");
    Find(f.interpret, library, "fb_interpret");
    if (f.interpret == nullptr) Bind(f.interpretUnbounded, library, "isc_interprete");
    return f;
}

}  // namespace

TClientLibrary::TClientLibrary(const char* name)
    : functions_(std::make_unique<const TClientFunctions>(BindFunctions(FindLibrary(name)))) {}
TClientLibrary::TClientLibrary(TClientLibrary&&) noexcept = default;
TClientLibrary& TClientLibrary::operator=(TClientLibrary&&) noexcept = default;
TClientLibrary::~TClientLibrary() = default;

}  // namespace tolvane
