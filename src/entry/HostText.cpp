#include "entry/HostText.h"

#include <windows.h>

#include <cstring>
#include <new>

#include "entry/HostInterface.h"

namespace tolvane {
namespace {

constexpr std::uint16_t kCodePage = 1251;
constexpr std::int32_t kConstant = -1;

}  // namespace

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
