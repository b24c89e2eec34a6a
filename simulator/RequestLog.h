#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "simulator/CodePages.h"
#include "simulator/ReplyPlan.h"

namespace tolvane::simulator {

// One request in words, UTF-8.
struct TRequestLine {
    int number = 0;
    std::chrono::milliseconds at{0};  // since the log was made
    std::string command{};            // "SetParam", or "0x50", or what is wrong with the frame
    std::string subject{};            // "article 7, 12.34"
    std::string reply{};              // "done", "refused: 4", "none"
    std::string bytes{};              // of the request, hexadecimal
    std::string replyBytes{};
};

TRequestLine DescribeExchange(const TBytes& frame, const TReplyPlan& plan, TCodeTable table);

// The latest requests. Any thread.
class TRequestLog {
public:
    using TNow = std::function<std::chrono::steady_clock::time_point()>;
    static constexpr std::size_t kMost = 100;

    explicit TRequestLog(TCodeTable table, TNow now = std::chrono::steady_clock::now);

    void Add(const TBytes& frame, const TReplyPlan& plan);
    // Newest first, kMost at most.
    std::vector<TRequestLine> Lines() const;

private:
    const TCodeTable table_;
    const TNow now_;
    const std::chrono::steady_clock::time_point start_;
    mutable std::mutex mutex_;
    std::deque<TRequestLine> lines_;
    int count_ = 0;
};

}  // namespace tolvane::simulator
