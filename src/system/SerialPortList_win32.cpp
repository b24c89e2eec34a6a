#include "system/SerialPortList.h"

#include <windows.h>

#include <array>
#include <string_view>

#include "system/Owned.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr const wchar_t* kPortsKey = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr DWORD kBufferLength = 256;

struct TRegistryKeyTraits {
    using TValue = HKEY;
    static constexpr HKEY kNone = nullptr;
    static void Free(HKEY key) noexcept { RegCloseKey(key); }
};
using TOwnedRegistryKey = TOwned<TRegistryKeyTraits>;

// Owns nothing when the registry has no such key or does not let us read it.
TOwnedRegistryKey OpenKey(HKEY root, const wchar_t* path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
    return TOwnedRegistryKey(key);
}

// The text up to its first zero character; the registry does not promise that there is one.
std::string PortName(const std::array<wchar_t, kBufferLength>& data, DWORD bytes) {
    std::wstring_view text(data.data(), bytes / sizeof(wchar_t));
    text = text.substr(0, text.find(L'\0'));
    return FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

}  // namespace

TSerialPortScan ScanSerialPorts() {
    TSerialPortScan scan;
    const TOwnedRegistryKey key = OpenKey(HKEY_LOCAL_MACHINE, kPortsKey);
    if (!key) return scan;
    scan.available = true;
    for (DWORD index = 0;; ++index) {
        std::array<wchar_t, kBufferLength> name{};
        std::array<wchar_t, kBufferLength> data{};
        DWORD nameLength = kBufferLength;
        DWORD dataBytes = sizeof data;
        const LONG result =
            RegEnumValueW(key.Get(), index, name.data(), &nameLength, nullptr, nullptr,
                          reinterpret_cast<BYTE*>(data.data()), &dataBytes);
        if (result != ERROR_SUCCESS) {
            scan.complete = result == ERROR_NO_MORE_ITEMS;
            return scan;
        }
        scan.names.push_back(PortName(data, dataBytes));
    }
}

bool HasSerialPort(const std::string& name) {
    constexpr std::string_view kDevicePrefix = R"(\\.\)";
    std::string_view device = name;
    if (device.starts_with(kDevicePrefix)) device.remove_prefix(kDevicePrefix.size());
    std::array<wchar_t, MAX_PATH> target{};
    const std::u16string wide = ToUtf16(device);
    return QueryDosDeviceW(reinterpret_cast<const wchar_t*>(wide.c_str()), target.data(),
                           DWORD{target.size()}) != 0 ||
           GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

std::string SerialPortOfNumber(int number) {
    return "COM" + std::to_string(number);
}

}  // namespace tolvane
