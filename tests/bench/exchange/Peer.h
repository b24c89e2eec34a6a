#pragma once

#include <cstdint>
#include <string>

namespace tolvane::bench {

// What the peer answers to every request: command 4C is done.
inline constexpr std::uint8_t kPeerReply[] = {0x02, 0x0D, 0x14, 0x60, 0x14, 0x60, 0x03};

struct TPeerPlace {
    std::uint16_t tcpPort = 0;
    std::uint16_t udpPort = 0;
    std::string serialPort{};
};

// A process of its own that answers each request at once over TCP and UDP, and over a pseudo
// terminal when its bytes and those of the request have had their time on a line of 115,200 bit/s.
// Only on Linux; throws std::system_error. To be made before any thread.
class TPeer {
public:
    TPeer();
    ~TPeer();
    TPeer(const TPeer&) = delete;
    TPeer& operator=(const TPeer&) = delete;

    const TPeerPlace& Place() const { return place_; }
    // Returns when the process has been ended.
    void Wait();

private:
    TPeerPlace place_;
    int process_ = 0;
};

}  // namespace tolvane::bench
