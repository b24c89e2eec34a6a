#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tolvane {

// Keeps many short texts in a few blocks. A text that was stored recently is not stored again: a
// unit of measure or a group repeats in row after row.
class TTextArena {
public:
    // Where a text lies; 0 is the empty text.
    using TPosition = std::uint32_t;
    static constexpr std::size_t kLongest = 255;

    // A text may be kLongest bytes long (assert). Throws std::length_error when the positions are
    // used up (4 GiB of text).
    TPosition Store(std::string_view text);
    // Valid until Clear. `position` comes from Store.
    std::string_view Text(TPosition position) const {
        if (position == 0) return {};
        const char* const at = blocks_[position >> kBlockBits].data() + (position & kOffsetMask);
        return {at + 1, static_cast<unsigned char>(*at)};
    }
    void Clear();
    std::size_t MemoryUsed() const;

private:
    static constexpr unsigned kBlockBits = 16;
    static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;
    static constexpr TPosition kOffsetMask = kBlockSize - 1;
    static constexpr std::size_t kRecent = 4096;

    TPosition Add(std::string_view text);

    // A text is a length byte and its characters, within one block.
    std::vector<std::vector<char>> blocks_;
    std::vector<TPosition> recent_;  // by hash
};

}  // namespace tolvane
