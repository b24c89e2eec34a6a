#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace tolvane::test {

// What a hostile scale sends without being asked, from the connection on.
struct THostility {
    const char* name;
    std::vector<unsigned char> bytes;
    std::chrono::milliseconds every;
    bool resets = false;  // instead, it resets each connection at once
};

// A flood, a byte each second, answers in advance, silence, a reset.
const std::vector<THostility>& Hostilities();

// Takes any number of TCP connections on this machine, on a thread of its own.
class THostileScale {
public:
    explicit THostileScale(const THostility& hostility);
    THostileScale(const THostileScale&) = delete;
    THostileScale& operator=(const THostileScale&) = delete;
    ~THostileScale();
    std::uint16_t Port() const;

private:
    struct TState;
    std::unique_ptr<TState> state_;
};

}  // namespace tolvane::test
