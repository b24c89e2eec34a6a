#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/Connection.h"
#include "host/HostMenu.h"
#include "host/Operations.h"
#include "window/Window.h"

namespace tolvane::host {

// The program's main window: an MDI frame with the menu of operations, the database connection and
// the print service.
class TTradeHostForm final : public TWindow {
public:
    // `program` is the executable file. Its folder holds the settings (its name with the extension
    // .ini) and the folder "Operations" with the modules.
    explicit TTradeHostForm(std::filesystem::path program);
    ~TTradeHostForm() override;

    HWND MdiClient() const noexcept { return client_; }
    bool IsConnected() const noexcept { return connection_.IsOpen(); }
    // Reads the settings and connects to the database; shows the user why it failed.
    void Connect();
    // Starts the operation with this number: its position in the menu, from 1 on.
    void StartOperation(int number);

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT DefaultProc(const TMessage& message) override;

private:
    void AddMenu();
    void AddClient();
    void Layout() const;
    bool HandleCommand(int id);
    bool HandleWindowCommand(int id);
    bool HandleCompletion(UINT message);
    // Greys the operation's menu item while it runs.
    void ShowRunning(int number, bool running) const;
    bool MayChangeConnection() const;
    bool CloseChildren();
    void Disconnect();
    void ShowStatus(std::string_view text) const;
    void ShowConnectionState() const;
    void ShowModules() const;
    void ShowAbout() const;

    std::filesystem::path program_;
    TConnection connection_;
    TOperations operations_;
    THostMenu menu_;
    HWND client_ = nullptr;
    HWND statusBar_ = nullptr;
};

}  // namespace tolvane::host
