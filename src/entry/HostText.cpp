#include "entry/HostText.h"

#include <windows.h>

#include <cstring>
#include <new>

#include "entry/HostInterface.h"
#include "system/ProcessMemory.h"

namespace tolvane {
namespace {

constexpr std::uint16_t kCodePage = 1251;
constexpr std::int32_t kConstant = -1;

}  // namespace

bool IsHostText(const char* text) noexcept {
    if (text == nullptr) return true;
    std::int32_t length = 0;
    if (!CanRead(text - sizeof length, sizeof length)) return false;
    std::memcpy(&length, text - sizeof length, sizeof length);
    return length <= 0 || CanRead(text, static_cast<std::size_t>(length));
}

const char* MakeHostText(std::string_view text) {
    void* block = HeapAlloc(GetProcessHeap(), 0, sizeof(THostTextHeader) + text.size() + 1);
    if (block == nullptr) throw std::bad_alloc();
    const THostTextHeader header{kCodePage, 1, kConstant, static_cast<std::int32_t>(text.size())};
    std::memcpy(block, &header, sizeof header);
    char* characters = static_cast<char*>(block) + sizeof header;
    std::memcpy(characters, text.data(), text.size());
    characters[text.size()] = '\0';
    return characters;
}

}  // namespace tolvane
