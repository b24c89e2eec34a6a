#include "command/ScaleLanes.h"

#include <algorithm>
#include <cstddef>
#include <system_error>
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

TScaleLanes::TScaleLanes(std::vector<TTask> tasks, std::size_t atOnce,
                         const TStartThread& startThread) {
    const std::vector<std::size_t> first = FirstOfLane(tasks);
    std::unordered_map<std::size_t, std::size_t> laneOf;
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        const auto [lane, isNew] = laneOf.try_emplace(first[task], lanes_.size());
        if (isNew) lanes_.emplace_back();
        lanes_[lane->second].push_back(std::move(tasks[task].run));
    }
    const std::size_t count = atOnce == 0 ? lanes_.size() : std::min(atOnce, lanes_.size());
    threads_.reserve(count);
    while (threads_.size() < count && StartOne(startThread)) {
    }
}

TScaleLanes::~TScaleLanes() {
    if (!threads_.empty()) return;
    while (!WorkHere()) {
    }
}

std::jthread TScaleLanes::StartThread(std::function<void()> work) {
    return std::jthread(std::move(work));
}

bool TScaleLanes::StartOne(const TStartThread& startThread) {
    {
        const std::lock_guard lock(mutex_);
        ++running_;
    }
    try {
        threads_.push_back(startThread([this] { Work(); }));
        return true;
    } catch (const std::system_error&) {
        const std::lock_guard lock(mutex_);
        --running_;
        return false;
    }
}

bool TScaleLanes::WaitFor(TMilliseconds time) {
    if (threads_.empty()) return WorkHere();
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

bool TScaleLanes::WorkHere() {
    if (next_ >= lanes_.size()) return true;
    lanes_[next_][here_]();
    if (++here_ == lanes_[next_].size()) {
        here_ = 0;
        ++next_;
    }
    return next_ >= lanes_.size();
}

}  // namespace tolvane
