#include "articles/TextArena.h"

#include <cassert>
#include <stdexcept>

namespace tolvane {
namespace {

constexpr std::size_t kMostBlocks = 0x10000;

// FNV-1a.
std::uint32_t Hash(std::string_view text) {
    std::uint32_t hash = 2166136261U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash ^ (hash >> 15);
}

}  // namespace

TTextArena::TPosition TTextArena::Store(std::string_view text) {
    assert(text.size() <= kLongest);
    if (text.empty()) return 0;
    if (recent_.empty()) recent_.resize(kRecent);
    TPosition& recent = recent_[Hash(text) % kRecent];
    if (recent == 0 || Text(recent) != text) recent = Add(text);
    return recent;
}

TTextArena::TPosition TTextArena::Add(std::string_view text) {
    const std::size_t size = text.size() + 1;
    if (blocks_.empty() || kBlockSize - blocks_.back().size() < size) {
        if (blocks_.size() == kMostBlocks) throw std::length_error("too much article text");
        std::vector<char> block;
        block.reserve(kBlockSize);
        // Position 0 is the empty text's.
        if (blocks_.empty()) block.push_back('\0');
        blocks_.push_back(std::move(block));
    }
    std::vector<char>& block = blocks_.back();
    const auto position =
        static_cast<TPosition>(((blocks_.size() - 1) << kBlockBits) | block.size());
    block.push_back(static_cast<char>(static_cast<unsigned char>(text.size())));
    block.insert(block.end(), text.begin(), text.end());
    return position;
}

void TTextArena::Clear() {
    *this = TTextArena();
}

std::size_t TTextArena::MemoryUsed() const {
    std::size_t used = recent_.capacity() * sizeof(TPosition);
    for (const std::vector<char>& block : blocks_)
        used += block.capacity();
    return used;
}

}  // namespace tolvane
