// Drives the windows of another program for scripts, one action per call:
//
//   window-driver rows NAME COUNT        waits until the list view NAME has COUNT rows or more
//   window-driver mark NAME FROM TO      marks rows of the list view NAME, from 0
//   window-driver window CLASS           waits until a window of the class is visible
//   window-driver gone CLASS             waits until no window of the class is visible
//   window-driver enabled NAME           waits until the control is enabled
//   window-driver command CLASS NUMBER   posts a menu command to the window of the class
//   window-driver click NAME             presses a button
//   window-driver title NAME COLUMN      clicks the title of a column of the list view NAME, from 0
//   window-driver key NAME CODE          presses the key with the virtual code CODE
//   window-driver type NAME TEXT         puts TEXT (UTF-8) into an enabled edit line
//   window-driver close CLASS            asks the window to close
//   window-driver text NAME              prints the control's text as UTF-8
//   window-driver caption CLASS TEXT     waits until the window's caption is TEXT (UTF-8)
//   window-driver contains NAME TEXT     waits until the control's text contains TEXT (UTF-8)
//   window-driver painted CLASS          waits until all of the window is painted
//   window-driver place CLASS X Y W H    moves and sizes the window
//
// A NAME is that of a component, or "#123" for the control with this number in a dialog of another
// program's. Every call waits up to --seconds (60) for what it needs, and exits with 1 when that
// did not come.

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "demo/driver/RemoteWindows.h"
#include "window/Handles.h"

namespace tolvane {
namespace {

struct TCall {
    int seconds = 60;
    std::vector<std::string> arguments;

    std::wstring Wide(std::size_t index) const {
        return {arguments.at(index).begin(), arguments.at(index).end()};
    }
    int Number(std::size_t index) const { return std::stoi(arguments.at(index)); }
};

bool WaitForClass(const TCall& call, HWND& window) {
    return WaitFor(call.seconds, [&] { return (window = FindByClass(call.Wide(0))) != nullptr; });
}

bool WaitForControl(const TCall& call, HWND& window) {
    return WaitFor(call.seconds,
                   [&] { return (window = FindByComponentName(call.arguments.at(0))) != nullptr; });
}

bool Rows(const TCall& call) {
    return WaitFor(call.seconds, [&] {
        const HWND list = FindByComponentName(call.arguments.at(0));
        return list != nullptr && SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) >= call.Number(1);
    });
}

bool Mark(const TCall& call) {
    HWND list = nullptr;
    if (!WaitForControl(call, list)) return false;
    for (int row = call.Number(1); row <= call.Number(2); ++row) {
        if (!MarkRow(list, row)) return false;
    }
    return true;
}

bool Window(const TCall& call) {
    HWND window = nullptr;
    return WaitForClass(call, window);
}

bool Gone(const TCall& call) {
    return WaitFor(call.seconds, [&] { return FindByClass(call.Wide(0)) == nullptr; });
}

bool Enabled(const TCall& call) {
    return WaitFor(call.seconds, [&] {
        const HWND window = FindByComponentName(call.arguments.at(0));
        return window != nullptr && IsWindowEnabled(window) != 0;
    });
}

bool Command(const TCall& call) {
    HWND window = nullptr;
    return WaitForClass(call, window) &&
           PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(call.Number(1)), 0) != 0;
}

bool Click(const TCall& call) {
    HWND window = nullptr;
    return WaitForControl(call, window) && Enabled(call) &&
           PostMessageW(window, BM_CLICK, 0, 0) != 0;
}

// The list view is scrolled to its left end, and its columns stand in the order of their numbers.
bool Title(const TCall& call) {
    HWND list = nullptr;
    if (!WaitForControl(call, list)) return false;
    const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    const auto width = [list](int column) {
        return static_cast<int>(
            SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    };
    int x = width(call.Number(1)) / 2;
    for (int column = 0; column < call.Number(1); ++column)
        x += width(column);
    RECT area{};
    GetClientRect(header, &area);
    const LPARAM at = MAKELPARAM(x, area.bottom / 2);
    return PostMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, at) != 0 &&
           PostMessageW(header, WM_LBUTTONUP, 0, at) != 0;
}

