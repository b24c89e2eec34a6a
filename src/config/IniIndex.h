#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tolvane {

// Finds numbers by the hashes of their names. Takes no memory of its own for each number.
class TIniIndex {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    void Add(std::uint64_t hash, std::size_t number);
    // A number of this hash for which `is` is true; kNone when there is none.
    template <class Is>
    std::size_t Find(std::uint64_t hash, const Is& is) const {
        if (slots_.empty()) return kNone;
        for (std::size_t at = Start(hash); slots_[at].number != kNone; at = Next(at)) {
            if (slots_[at].hash == hash && is(slots_[at].number)) return slots_[at].number;
        }
        return kNone;
    }

private:
    struct TSlot {
        std::uint64_t hash = 0;
        std::size_t number = kNone;
    };

    std::size_t Start(std::uint64_t hash) const {
        return static_cast<std::size_t>(hash) & (slots_.size() - 1);
    }
    std::size_t Next(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }
    void Put(const TSlot& slot);
    void Grow();

    std::vector<TSlot> slots_;  // a power of two, at most half of them taken
    std::size_t count_ = 0;
};

}  // namespace tolvane
