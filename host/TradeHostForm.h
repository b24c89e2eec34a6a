#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "host/Connection.h"
#include "host/HostMenu.h"
#include "host/OperationModule.h"
#include "window/Window.h"

namespace tolvane::host {

// The program's main window: an MDI frame with the menu of operations, the database connection and
// the print service.
class TTradeHostForm final : public TWindow {
public:
    // `program` is the executable file: the settings lie beside it with the ending .ini, the
    // modules in the folder "Operations".
    explicit TTradeHostForm(std::filesystem::path program);
    ~TTradeHostForm() override;

    HWND MdiClient() const noexcept { return client_; }
    bool IsConnected() const noexcept { return connection_.IsOpen(); }
    // Connects to the database with the current settings; shows the user why that fails.
    void Connect();
    // Starts the operation with that number, its place in the menu from 1 up.
    void StartOperation(int number);

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT DefaultProc(const TMessage& message) override;

private:
    struct TOperation {
        TOperationModule module;
        THostDatabase database{};  // lives as long as the module may look at it
        std::uint32_t messageId = 0;
        bool running = false;
    };

    void FindOperations();
    void AddMenu();
    void AddClient();
    void Layout() const;
    bool HandleCommand(int id);
    bool HandleWindowCommand(int id);
    bool HandleCompletion(UINT message);
    void SetRunning(TOperation& operation, bool running);
    bool MayChangeConnection() const;
    bool CloseChildren();
    void Disconnect();
    void ShowStatus(std::string_view text) const;
    void ShowConnectionState() const;
    void ShowModules() const;
    void ShowAbout() const;

    std::filesystem::path program_;
    TConnection connection_;
    std::deque<TOperation> operations_;  // addresses stay
    std::vector<std::string> refused_;
    THostMenu menu_;
    HWND client_ = nullptr;
    HWND statusBar_ = nullptr;
};

}  // namespace tolvane::host
