#pragma once

#include <filesystem>
#include <string>

namespace tolvane::test {

// The module's configuration file and the host's settings file, which lie beside this program as
// they do beside a host. Both are removed when the object is made and when it goes.
class TConfiguration {
public:
    TConfiguration();
    TConfiguration(const TConfiguration&) = delete;
    TConfiguration& operator=(const TConfiguration&) = delete;
    ~TConfiguration();

    static std::filesystem::path File();
    static std::string Bytes();
    static void Write(const std::string& bytes);
    // Writes a file with one checked EVL named "A", number 1, on a TCP port of this machine.
    static void WriteScale(int port);
    // The value of the key, or empty.
    static std::string Value(const std::string& section, const std::string& key);
    static void WriteHostSettings(const std::string& bytes);
};

}  // namespace tolvane::test
