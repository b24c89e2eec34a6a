#include "simulator/Link.h"

#include <asio/steady_timer.hpp>
#include <utility>

namespace tolvane::simulator {

// Carries one plan out; it is kept alive by the timer or the write that it waits for.
class TPlanRun : public std::enable_shared_from_this<TPlanRun> {
public:
    TPlanRun(std::shared_ptr<TLink> link, TReplyPlan plan, std::function<void()> finished)
        : link_(std::move(link)),
          plan_(std::move(plan)),
          finished_(std::move(finished)),
          timer_(link_->Executor()) {}

    void Next() {
        if (index_ == plan_.steps.size()) {
            if (plan_.ending != TEnding::Keep) link_->End(plan_.ending);
            finished_();
            return;
        }
        const auto delay = plan_.steps[index_].delay;
        if (delay.count() == 0) {
            Send();
            return;
        }
        timer_.expires_after(delay);
        timer_.async_wait([self = shared_from_this()](const std::error_code& error) {
            if (!error) self->Send();
        });
    }

private:
    void Send() {
        TSendStep& step = plan_.steps[index_++];
        if (step.stray) {
            link_->WriteStray(step.bytes);
            Next();
            return;
        }
        link_->Enqueue(std::move(step.bytes), [self = shared_from_this()](bool sent) {
            // Nothing more can be said to a client that has gone.
            if (!sent) self->index_ = self->plan_.steps.size();
            self->Next();
        });
    }

    std::shared_ptr<TLink> link_;
    TReplyPlan plan_;
    std::function<void()> finished_;
    asio::steady_timer timer_;
    std::size_t index_ = 0;
};

void TLink::Perform(TReplyPlan plan) {
    if (plan.detached) {
        std::make_shared<TPlanRun>(shared_from_this(), std::move(plan), [] {})->Next();
        return;
    }
    plans_.push_back(std::move(plan));
    if (!performing_) PerformNext();
}

void TLink::PerformNext() {
    performing_ = !plans_.empty();
    if (!performing_) return;
    TReplyPlan plan = std::move(plans_.front());
    plans_.pop_front();
    const auto finished = [link = weak_from_this()] {
        if (const auto self = link.lock()) self->PerformNext();
    };
    std::make_shared<TPlanRun>(shared_from_this(), std::move(plan), finished)->Next();
}

void TLink::Enqueue(TBytes bytes, TDone done) {
    writes_.push_back({std::move(bytes), std::move(done)});
    if (writes_.size() == 1) WriteNext();
}

void TLink::WriteNext() {
    Write(writes_.front().bytes, [self = shared_from_this()](bool sent) {
        const TPending pending = std::move(self->writes_.front());
        self->writes_.pop_front();
        if (!self->writes_.empty()) self->WriteNext();
        pending.done(sent);
    });
}

}  // namespace tolvane::simulator
