#include "system/SerialPorts.h"

#include <windows.h>

#include <array>
#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr const wchar_t* kPortsKey = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr DWORD kBufferLength = 256;

class TRegistryKey {
public:
    TRegistryKey(HKEY root, const wchar_t* path) {
        if (RegOpenKeyExW(root, path, 0, KEY_READ, &key_) != ERROR_SUCCESS) key_ = nullptr;
    }
    TRegistryKey(const TRegistryKey&) = delete;
    TRegistryKey& operator=(const TRegistryKey&) = delete;
    ~TRegistryKey() {
        if (key_ != nullptr) RegCloseKey(key_);
    }
    HKEY Get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

// The text up to its first zero character; the registry does not promise that there is one.
std::string PortName(const std::array<wchar_t, kBufferLength>& data, DWORD bytes) {
    std::wstring_view text(data.data(), bytes / sizeof(wchar_t));
    text = text.substr(0, text.find(L'\0'));
    return FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

}  // namespace

TSerialPortScan ScanSerialPorts() {
    TSerialPortScan scan;
    const TRegistryKey key(HKEY_LOCAL_MACHINE, kPortsKey);
    if (key.Get() == nullptr) return scan;
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

}  // namespace tolvane
