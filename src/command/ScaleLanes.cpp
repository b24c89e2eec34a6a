#include "command/ScaleLanes.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "command/RunLock.h"

namespace tolvane {

namespace {

// For each task the first task of its lane.
std::vector<std::size_t> FirstOfLane(const std::vector<TScaleLanes::TTask>& tasks) {
    std::vector<std::size_t> first(tasks.size());
    std::unordered_map<std::string, std::size_t> needed;
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        first[task] = task;
        for (const std::string& need : tasks[task].needs) {
            const std::size_t other = needed.try_emplace(need, task).first->second;
            const auto [lower, higher] = std::minmax(first[task], first[other]);
            std::replace(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(task) + 1,
                         std::size_t{higher}, std::size_t{lower});
        }
    }
    return first;
}

}  // namespace

std::vector<std::string> NeedsOf(const TScaleRec& rec) {
    return {rec.CommType == kCommUdp ? "udp" : RunLockName(rec),
            "ledger " + std::to_string(rec.ScaleNumb)};
}

TScaleLanes::TScaleLanes(std::vector<TTask> tasks, std::size_t atOnce) {
    const std::vector<std::size_t> first = FirstOfLane(tasks);
    std::unordered_map<std::size_t, std::size_t> laneOf;
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        const auto [lane, isNew] = laneOf.try_emplace(first[task], lanes_.size());
        if (isNew) lanes_.emplace_back();
        lanes_[lane->second].push_back(std::move(tasks[task].run));
    }
    running_ = atOnce == 0 ? lanes_.size() : std::min(atOnce, lanes_.size());
    const std::size_t count = running_;
    for (std::size_t i = 0; i < count; ++i)
        threads_.emplace_back([this] { Work(); });
}

TScaleLanes::~TScaleLanes() = default;

bool TScaleLanes::WaitFor(TMilliseconds time) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, time, [this] { return running_ == 0; });
}

void TScaleLanes::Work() {
    for (std::size_t lane = next_++; lane < lanes_.size(); lane = next_++)
        for (const std::function<void()>& run : lanes_[lane])
            run();
    const std::lock_guard lock(mutex_);
    if (--running_ == 0) ended_.notify_all();
}

}  // namespace tolvane
