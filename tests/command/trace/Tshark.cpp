#include "Tshark.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace tolvane::test {
namespace {

using std::filesystem::path;

const path kDissector = path(TOLVANE_SOURCE_FOLDER) / "tools" / "wireshark" / "tolvane.lua";

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);)
        parts.push_back(part);
    return parts;
}

std::string Quoted(const path& file) {
    return "'" + file.string() + "'";
}

// Runs it in a shell; what it writes to either output comes back.
std::string Output(const std::string& command, const path& folder, bool succeeds,
                   std::string& errors) {
    const int status = std::system(
        (command + " >" + Quoted(folder / "out") + " 2>" + Quoted(folder / "errors")).c_str());
    errors = GetFile(folder / "errors");
    EXPECT_EQ(status == 0, succeeds) << command << "\n" << errors;
    return GetFile(folder / "out");
}

}  // namespace

std::vector<std::vector<std::string>> TTshark::Fields(const path& capture,
                                                      const std::vector<std::string>& names) const {
    std::string command = "HOME=" + Quoted(home_.Path()) + " LC_ALL=C.UTF-8 ";
    if (asPlugin) {
        const path plugins = home_ / ".local" / "lib" / "wireshark" / "plugins";
        std::filesystem::create_directories(plugins);
        std::filesystem::copy_file(kDissector, plugins / "tolvane.lua");
    }
    command += "env -u XDG_CONFIG_HOME -u WIRESHARK_CONFIG_DIR -u WIRESHARK_PLUGIN_DIR tshark -r " +
               Quoted(capture) + " " + options +
               " -T fields -E separator=/t -E occurrence=a -E 'aggregator=|'";
    if (!asPlugin) command += " -X lua_script:" + Quoted(kDissector);
    for (const std::string& name : names)
        command += " -e " + name;
    // A failure of the dissector is of the group Undecoded, as nothing else here; and a last field
    // that is never empty, which keeps those before it.
    command += " -e _ws.expert.group -e frame.number";

    std::string errors;
    const std::string output = Output(command, home_.Path(), !isCut, errors);
    EXPECT_EQ(errors.find("Lua"), std::string::npos) << errors;
    EXPECT_EQ(errors.find("cut short") != std::string::npos, isCut) << errors;
    std::vector<std::vector<std::string>> packets;
    for (const std::string& line : Split(output, '\n')) {
        packets.push_back(Split(line, '\t'));
        packets.back().resize(names.size() + 2);
        EXPECT_EQ(packets.back()[names.size()].find("83886080"), std::string::npos) << line;
        EXPECT_EQ(packets.back().back(), std::to_string(packets.size())) << line;
        packets.back().resize(names.size());
    }
    return packets;
}

std::vector<std::string> TTshark::Field(const path& capture, const std::string& name) const {
    std::vector<std::string> values;
    for (const auto& packet : Fields(capture, {name}))
        values.push_back(packet.at(0));
    return values;
}

void MakeCapture(const path& capture, const std::vector<std::string>& packets) {
    const TScratchFolder folder;
    std::string text;
    for (const std::string& packet : packets)
        text += "0000 " + packet + "\n";
    PutFile(folder / "packets", text);
    std::string errors;
    Output("text2pcap -q -l 147 " + Quoted(folder / "packets") + " " + Quoted(capture),
           folder.Path(), true, errors);
}

}  // namespace tolvane::test
