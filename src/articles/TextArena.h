#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tolvane {

// Keeps many short texts in few blocks. A text that was stored lately, as a unit of measure or a
// group is for row after row, is not stored again.
class TTextArena {
public:
    // Where a text lies; 0 is the empty text.
    using TPosition = std::uint32_t;
    static constexpr std::size_t kLongest = 255;

    // A text longer than kLongest is a programming error (assert). Throws std::length_error when
    // the positions are used up (4 GiB of text).
    TPosition Store(std::string_view text);
    // Valid until Clear. `position` comes from Store.
    std::string_view Text(TPosition position) const;
    void Clear();
    std::size_t MemoryUsed() const;

private:
    static constexpr std::size_t kBlockSize = 0x10000;
    static constexpr std::size_t kRecent = 4096;

    TPosition Add(std::string_view text);

    // A text is a length byte and its characters, within one block.
    std::vector<std::vector<char>> blocks_;
    std::vector<TPosition> recent_;  // by hash
};

}  // namespace tolvane
