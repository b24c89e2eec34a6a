#include "tests/support/scales/WireFrames.h"

#include <cstddef>

namespace tolvane::test {

TCmdBuffer Wire(const TCmdBuffer& body) {
    TCmdBuffer frame = {0x02};
    for (const std::uint8_t byte : body) {
        const bool offset = byte <= 0x14;
        frame.push_back(offset ? 0x0D : 0x0C);
        frame.push_back(static_cast<std::uint8_t>(offset ? byte + 0x14 : byte));
    }
    frame.push_back(0x03);
    return frame;
}

TCmdBuffer ReplyTo(std::uint8_t command, const TCmdBuffer& data, std::uint8_t address) {
    TCmdBuffer body = {address, command};
    body.insert(body.end(), data.begin(), data.end());
    unsigned sum = 0;
    for (const std::uint8_t byte : body)
        sum += byte;
    body.push_back(static_cast<std::uint8_t>(sum % 256));
    return Wire(body);
}

TCmdBuffer BodyOf(const TCmdBuffer& request) {
    TCmdBuffer body;
    bool offset = false;
    for (std::size_t i = 1; i + 1 < request.size(); ++i) {
        if (request[i] == 0x0C || request[i] == 0x0D)
            offset = request[i] == 0x0D;
        else
            body.push_back(static_cast<std::uint8_t>(offset ? request[i] - 0x14 : request[i]));
    }
    return body;
}

}  // namespace tolvane::test
