#include "system/NameLock.h"

#include <utility>

namespace tolvane {

TNameLock::TNameLock(TNameLock&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}

TNameLock& TNameLock::operator=(TNameLock&& other) noexcept {
    if (this != &other) {
        Release();
        handle_ = std::exchange(other.handle_, -1);
    }
    return *this;
}

TNameLock::~TNameLock() {
    Release();
}

}  // namespace tolvane
