#pragma once

#include <asio/any_io_executor.hpp>
#include <deque>
#include <functional>
#include <memory>

#include "simulator/ReplyPlan.h"

namespace tolvane::simulator {

// What a scale does with a request frame.
using TAnswer = std::function<TReplyPlan(const TBytes& frame)>;

// The connection to one client, on which plans are carried out. Used only on the thread of its
// executor; exists as long as it reads, writes or waits for a step's time.
class TLink : public std::enable_shared_from_this<TLink> {
public:
    explicit TLink(asio::any_io_executor executor) : executor_(std::move(executor)) {}
    virtual ~TLink() = default;
    TLink(const TLink&) = delete;
    TLink& operator=(const TLink&) = delete;

    // Carries the plan out after the earlier plans; a detached plan at once.
    void Perform(TReplyPlan plan);
    const asio::any_io_executor& Executor() const { return executor_; }

protected:
    using TDone = std::function<void(bool sent)>;

    // Starts to send one segment or datagram; `bytes` live until `done` is called.
    virtual void Write(const TBytes& bytes, TDone done) = 0;
    virtual void WriteStray(const TBytes&) {}
    virtual void End(TEnding ending) = 0;

private:
    friend class TPlanRun;
    struct TPending {
        TBytes bytes;
        std::function<void(const std::shared_ptr<TLink>&, bool sent)> done;
    };

    // One write at a time, so that a detached plan never lands inside another's bytes.
    void Enqueue(TPending write);
    void WriteNext();
    void PerformNext();

    asio::any_io_executor executor_;
    std::deque<TReplyPlan> plans_;
    bool performing_ = false;
    std::deque<TPending> writes_;
};

}  // namespace tolvane::simulator
