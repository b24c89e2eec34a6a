#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/module/Configuration.h"
#include "tests/support/module/Connection.h"
#include "tests/support/module/LoadedModule.h"
#include "tests/support/window/GridReader.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {

// What the host's print service was called with.
struct TPrinted {
    std::string title;     // the bytes
    std::string dateTime;  // the bytes
    HWND grid = nullptr;
    void* object = nullptr;
};

// A host with a frame, a connection and the module, as most tests need it. There is no
// configuration file yet.
class TSession {
public:
    explicit TSession(const std::string& database = "shop.fdb");

    void Start(std::int32_t operationNo = 17) { StartIn(host, operationNo); }
    // In another main window of the same host.
    void StartIn(const THostFrame& frame, std::int32_t operationNo = 17);
    HWND List() const { return host.ChildOfClass(L"TElicomPluScaleListForm"); }
    HWND Control(const std::string& name) const { return Component(List(), name); }
    TGridReader Grid() const { return TGridReader(Control("aDBGrid")); }
    // Presses a button of the list window.
    void Click(const std::string& name) const;
    void CloseList() const;
    int Completions() const { return host.Received(messageId); }

    TConfiguration configuration;
    THostFrame host;
    TConnection connection;
    TLoadedModule module;
    std::uint32_t messageId = 0;
    std::vector<TPrinted> printed;

private:
    static void TOLVANE_STDCALL Print(void* object, const std::uint8_t* title,
                                      const std::uint8_t* dateTime, void* grid);
};

// The user's decimal separator.
std::string DecimalSeparator();
// "1.50" with the user's decimal separator in place of the point.
std::string Localised(std::string number);

}  // namespace tolvane::test
