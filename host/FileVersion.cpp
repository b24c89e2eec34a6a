#include "host/FileVersion.h"

#include <windows.h>

#include <vector>

namespace tolvane::host {

std::string FileVersion(const std::filesystem::path& file) {
    std::vector<char> block(GetFileVersionInfoSizeW(file.c_str(), nullptr));
    if (block.empty() ||
        GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) == 0)
        return {};
    void* value = nullptr;
    UINT size = 0;
    if (VerQueryValueW(block.data(), L"\\", &value, &size) == 0) return {};
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(value);
    return std::to_string(HIWORD(info.dwFileVersionMS)) + '.' +
           std::to_string(LOWORD(info.dwFileVersionMS)) + '.' +
           std::to_string(HIWORD(info.dwFileVersionLS));
}

}  // namespace tolvane::host
