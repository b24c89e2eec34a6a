#include "tests/support/module/Session.h"

#include <array>

namespace tolvane::test {
namespace {

std::string Counted(const std::uint8_t* text) {
    return {reinterpret_cast<const char*>(text) + 1, text[0]};
}

}  // namespace

TSession::TSession(const std::string& database) : connection(database) {}

void TSession::StartIn(const THostFrame& frame, std::int32_t operationNo) {
    module.Start(host.Frame(), operationNo, &messageId, frame.Frame(), connection.Database(),
                 nullptr, {&Print, this});
    RunLoopDry();
}

void TSession::Click(const std::string& name) const {
    SendMessageW(Control(name), BM_CLICK, 0, 0);
    RunLoopDry();
}

void TSession::CloseList() const {
    SendMessageW(List(), WM_CLOSE, 0, 0);
    RunLoopDry();
}

void TOLVANE_STDCALL TSession::Print(void* object, const std::uint8_t* title,
                                     const std::uint8_t* dateTime, void* grid) {
    static_cast<TSession*>(object)->printed.push_back(
        {Counted(title), Counted(dateTime), static_cast<HWND>(grid), object});
}

std::string DecimalSeparator() {
    std::array<wchar_t, 8> text{};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(),
                   static_cast<int>(text.size()));
    return Utf8(text.data());
}

std::string Localised(std::string number) {
    const std::size_t point = number.find('.');
    if (point != std::string::npos) number.replace(point, 1, DecimalSeparator());
    return number;
}

}  // namespace tolvane::test
