#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "command/Report.h"

namespace tolvane {

// The file that --log names: one JSON object a line, appended, each with its time (UTC). Any
// thread, once it is open.
class TEventLog {
public:
    // Until then, and with an empty path, nothing is logged. Throws TUsageError when the file
    // cannot be opened.
    void Open(const std::filesystem::path& file, std::function<std::string()> now);

    // Fields after "time" and "event". A line that cannot be written is lost, and Failed answers
    // true from then on.
    void Write(const std::string& event, const std::vector<std::pair<std::string, TCell>>& fields);
    bool Failed() const { return failed_; }

private:
    std::function<std::string()> now_;
    std::mutex mutex_;
    std::ofstream file_;
    std::atomic<bool> failed_ = false;
};

// The last line of a command.
void LogEnd(TEventLog& log, TExitCode code, const std::string& error);

}  // namespace tolvane
