#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvane::bench {

// Writes all articles of a database into S300 scales at these TCP ports of this computer, as the
// command does, and prints the command's report as JSON. The scale list of the command holds only
// twenty scales; this has as many as there are ports. Answers the command's exit code.
int WriteManyScales(const std::filesystem::path& stateFolder, const std::string& database,
                    const std::vector<std::string>& ports);

}  // namespace tolvane::bench
