#include "command/EventLog.h"

#include <nlohmann/json.hpp>

#include "command/NamedFile.h"
#include "command/UsageError.h"

namespace tolvane {

void TEventLog::Open(const std::filesystem::path& file, std::function<std::string()> now) {
    if (file.empty()) return;
    now_ = std::move(now);
    file_.open(file, std::ios::binary | std::ios::app);
    if (!file_) throw TUsageError("The log " + Utf8Path(file) + " cannot be written.");
}

void TEventLog::Write(const std::string& event,
                      const std::vector<std::pair<std::string, TCell>>& fields) {
    if (!file_.is_open()) return;
    nlohmann::ordered_json line;
    line["time"] = now_();
    line["event"] = event;
    for (const auto& [key, value] : fields)
        std::visit(
            [&line, &name = key](const auto& content) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(content)>, std::monostate>)
                    line[name] = content;
            },
            value);
    const std::lock_guard lock(mutex_);
    file_ << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n'
          << std::flush;
    if (!file_) failed_ = true;
}

void LogEnd(TEventLog& log, TExitCode code, const std::string& error) {
    log.Write("end", {{"exitCode", std::int64_t{static_cast<int>(code)}}, {"error", error}});
}

}  // namespace tolvane
