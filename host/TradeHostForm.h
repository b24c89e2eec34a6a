#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>

#include "host/Connection.h"
#include "host/OperationModule.h"
#include "window/Handles.h"
#include "window/Window.h"

namespace tolvane::host {

// The program's main window: an MDI frame with the menu of operations, the database connection and
// the print service. Its message loop is an ordinary one and knows nothing of the modules.
class TTradeHostForm final : public TWindow {
public:
    // `program` is the executable file: the settings lie beside it with the ending .ini, the
    // modules in the folder "Operations".
    explicit TTradeHostForm(std::filesystem::path program);
    ~TTradeHostForm() override;

    HWND MdiClient() const noexcept { return client_; }
    // Connects to the database; tells the user when that fails, unless told to be quiet.
    void Connect();
    // Starts the operation with that place in the menu, from 1 up.
    void StartOperation(int place);

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

    void MakeMenu();
    void MakeClient();
    void Layout() const;
    bool HandleCommand(int id);
    bool HandleCompletion(UINT message);
    void SetRunning(TOperation& operation, bool running);
    bool AnyRunning() const;
    bool CloseChildren();
    void Disconnect();
    void ShowConnectionState() const;
    void ShowModules() const;
    void ShowAbout() const;

    std::filesystem::path program_;
    TConnection connection_;
    std::deque<TOperation> operations_;  // addresses stay
    std::deque<std::string> refused_;
    TOwnedMenu menu_;
    HMENU operationsMenu_ = nullptr;
    HMENU windowsMenu_ = nullptr;
    HWND client_ = nullptr;
    HWND statusBar_ = nullptr;
};

}  // namespace tolvane::host
