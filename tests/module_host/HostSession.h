#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>

#include "host/TradeHostForm.h"
#include "tests/module_host/FakeOperation.h"

namespace tolvane::test {

inline bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The folder of this program.
std::filesystem::path BuiltFolder();

// The host's settings; Working gives those that reach the real server of the tests.
struct THostIni {
    std::string database;
    std::string user = "SYSDBA";
    std::string password;
    std::string clientLibrary;

    static THostIni Working();
    std::string Bytes() const;
};

// A folder of the test's own with a host's files in it, and the host's main window.
class THostSession {
public:
    THostSession();
    THostSession(const THostSession&) = delete;
    THostSession& operator=(const THostSession&) = delete;
    ~THostSession();

    // Before Open: files for the folder "Operations"; a built one may get another name there.
    void AddModule(const std::string& builtFile, const std::string& name = {}) const;
    void AddFile(const std::string& name, const std::string& bytes) const;
    // The scripts of the demo shop.
    void AddDemo() const;
    void WriteIni(const THostIni& ini) const;
    void Open();
    // Opens the host with the fake operation and a connection.
    void OpenWorking();
    void Close();

    const std::filesystem::path& Folder() const { return folder_; }
    host::TTradeHostForm& Form() const { return *form_; }
    HWND Frame() const { return form_->Handle(); }
    // Sends a command of the menu and runs the loop until no message waits.
    void Command(int id) const;
    std::string StatusText() const;
    HMENU Menu(int position) const { return GetSubMenu(GetMenu(Frame()), position); }
    HWND Child() const;
    static TFakeState& Fake();

private:
    std::filesystem::path folder_;
    std::unique_ptr<host::TTradeHostForm> form_;
};

// The positions of the menus in the bar.
inline constexpr int kConnectionMenu = 0;
inline constexpr int kOperationsMenu = 1;
inline constexpr int kWindowsMenu = 2;

std::string MenuText(HMENU menu, int position);  // UTF-8
bool IsGreyed(HMENU menu, int position);

}  // namespace tolvane::test
