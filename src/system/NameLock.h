#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tolvane {

// A name that one object at a time holds on this computer, whichever user's process it is in. The
// system lets go of it when the process ends, however that ends. On Linux computers are network
// namespaces: a container with a network of its own has names of its own.
class TNameLock {
public:
    // Tries once. Nothing when another object holds the name, of which the last 90 bytes count.
    // Throws std::system_error, with the system's own number, for anything else.
    static std::optional<TNameLock> TryHold(std::string_view name);

    TNameLock(TNameLock&& other) noexcept;
    TNameLock& operator=(TNameLock&& other) noexcept;
    TNameLock(const TNameLock&) = delete;
    TNameLock& operator=(const TNameLock&) = delete;
    ~TNameLock();

private:
    explicit TNameLock(std::intptr_t handle) : handle_(handle) {}
    void Release() noexcept;

    std::intptr_t handle_;  // -1 when nothing is held
};

}  // namespace tolvane
