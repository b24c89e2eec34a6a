#include "system/ProcessMemory.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace tolvane {
namespace {

constexpr DWORD kWritable =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

// How many bytes from there on lie in pages of one kind that allow one of `access`; 0 when the
// first one does not.
std::size_t Accessible(const char* from, DWORD access) noexcept {
    MEMORY_BASIC_INFORMATION pages{};
    if (VirtualQuery(from, &pages, sizeof pages) == 0) return 0;
    if (pages.State != MEM_COMMIT || (pages.Protect & access) == 0 ||
        (pages.Protect & (PAGE_GUARD | PAGE_NOACCESS)) != 0)
        return 0;
    return pages.RegionSize -
           static_cast<std::size_t>(from - static_cast<const char*>(pages.BaseAddress));
}

bool Can(DWORD access, const void* first, std::size_t size) noexcept {
    if (first == nullptr) return false;
    const char* from = static_cast<const char*>(first);
    while (size > 0) {
        const std::size_t part = std::min(size, Accessible(from, access));
        if (part == 0) return false;
        from += part;
        size -= part;
    }
    return true;
}

}  // namespace

bool CanRead(const void* from, std::size_t size) noexcept {
    return Can(kReadable, from, size);
}
bool CanWrite(const void* to, std::size_t size) noexcept {
    return Can(kWritable, to, size);
}

bool CanReadText(const char* text) noexcept {
    if (text == nullptr) return false;
    while (const std::size_t part = Accessible(text, kReadable)) {
        if (std::memchr(text, 0, part) != nullptr) return true;
        text += part;
    }
    return false;
}

}  // namespace tolvane
