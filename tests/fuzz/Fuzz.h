#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace tolvane::fuzz {

// Ends the program when what must hold does not; the fuzzer then keeps the input.
inline void Must(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

// Takes an input apart from its start. What is missing at its end reads as zeros and empty texts.
class TInput {
public:
    TInput(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    bool IsEmpty() const { return rest_.empty(); }
    std::uint8_t Byte() { return Number<std::uint8_t>(); }
    // A number below `count`.
    std::size_t Below(std::size_t count) { return Byte() % count; }
    // The number's bytes, the lowest first.
    template <class T>
    T Number() {
        T number{};
        const std::span<const std::uint8_t> bytes = Bytes(sizeof number);
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(&number));
        return number;
    }
    std::span<const std::uint8_t> Bytes(std::size_t most) {
        const std::span<const std::uint8_t> taken = rest_.first(std::min(most, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }
    std::span<const std::uint8_t> Rest() { return Bytes(rest_.size()); }
    std::string RestAsText() { return AsText(Rest()); }
    // Up to the next `end` byte, which is dropped.
    std::string Text(char end = '\n') {
        const auto found = std::find(rest_.begin(), rest_.end(), static_cast<std::uint8_t>(end));
        std::string text = AsText(Bytes(static_cast<std::size_t>(found - rest_.begin())));
        Bytes(1);
        return text;
    }

private:
    static std::string AsText(std::span<const std::uint8_t> bytes) {
        return {bytes.begin(), bytes.end()};
    }

    std::span<const std::uint8_t> rest_;
};

}  // namespace tolvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
