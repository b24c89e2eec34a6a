#include "window/MessageBoxes.h"

#include <array>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>

#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr std::string_view kErrorTitle = "Грешка"_cp1251;
constexpr std::string_view kInformationTitle = "Информация"_cp1251;
constexpr std::string_view kWarningTitle = "Внимание"_cp1251;
constexpr UINT kQuestion = MB_YESNO | MB_DEFBUTTON2 | MB_ICONWARNING;

// A text with its end as wide characters, made by the compiler: they need no memory to be shown.
template <std::size_t Size>
constexpr std::array<wchar_t, Size + 1> WideLiteral(std::string_view text) {
    std::array<wchar_t, Size + 1> wide{};
    for (std::size_t i = 0; i < Size; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        wide[i] = byte < 0x80 ? wchar_t{byte} : static_cast<wchar_t>(kCp1251High[byte - 0x80U]);
    }
    return wide;
}
constexpr auto kWideErrorTitle = WideLiteral<kErrorTitle.size()>(kErrorTitle);
constexpr auto kWideOutOfMemory = WideLiteral<kOutOfMemory.size()>(kOutOfMemory);

HWND RootOf(HWND owner) {
    return owner != nullptr ? GetAncestor(owner, GA_ROOT) : nullptr;
}

// A text without end, which a host or a server may have caused, would keep the system busy and have
// a box that is higher than the screen.
std::wstring Limited(std::string_view text) {
    constexpr std::size_t kMost = 2000;
    std::wstring wide = Wide(text.substr(0, kMost));
    if (text.size() > kMost) wide += L"...";
    return wide;
}

int Show(HWND owner, std::string_view title, std::string_view text, UINT flags) {
    const TVisualStyleScope style;
    return MessageBoxW(RootOf(owner), Limited(text).c_str(), Wide(title).c_str(), flags);
}

}  // namespace

void ShowError(HWND owner, std::string_view text) noexcept {
    constexpr UINT kFlags = MB_OK | MB_ICONERROR;
    try {
        Show(owner, kErrorTitle, text, kFlags);
    } catch (const std::bad_alloc&) {
        MessageBoxW(RootOf(owner), kWideOutOfMemory.data(), kWideErrorTitle.data(), kFlags);
    }
}

void ShowInformation(HWND owner, std::string_view text) {
    Show(owner, kInformationTitle, text, MB_OK | MB_ICONINFORMATION);
}

void ShowWarning(HWND owner, std::string_view text) {
    Show(owner, kWarningTitle, text, MB_OK | MB_ICONWARNING);
}

bool AskWarning(HWND owner, std::string_view text) {
    return Show(owner, kWarningTitle, text, kQuestion) == IDYES;
}

bool AskInFront(std::string_view text) {
    return Show(nullptr, kWarningTitle, text, kQuestion | MB_TOPMOST | MB_SETFOREGROUND) == IDYES;
}

}  // namespace tolvane
