#include "host/Connection.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>

#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

// The three functions of the client library that a host needs, as the library declares them.
using TAttachDatabase = std::intptr_t(__stdcall*)(std::intptr_t* status, short nameLength,
                                                  const char* name, std::uint32_t* handle,
                                                  short parametersLength, const char* parameters);
using TDetachDatabase = std::intptr_t(__stdcall*)(std::intptr_t* status, std::uint32_t* handle);
using TInterpret = std::intptr_t(__stdcall*)(char* text, unsigned size,
                                             const std::intptr_t** status);

// Codes of the attachment's parameter block.
constexpr char kBlockVersion1 = 1;
constexpr char kUserName = 28;
constexpr char kPassword = 29;
constexpr char kCharacterSet = 48;
constexpr char kRoleName = 60;
constexpr char kDialect = 63;

template <class Function>
Function Find(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void AddText(std::string& block, char code, std::string_view text) {
    if (text.empty()) return;
    const std::string_view cut = text.substr(0, 255);
    block += code;
    block += static_cast<char>(static_cast<unsigned char>(cut.size()));
    block += cut;
}

std::string ParameterBlock(const THostSettings& settings) {
    std::string block(1, kBlockVersion1);
    AddText(block, kUserName, settings.user);
    AddText(block, kPassword, settings.password);
    AddText(block, kRoleName, settings.role);
    AddText(block, kCharacterSet, "WIN1251");
    AddText(block, kDialect, std::string_view("\3", 1));
    return block;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

}  // namespace

void TConnection::LoadClient(const std::string& library) {
    const std::initializer_list<std::string> usual = {"fbclient.dll", "gds32.dll"};
    const std::initializer_list<std::string> given = {library};
    for (const std::string& name : library.empty() ? usual : given) {
        client_ = LoadLibraryW(Wide(name).c_str());
        if (client_ == nullptr) continue;
        library_ = name;
        return;
    }
    throw TConnectionError(Joined(
        {"Клиентската библиотека на Firebird не може да бъде заредена ("_cp1251,
         library.empty() ? std::string_view("fbclient.dll, gds32.dll") : std::string_view(library),
         ").\r\nИнсталирайте 32-битов клиент на Firebird или посочете файла с ключа ClientLibrary в TradeHost.ini."_cp1251}));
}

void TConnection::Open(const THostSettings& settings) {
    Close();
    if (settings.database.empty())
        throw TConnectionError(std::string(
            "Не е зададена база данни.\r\nПопълнете ключа Database в секция [Database] на файла TradeHost.ini до програмата, например:\r\nDatabase=127.0.0.1/3050:C:\\Shop\\SHOP.FDB"_cp1251));
    if (client_ == nullptr) LoadClient(settings.clientLibrary);
    const auto attach = Find<TAttachDatabase>(client_, "isc_attach_database");
    if (attach == nullptr)
        throw TConnectionError(
            Joined({"Файлът "_cp1251, library_,
                    " не е клиентска библиотека на Firebird или InterBase."_cp1251}));
    const std::string block = ParameterBlock(settings);
    attach(status_, static_cast<short>(settings.database.size()), settings.database.c_str(),
           &handle_, static_cast<short>(block.size()), block.data());
    if (status_[0] == 1 && status_[1] != 0) {
        handle_ = 0;
        throw TConnectionError(Joined(
            {"Няма връзка с базата данни "_cp1251, settings.database, ":\r\n", ErrorText(),
             "\r\nПроверете дали сървърът работи и дали адресът, потребителят и паролата в TradeHost.ini са верни."_cp1251}));
    }
}

void TConnection::Close() noexcept {
    if (handle_ == 0) return;
    const auto detach = Find<TDetachDatabase>(client_, "isc_detach_database");
    if (detach != nullptr) detach(status_, &handle_);
    handle_ = 0;
}

std::string TConnection::ErrorText() const {
    const auto interpret = Find<TInterpret>(client_, "fb_interpret");
    if (interpret == nullptr) return std::to_string(status_[1]);
    std::string text;
    std::array<char, 1024> line{};
    const std::intptr_t* at = status_;
    while (interpret(line.data(), static_cast<unsigned>(line.size()), &at) != 0) {
        if (!text.empty()) text += "\r\n";
        text += line.data();
    }
    return text;
}

}  // namespace tolvane::host
