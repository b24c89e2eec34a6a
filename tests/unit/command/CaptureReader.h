#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

struct TCapturedPacket {
    std::uint32_t interfaceId;
    std::uint64_t microseconds;
    std::string content;
};

// What a capture file holds, read by the description of its format.
struct TCapture {
    std::vector<std::string> interfaces;  // their blocks' bytes
    std::vector<TCapturedPacket> packets;
    bool isCut = false;  // it ends within a block, which is left out
};

inline std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number * 256 + static_cast<unsigned char>(bytes.at(at + i));
    return number;
}

inline TCapture ReadCapture(const std::filesystem::path& file) {
    const std::string bytes = GetFile(file);
    TCapture capture;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::uint32_t length = bytes.size() - at < 12 ? 12 : NumberAt(bytes, at + 4);
        if (bytes.size() - at < length) {
            capture.isCut = true;
            break;
        }
        if (length < 12 || length % 4 != 0 || NumberAt(bytes, at + length - 4) != length) {
            ADD_FAILURE() << "the block at " << at << " does not end with its length";
            break;
        }
        const std::string block = bytes.substr(at, length);
        const std::uint32_t type = NumberAt(block, 0);
        if (type == 1) capture.interfaces.push_back(block);
        if (type == 6) {
            const std::uint64_t time =
                (std::uint64_t{NumberAt(block, 12)} << 32U) + NumberAt(block, 16);
            capture.packets.push_back(
                {NumberAt(block, 8), time, block.substr(28, NumberAt(block, 20))});
        }
        at += length;
    }
    return capture;
}

}  // namespace tolvane::test