bool Key(const TCall& call) {
    HWND window = nullptr;
    const auto code = static_cast<WPARAM>(call.Number(1));
    return WaitForControl(call, window) && PostMessageW(window, WM_KEYDOWN, code, 0) != 0 &&
           PostMessageW(window, WM_KEYUP, code, 0) != 0;
}

bool Type(const TCall& call) {
    HWND window = nullptr;
    if (!WaitForControl(call, window) || !Enabled(call)) return false;
    const std::wstring text = Utf16(call.arguments.at(1));
    return SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) != 0;
}

bool Close(const TCall& call) {
    HWND window = nullptr;
    return WaitForClass(call, window) && PostMessageW(window, WM_CLOSE, 0, 0) != 0;
}

bool Text(const TCall& call) {
    HWND window = nullptr;
    if (!WaitForControl(call, window)) return false;
    std::cout << TextOf(window) << std::flush;
    return true;
}

bool Contains(const TCall& call) {
    return WaitFor(call.seconds, [&] {
        const HWND window = FindByComponentName(call.arguments.at(0));
        return window != nullptr && TextOf(window).find(call.arguments.at(1)) != std::string::npos;
    });
}

bool Caption(const TCall& call) {
    return WaitFor(call.seconds, [&] {
        const HWND window = FindByClass(call.Wide(0));
        return window != nullptr && TextOf(window) == call.arguments.at(1);
    });
}

bool Painted(const TCall& call) {
    HWND window = nullptr;
    return WaitForClass(call, window) && WaitFor(call.seconds, [&] { return IsPainted(window); });
}

bool Place(const TCall& call) {
    HWND window = nullptr;
    return WaitForClass(call, window) &&
           SetWindowPos(window, nullptr, call.Number(1), call.Number(2), call.Number(3),
                        call.Number(4), SWP_NOZORDER) != 0;
}

struct TAction {
    std::size_t argumentCount;
    bool (*run)(const TCall&);
};

const std::map<std::string, TAction> kActions = {
    {"rows", {2, Rows}},         {"window", {1, Window}},   {"gone", {1, Gone}},
    {"enabled", {1, Enabled}},   {"command", {2, Command}}, {"click", {1, Click}},
    {"close", {1, Close}},       {"text", {1, Text}},       {"place", {5, Place}},
    {"contains", {2, Contains}}, {"painted", {1, Painted}}, {"mark", {3, Mark}},
    {"caption", {2, Caption}},   {"type", {2, Type}},       {"title", {2, Title}},
    {"key", {2, Key}},
};

int Run(std::vector<std::string> words) {
    TCall call;
    if (words.size() >= 2 && words[0] == "--seconds") {
        call.seconds = std::stoi(words[1]);
        words.erase(words.begin(), words.begin() + 2);
    }
    const auto action = words.empty() ? kActions.end() : kActions.find(words[0]);
    if (action == kActions.end() || words.size() != action->second.argumentCount + 1) {
        std::cerr << "window-driver: unknown action or wrong arguments\n";
        return 2;
    }
    call.arguments.assign(words.begin() + 1, words.end());
    if (action->second.run(call)) return 0;
    std::cerr << "window-driver: " << words[0] << " " << words[1] << ": not within " << call.seconds
              << " s\n";
    return 1;
}

// The command line as UTF-8, whatever the system's code page is.
std::vector<std::string> CommandLineWords() {
    int count = 0;
    const TOwned<THandleTraits<wchar_t**, &LocalFree>> wide(
        CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> words;
    for (int i = 1; i < count; ++i)
        words.push_back(Utf8(wide.Get()[i]));
    return words;
}

}  // namespace
}  // namespace tolvane

int main() {
    try {
        return tolvane::Run(tolvane::CommandLineWords());
    } catch (const std::exception& error) {
        std::cerr << "window-driver: " << error.what() << "\n";
        return 2;
    }
}
