#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace tolvane::test {

// While it lives, the system has a PostScript printer (A4 across, 600 dots per inch) that prints
// into a file. Wine only: its PostScript driver needs nothing but a description of the printer.
class TFilePrinter {
public:
    // The file goes into the folder, whose name the printer gets as well: an aborted job of Wine's
    // disturbs what is printed later on a printer of the same name.
    explicit TFilePrinter(const std::filesystem::path& folder);
    TFilePrinter(const TFilePrinter&) = delete;
    TFilePrinter& operator=(const TFilePrinter&) = delete;
    ~TFilePrinter();

    // A device context of the printer; it belongs to the caller.
    HDC MakeDc() const;
    // What was printed so far.
    std::string Output() const;

private:
    std::wstring name_;
    std::filesystem::path output_;
    HANDLE printer_ = nullptr;
};

}  // namespace tolvane::test
