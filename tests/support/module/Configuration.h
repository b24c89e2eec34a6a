#pragma once

#include <filesystem>
#include <string>

namespace tolvane::test {

// The module's configuration file and the host's own settings, beside this program as beside a
// host. They are there as long as the object lives, and empty when it is made.
class TConfiguration {
public:
    TConfiguration();
    TConfiguration(const TConfiguration&) = delete;
    TConfiguration& operator=(const TConfiguration&) = delete;
    ~TConfiguration();

    static std::filesystem::path File();
    static std::string Bytes();
    static void Write(const std::string& bytes);
    // One checked EVL named "A", number 1, on a TCP port of this machine.
    static void WriteScale(int port);
    // The value of the key, or empty.
    static std::string Value(const std::string& section, const std::string& key);
    static void WriteHostSettings(const std::string& bytes);
};

}  // namespace tolvane::test
