#pragma once

#include <utility>

namespace tolvane {

// Move-only owner of a handle of the system. Traits has the handle's type (TValue), the value that
// stands for no handle (kNone), and the function that frees a handle (Free, which never throws).
template <class Traits>
class TOwned {
public:
    using TValue = typename Traits::TValue;

    TOwned() noexcept = default;
    explicit TOwned(TValue value) noexcept : value_(value) {}
    TOwned(TOwned&& other) noexcept : value_(other.Release()) {}
    TOwned& operator=(TOwned&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    TOwned(const TOwned&) = delete;
    TOwned& operator=(const TOwned&) = delete;
    ~TOwned() { Reset(); }

    TValue Get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != Traits::kNone; }
    // Passes ownership to the caller.
    TValue Release() noexcept { return std::exchange(value_, Traits::kNone); }
    // Frees the handle and owns `value` from now on.
    void Reset(TValue value = Traits::kNone) noexcept {
        const TValue old = std::exchange(value_, value);
        if (old != Traits::kNone) Traits::Free(old);
    }

private:
    TValue value_ = Traits::kNone;
};

}  // namespace tolvane
