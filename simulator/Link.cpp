#include "simulator/Link.h"

#include <asio/steady_timer.hpp>
#include <utility>

namespace tolvane::simulator {

// Carries one plan out. The timer or the write that it waits for keeps it alive, and the link too.
// It does not hold the link itself, because the link's waiting writes hold this object.
class TPlanRun : public std::enable_shared_from_this<TPlanRun> {
public:
    using TLinkPointer = std::shared_ptr<TLink>;

    TPlanRun(const TLinkPointer& link, TReplyPlan plan)
        : plan_(std::move(plan)), timer_(link->Executor()) {}

    void Next(const TLinkPointer& link) {
        if (index_ == plan_.steps.size()) {
            if (plan_.ending != TEnding::Keep) link->End(plan_.ending);
            if (!plan_.detached) link->PerformNext();
            return;
        }
        const auto delay = plan_.steps[index_].delay;
        if (delay.count() == 0) {
            Send(link);
            return;
        }
        timer_.expires_after(delay);
        timer_.async_wait([self = shared_from_this(), link](const std::error_code& error) {
            if (!error) self->Send(link);
        });
    }

private:
    void Send(const TLinkPointer& link) {
        TSendStep& step = plan_.steps[index_++];
        if (step.stray) {
            link->WriteStray(step.bytes);
            Next(link);
            return;
        }
        link->Enqueue({std::move(step.bytes),
                       [self = shared_from_this()](const TLinkPointer& sender, bool sent) {
                           // Nothing more is sent to a client that has disconnected.
                           if (!sent) self->index_ = self->plan_.steps.size();
                           self->Next(sender);
                       }});
    }

    TReplyPlan plan_;
    asio::steady_timer timer_;
    std::size_t index_ = 0;
};

void TLink::Perform(TReplyPlan plan) {
    if (plan.detached) {
        const auto link = shared_from_this();
        std::make_shared<TPlanRun>(link, std::move(plan))->Next(link);
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
    const auto link = shared_from_this();
    std::make_shared<TPlanRun>(link, std::move(plan))->Next(link);
}

void TLink::Enqueue(TPending write) {
    writes_.push_back(std::move(write));
    if (writes_.size() == 1) WriteNext();
}

void TLink::WriteNext() {
    Write(writes_.front().bytes, [self = shared_from_this()](bool sent) {
        const TPending pending = std::move(self->writes_.front());
        self->writes_.pop_front();
        if (!self->writes_.empty()) self->WriteNext();
        pending.done(self, sent);
    });
}

}  // namespace tolvane::simulator
