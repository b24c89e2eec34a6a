#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "simulator/VirtualScale.h"

namespace tolvane::test {

// The virtual scale in this process, and how many bytes it sends for the request that came last.
class TSoakScale {
public:
    explicit TSoakScale(simulator::TScaleOptions options) : scale_(WithHook(std::move(options))) {
        scale_.Start();
    }

    simulator::TVirtualScale& Scale() { return scale_; }
    // The bytes that the scale sends after its `count`-th request, those of other senders left out;
    // -1 while that request has not come.
    int PlannedBytes(int count) const {
        const std::lock_guard lock(mutex_);
        return seen_ >= count ? planned_ : -1;
    }
    bool Await(int count) const {
        std::unique_lock lock(mutex_);
        return came_.wait_for(lock, std::chrono::seconds(10), [&] { return seen_ >= count; });
    }

private:
    simulator::TScaleOptions WithHook(simulator::TScaleOptions options) {
        options.keepsRequests = false;
        options.onExchange = [this](const simulator::TBytes&, const simulator::TReplyPlan& plan) {
            std::size_t bytes = 0;
            for (const auto& step : plan.steps)
                if (!step.stray) bytes += step.bytes.size();
            {
                const std::lock_guard lock(mutex_);
                planned_ = static_cast<int>(bytes);
                ++seen_;
            }
            came_.notify_all();
        };
        return options;
    }

    mutable std::mutex mutex_;
    mutable std::condition_variable came_;
    int seen_ = 0;
    int planned_ = 0;
    simulator::TVirtualScale scale_;
};

}  // namespace tolvane::test
