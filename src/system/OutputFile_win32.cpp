#include "system/OutputFile.h"

#include <windows.h>

#include <system_error>

namespace tolvane {
namespace {

HANDLE Native(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

TOutputFile::TOutputFile(const std::filesystem::path& file)
    : handle_(reinterpret_cast<std::intptr_t>(CreateFileW(file.c_str(), GENERIC_WRITE,
                                                          FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                                          FILE_ATTRIBUTE_NORMAL, nullptr))) {
    if (Native(handle_) == INVALID_HANDLE_VALUE)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

TOutputFile::~TOutputFile() {
    CloseHandle(Native(handle_));
}

void TOutputFile::Write(std::string_view bytes) {
    const auto count = static_cast<DWORD>(bytes.size());
    DWORD written = 0;
    const bool done = WriteFile(Native(handle_), bytes.data(), count, &written, nullptr) != 0;
    if (!done || written != count) {
        const DWORD error = done ? ERROR_DISK_FULL : GetLastError();
        CutBack();
        throw std::system_error(static_cast<int>(error), std::system_category());
    }
    size_ += static_cast<std::int64_t>(bytes.size());
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the file.
void TOutputFile::CutBack() noexcept {
    LARGE_INTEGER end{};
    end.QuadPart = size_;
    if (SetFilePointerEx(Native(handle_), end, nullptr, FILE_BEGIN) != 0)
        SetEndOfFile(Native(handle_));
}

}  // namespace tolvane
