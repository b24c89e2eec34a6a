#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

// Runs the system's tshark with the dissector of this repository and with nobody's settings. A
// failure of it, and a complaint about the dissector or the file, fails the test.
class TTshark {
public:
    // What to give it besides the file: "-o name:value" and the like.
    std::string options;
    // Whether the dissector lies where the user's own plugins do, instead of being named.
    bool asPlugin = false;
    // Whether the file ends within a packet, which tshark has to say.
    bool isCut = false;

    // Of each packet these fields, with "|" between several values of one.
    std::vector<std::vector<std::string>> Fields(const std::filesystem::path& capture,
                                                 const std::vector<std::string>& names) const;
    // The first of these fields of each packet.
    std::vector<std::string> Field(const std::filesystem::path& capture,
                                   const std::string& name) const;

private:
    TScratchFolder home_;
};

// Makes a capture file of link type USER0 from packets in hexadecimal digits, with text2pcap. The
// packets are a microsecond apart.
void MakeCapture(const std::filesystem::path& capture, const std::vector<std::string>& packets);

}  // namespace tolvane::test
