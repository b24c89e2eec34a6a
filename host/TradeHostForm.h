#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/Connection.h"
#include "host/HostMenu.h"
#include "host/HostSettings.h"
#include "host/Operations.h"
#include "window/Dpi.h"
#include "window/Handles.h"
#include "window/Window.h"

namespace tolvane::host {

enum class TDemoOffer;

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
    // Shows the window where it was when the program ended last; `show` as the system has asked.
    void Show(int show);
    // Reads the settings and connects to the database; shows the user why it failed. Asks for the
    // database when the settings name none, and offers the demo shop where an engine can open it.
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
    // The window has come to a monitor of another resolution, where it should lie at `place`.
    void FollowDpi(TDpi dpi, const RECT& place);
    bool HandleCommand(int id);
    bool HandleWindowCommand(int id);
    bool HandleCompletion(UINT message);
    // Greys the operation's menu item while it runs.
    void ShowRunning(int number, bool running) const;
    bool MayChangeConnection() const;
    // Asks which database to open, until one is open or the user gives up.
    void ChooseDatabase();
    std::filesystem::path DemoFolder() const;
    TDemoOffer DemoOffer(const THostSettings& settings);
    THostSettings DemoLogin(const THostSettings& settings) const;
    // Makes the demo shop when it is not there; shows the user why that fails, and returns false.
    bool MakeDemo(const THostSettings& settings);
    void OpenLast(std::size_t number);
    // Returns whether the database is open now; shows the user why it is not.
    bool OpenDatabase(const THostSettings& settings);
    bool CloseChildren();
    void Disconnect();
    void ShowStatus(std::string_view text) const;
    void ShowConnectionState() const;
    void ShowModules() const;
    void ShowAbout() const;
    std::filesystem::path SettingsFile() const;
    // Nothing when they cannot be read, which the user is shown.
    std::optional<TIniDocument> ReadSettings() const;
    // Changes the settings' file. It is of no use to the user to know that this failed.
    void Remember(const std::function<void(TIniDocument&)>& change) const noexcept;
    void RememberPlace() const noexcept;

    std::filesystem::path program_;
    TConnection connection_;
    TOperations operations_;
    THostMenu menu_;
    HWND client_ = nullptr;
    HWND statusBar_ = nullptr;
    TOwnedFont statusFont_;  // none while the bar has its own
};

}  // namespace tolvane::host
