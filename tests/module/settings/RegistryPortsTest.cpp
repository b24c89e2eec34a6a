#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "settings/forms/uScaleSettings.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

using TNames = std::vector<std::string>;

constexpr const wchar_t* kParent = L"HARDWARE\\DEVICEMAP";
constexpr const wchar_t* kPorts = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";

using TValues = std::vector<std::pair<std::wstring, std::wstring>>;

TValues Read() {
    TValues values;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kPorts, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return values;
    for (DWORD i = 0;; ++i) {
        std::wstring name(1024, L'\0');
        std::wstring data(1024, L'\0');
        auto nameLength = static_cast<DWORD>(name.size());
        auto bytes = static_cast<DWORD>(data.size() * sizeof(wchar_t));
        if (RegEnumValueW(key, i, name.data(), &nameLength, nullptr, nullptr,
                          reinterpret_cast<BYTE*>(data.data()), &bytes) != ERROR_SUCCESS)
            break;
        values.emplace_back(name.c_str(), data.c_str());
    }
    RegCloseKey(key);
    return values;
}

void Remove() {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kPorts);
}

void Write(const TValues& values) {
    Remove();
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kPorts, 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    for (const auto& [name, data] : values)
        RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                       static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
}

// The computer's own list of serial ports, put back afterwards.
class RegistryPortsTest : public testing::Test {
protected:
    RegistryPortsTest() : before_(Read()) {
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, kParent, 0, nullptr, REG_OPTION_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &key, nullptr);
        RegCloseKey(key);
    }
    ~RegistryPortsTest() override { Write(before_); }

    static TNames List(bool sort) {
        TNames items = {"old"};
        SystemSettingsServices().listSerialPorts(sort, items);
        return items;
    }

private:
    TValues before_;
};

}  // namespace

TEST_F(RegistryPortsTest, AMissingKeyLeavesTheItems) {
    Remove();
    EXPECT_EQ(List(true), TNames{"old"});
}

TEST_F(RegistryPortsTest, WithNoSerialPortsInTheKeyTheListIsEmpty) {
    Write({});
    EXPECT_TRUE(List(true).empty());
    EXPECT_TRUE(List(false).empty());
}

TEST_F(RegistryPortsTest, ListsTheDataOfEveryValueSortedAsTextWhenAsked) {
    Write({{L"\\Device\\Serial0", L"COM3"},
           {L"\\Device\\Serial1", L"COM10"},
           {L"\\Device\\VCP0", L"COM2"}});
    EXPECT_EQ(List(true), (TNames{"COM10", "COM2", "COM3"}));
    // Each system keeps a key's values in an order of its own.
    TNames inOrderOfTheKey;
    for (const auto& [name, data] : Read())
        inOrderOfTheKey.push_back(Utf8(data));
    ASSERT_EQ(inOrderOfTheKey.size(), 3U);
    EXPECT_NE(inOrderOfTheKey, List(true));
    EXPECT_EQ(List(false), inOrderOfTheKey);
}

TEST_F(RegistryPortsTest, AFailedEnumerationListsCom1ToCom6) {
    Write({{L"\\Device\\Serial0", L"COM3"}, {L"\\Device\\Serial1", std::wstring(300, L'x')}});
    EXPECT_EQ(List(true), (TNames{"COM1", "COM2", "COM3", "COM4", "COM5", "COM6"}));
}

TEST_F(RegistryPortsTest, ANameOf255CharactersIsRead) {
    Write({{L"\\Device\\Serial0", std::wstring(255, L'C')}});
    EXPECT_EQ(List(true), TNames{std::string(255, 'C')});
}

}  // namespace tolvane::test
