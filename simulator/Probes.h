#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/Frame.h"

namespace tolvane::simulator {

// The broadcasts by which network modules of scales are searched for.
enum class TProbe {
    Character,  // "X"
    Find,       // "FIND"
    Converter   // 43 21 30 39 and 16 zero bytes
};

inline constexpr std::array<std::uint16_t, 3> kProbePorts = {65535, 1460, 36};

struct TProbeOptions {
    TProbe probe = TProbe::Character;
    std::optional<std::uint16_t> port{};  // the probe's own unless given; 0: any free one
    int replies = 1;                      // datagrams in answer to one probe
    TBytes reply{'S', 'C', 'A', 'L', 'E'};

    std::uint16_t Port() const {
        return port.value_or(kProbePorts[static_cast<std::size_t>(probe)]);
    }
};

// What a search with this probe sends.
TBytes ProbeRequest(TProbe probe);

}  // namespace tolvane::simulator
