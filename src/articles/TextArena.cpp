#include "articles/TextArena.h"

#include <cassert>
#include <stdexcept>

#include "database/Unaligned.h"

namespace tolvane {
namespace {

constexpr std::size_t kMostBlocks = 0x10000;

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t word) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;  // odd, without a pattern
    hash = (hash ^ word) * kFactor;
    return hash ^ hash >> 32;
}

// By words of eight bytes, as the hash is most of what storing a text takes.
std::size_t Hash(std::string_view text) {
    std::uint64_t hash = text.size();
    for (; text.size() >= sizeof(hash); text.remove_prefix(sizeof(hash)))
        hash = Mixed(hash, Get<std::uint64_t>(text.data()));
    std::uint64_t rest = 0;
    for (const char c : text)
        rest = rest << 8 | static_cast<unsigned char>(c);
    return static_cast<std::size_t>(Mixed(hash, rest));
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
