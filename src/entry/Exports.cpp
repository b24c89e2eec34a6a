#include <windows.h>

#include <exception>
#include <string>

#include "entry/HostInterface.h"
#include "entry/HostText.h"
#include "entry/ModuleState.h"
#include "entry/Operation.h"
#include "system/ProcessMemory.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::string_view kTitle = "Програмиране на везни ELICOM EVL/ETS"_cp1251;
constexpr std::string_view kType = "Operation"_cp1251;

// Runs an export's work; nothing that it throws reaches the host.
template <class Work>
void Guard(Work work) noexcept {
    try {
        work();
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is no way to report it to the host
    }
}

void Assign(const char** result, const char* text) {
    if (CanWrite(result, sizeof *result)) *result = text;
}

}  // namespace
}  // namespace tolvane

extern "C" {

void TOLVANE_STDCALL GetOperationTitle(const char** result) {
    tolvane::Guard([&] {
        static const char* const kText = tolvane::MakeHostText(tolvane::kTitle);
        tolvane::Assign(result, kText);
    });
}

void TOLVANE_STDCALL GetOperationType(const char** result) {
    tolvane::Guard([&] {
        static const char* const kText = tolvane::MakeHostText(tolvane::kType);
        tolvane::Assign(result, kText);
    });
}

void TOLVANE_STDCALL SetTQ4ModuleString(const char* text, std::int32_t number) {
    tolvane::Guard([&] {
        if (!tolvane::IsHostText(text)) return;
        std::string read = tolvane::ReadHostText(text);
        // A host that calls this from several threads must not destroy the text.
        static SRWLOCK lock = SRWLOCK_INIT;
        AcquireSRWLockExclusive(&lock);
        tolvane::ModuleState().moduleString.swap(read);
        tolvane::ModuleState().moduleNumber = number;
        ReleaseSRWLockExclusive(&lock);
    });
}

void TOLVANE_STDCALL OperationProcedure(void* appHandle, std::int32_t operationNo,
                                        std::uint32_t* messageId, void* mainForm,
                                        const tolvane::THostDatabase* database,
                                        const char* /*text*/, tolvane::TPrintProc printProc) {
    tolvane::Guard([&] {
        tolvane::StartOperation({static_cast<HWND>(appHandle), operationNo, messageId,
                                 static_cast<HWND>(mainForm), database, printProc});
    });
}

}  // extern "C"
