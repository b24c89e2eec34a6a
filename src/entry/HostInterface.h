#pragma once

// The interface between a host trade system and Tolvane.dll (32-bit Windows). This file ships with
// the module and needs nothing but the standard headers. docs/host-interface.md has the rest.

#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define TOLVANE_STDCALL __stdcall
#else
#define TOLVANE_STDCALL
#endif

namespace tolvane {

// In front of a text's characters. A text is a pointer to its first character (code page 1251);
// this record ends where the characters start, and a zero byte follows them. A null pointer is the
// empty text. The module reads only Length of a host's text.
struct THostTextHeader {
    std::uint16_t CodePage;       // at -12: 1251
    std::uint16_t ElementSize;    // at -10: 1
    std::int32_t ReferenceCount;  // at -8: -1 for the module's texts, which are never freed
    std::int32_t Length;          // at -4: characters, without the zero byte
};
static_assert(sizeof(THostTextHeader) == 12);

// The host's open connection: character set WIN1251, dialect 3, open as long as the operation runs.
struct THostDatabase {
    std::uint32_t Size;         // of this record: 12
    void* Handle;               // points to the host's attachment handle (isc_db_handle)
    const char* ClientLibrary;  // file name or path of the client library by which the handle was
                                // opened; null: fbclient.dll, then gds32.dll
};

// The host's print service: what it prints is the list view `grid`. The texts are counted: a length
// byte, then at most 255 characters of code page 1251.
using TPrintCode = void(TOLVANE_STDCALL*)(void* object, const std::uint8_t* title,
                                          const std::uint8_t* dateTime, void* grid);
struct TPrintProc {
    TPrintCode Code;  // null: there is no print service
    void* Object;
};

// The module's exports. A result is stored in the host's text variable.
using TGetOperationTitle = void(TOLVANE_STDCALL*)(const char** result);
using TGetOperationType = void(TOLVANE_STDCALL*)(const char** result);
using TSetTQ4ModuleString = void(TOLVANE_STDCALL*)(const char* text, std::int32_t number);
// Eight 32-bit slots. `appHandle` and `mainForm` are window handles, `mainForm` of an MDI frame;
// `messageId` receives the id of the completion message, which is posted to `appHandle`.
using TOperationProcedure = void(TOLVANE_STDCALL*)(void* appHandle, std::int32_t operationNo,
                                                   std::uint32_t* messageId, void* mainForm,
                                                   const THostDatabase* database, const char* text,
                                                   TPrintProc printProc);

#if defined(_WIN32) && !defined(_WIN64)
static_assert(sizeof(THostDatabase) == 12 && sizeof(TPrintProc) == 8);
#endif

}  // namespace tolvane
