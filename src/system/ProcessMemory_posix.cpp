#include "system/ProcessMemory.h"

namespace tolvane {

bool CanRead(const void* from, std::size_t /*size*/) noexcept {
    return from != nullptr;
}
bool CanWrite(const void* to, std::size_t /*size*/) noexcept {
    return to != nullptr;
}
bool CanReadText(const char* text) noexcept {
    return text != nullptr;
}

}  // namespace tolvane
