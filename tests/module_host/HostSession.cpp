#include "tests/module_host/HostSession.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>

#include "tests/support/Environment.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/window/HostFrame.h"
#include "window/Dpi.h"

namespace tolvane::test {

std::filesystem::path BuiltFolder() {
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return std::filesystem::path(name).parent_path();
}

THostIni THostIni::Working() {
    return {
        Environment("TOLVANE_FB_SERVER") + ":" + Environment("TOLVANE_FB_FOLDER") + "/empty.fdb",
        "SYSDBA", Environment("TOLVANE_FB_PASSWORD"), ""};
}

std::string THostIni::Bytes() const {
    return "[Database]\r\nDatabase=" + database + "\r\nUser=" + user + "\r\nPassword=" + password +
           "\r\nClientLibrary=" + clientLibrary + "\r\n";
}

// Runs at different resolutions may be at work at the same time.
THostSession::THostSession()
    : folder_(BuiltFolder() / "host-session" /
              (testing::UnitTest::GetInstance()->current_test_info()->name() +
               ("-" + std::to_string(TDpi::System().DotsPerInch())))) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ / "Operations");
}

THostSession::~THostSession() {
    Close();
    RunLoopDry();
}

void THostSession::AddModule(const std::string& builtFile, const std::string& name) const {
    std::filesystem::copy_file(BuiltFolder() / builtFile,
                               folder_ / "Operations" / (name.empty() ? builtFile : name));
}

void THostSession::AddFile(const std::string& name, const std::string& bytes) const {
    PutFile(folder_ / "Operations" / name, bytes);
}

void THostSession::AddDemo() const {
    std::filesystem::copy(BuiltFolder() / "demo", folder_ / "demo");
}

void THostSession::WriteIni(const THostIni& ini) const {
    PutFile(folder_ / "TradeHost.ini", ini.Bytes());
}

void THostSession::Open() {
    form_ = std::make_unique<host::TTradeHostForm>(folder_ / "TradeHost.exe");
    Form().Show(SW_SHOWNORMAL);
    RunLoopDry();
}

void THostSession::OpenWorking() {
    AddModule("FakeOperation.dll");
    WriteIni(THostIni::Working());
    Open();
    Form().Connect();
    if (!Form().IsConnected()) throw std::runtime_error("no connection");
}

// The end of the main window posts a quit message, which must not end the next test's loop.
void THostSession::Close() {
    form_.reset();
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        DispatchMessageW(&message);
}

void THostSession::Command(int id) const {
    SendMessageW(Frame(), WM_COMMAND, static_cast<WPARAM>(id), 0);
    RunLoopDry();
}

std::string THostSession::StatusText() const {
    const HWND bar = Component(Frame(), "StatusBar");
    std::array<wchar_t, 512> text{};
    SendMessageW(bar, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text.data()));
    return Utf8(text.data());
}

HWND THostSession::Child() const {
    return FindWindowExW(Form().MdiClient(), nullptr, kFakeClass, nullptr);
}

TFakeState& THostSession::Fake() {
    const HMODULE module = GetModuleHandleW(L"FakeOperation.dll");
    const auto state = reinterpret_cast<TFakeStateFunction>(
        reinterpret_cast<void*>(GetProcAddress(module, "FakeState")));
    if (state == nullptr) throw std::runtime_error("the fake operation is not loaded");
    return *state();
}

std::string MenuText(HMENU menu, int position) {
    std::array<wchar_t, 256> text{};
    GetMenuStringW(menu, static_cast<UINT>(position), text.data(), static_cast<int>(text.size()),
                   MF_BYPOSITION);
    return Utf8(text.data());
}

bool IsGreyed(HMENU menu, int position) {
    const UINT state = GetMenuState(menu, static_cast<UINT>(position), MF_BYPOSITION);
    return state != static_cast<UINT>(-1) && (state & MF_GRAYED) != 0;
}

}  // namespace tolvane::test
