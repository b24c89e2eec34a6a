#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "system/OutputFile.h"

namespace tolvane {

// The time of day that packets carry.
using TTimeOfDaySource = std::function<std::chrono::system_clock::time_point()>;

// What a trace says of a scale; texts in code page 1251.
struct TTracedScale {
    std::int32_t number = 0;
    std::string name;            // may be empty
    std::string link;            // the channel's description: "TCP (10.0.0.5:1001)"
    std::uint8_t commType = 0;   // kCommSerial, kCommTcp, kCommUdp
    std::int32_t codeTable = 0;  // of its texts

    friend bool operator==(const TTracedScale&, const TTracedScale&) = default;
};

enum class TTraceDirection : std::uint8_t { Request = 0, Reply = 1 };

// The result of a request that was not sent; the others are those of ReadAnswer, 0 for a request
// that was sent.
inline constexpr std::uint8_t kTraceNotSent = 5;

// One request, or one reply as far as it came.
struct TTracePacket {
    TTraceDirection direction = TTraceDirection::Request;
    std::uint8_t result = 0;
    std::span<const std::uint8_t> bytes;
    std::string_view failure;  // empty, or why the result is not 0; code page 1251
};

// A capture file of what goes over the links to scales. It is pcapng rather than pcap because that
// names an interface per scale and holds a comment per packet, and Wireshark shows both. Each
// packet is a block that is written at once: a killed run leaves all of them, of the last perhaps a
// part.
//
// The link type is 147 (USER0). Each packet begins with 12 bytes, numbers little endian:
//
//   0  version of these bytes, 1        4 to 7   number of the scale, signed
//   1  link: 0 serial, 1 TCP, 2 UDP     8        code table of its texts, 255: none of 0 to 2
//   2  direction: TTraceDirection       9 to 11  zero
//   3  result
//
// Then the bytes come as they went over the wire. tools/wireshark/tolvane.lua reads all of it.
//
// May be used from several threads at once. The first failure to write ends the trace; what is
// added afterwards is dropped, and nothing throws.
class TTraceFile {
public:
    // Makes the file or empties it. Throws TFailure with the file's name and the system's words
    // (code page 1251) when that fails.
    TTraceFile(const std::filesystem::path& file, TTimeOfDaySource now);

    // The number that packets name the scale by. The same one for a scale that is known already.
    std::uint32_t AddScale(const TTracedScale& scale);
    // `scale`: what AddScale has answered.
    void Add(std::uint32_t scale, const TTracePacket& packet);
    // Why the trace ended early, in code page 1251; nothing while it goes on, and nothing once it
    // has been told.
    std::optional<std::string> TakeFailure();

private:
    void Write(std::string_view block);

    std::mutex mutex_;
    std::string name_;
    TTimeOfDaySource now_;
    std::optional<TOutputFile> file_;  // nothing after a failure
    std::vector<TTracedScale> scales_;
    std::optional<std::string> failure_;
};

}  // namespace tolvane
