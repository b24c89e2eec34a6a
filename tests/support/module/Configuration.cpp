#include "tests/support/module/Configuration.h"

#include <windows.h>

#include <array>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

path Program() {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    return program;
}

path HostSettings() {
    return Program().replace_extension(".ini");
}

void RemoveBoth() {
    std::error_code ignored;
    std::filesystem::remove(TConfiguration::File(), ignored);
    std::filesystem::remove(HostSettings(), ignored);
}

}  // namespace

TConfiguration::TConfiguration() {
    RemoveBoth();
}

TConfiguration::~TConfiguration() {
    RemoveBoth();
}

path TConfiguration::File() {
    return Program().parent_path() / "Operations" / "Tolvane.ini";
}

std::string TConfiguration::Bytes() {
    return GetFile(File());
}

void TConfiguration::Write(const std::string& bytes) {
    PutFile(File(), bytes);
}

void TConfiguration::WriteScale(int port) {
    Write(
        "[SCALE1]\r\nScaleNumb=1\r\nScaleName=A\r\nTCPAddress=127.0.0.1\r\n"
        "TCPPort=" +
        std::to_string(port) +
        "\r\nChecked=1\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\n"
        "ScaleAddr=0\r\nCommType=1\r\n");
}

std::string TConfiguration::Value(const std::string& section, const std::string& key) {
    std::array<char, 512> value{};
    GetPrivateProfileStringA(section.c_str(), key.c_str(), "", value.data(),
                             static_cast<DWORD>(value.size()), File().string().c_str());
    return value.data();
}

void TConfiguration::WriteHostSettings(const std::string& bytes) {
    PutFile(HostSettings(), bytes);
}

}  // namespace tolvane::test
