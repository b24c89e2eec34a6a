#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

#include "simulator/Faults.h"
#include "simulator/ReplyPlan.h"
#include "simulator/ScaleState.h"

namespace tolvane::simulator {

struct TCoreOptions {
    TScaleProperties scale{};
    int versionReplyLength = 17;       // data bytes of the version reply, error code included
    bool answersBadChecksum = false;   // otherwise such a request gets no reply
    bool answersWrongAddress = false;  // the same
    bool keepsRequests = true;         // whether Requests() grows
    TFaultScript faults{};
    // Articles, mode and counts to start from; its `scale` is not used.
    std::optional<TScaleState> initialState{};
    // Called after each change from programming to weighing mode, on the thread that serves the
    // links.
    std::function<void(const TScaleState&)> onWeighing{};
    // Called with each frame that came and the plan of its reply, on the same thread.
    std::function<void(const TBytes&, const TReplyPlan&)> onExchange{};
};

struct TRecordedRequest {
    TBytes frame;          // as it came, start and end byte included
    TRequest request;      // decoded
    bool ignored = false;  // arrived while the scale was silent
};

// The scale itself, without a wire: takes a request frame and returns what to send. Any thread.
class TScaleCore {
public:
    using TNow = std::function<std::chrono::steady_clock::time_point()>;

    explicit TScaleCore(TCoreOptions options, TNow now = std::chrono::steady_clock::now);

    TReplyPlan Answer(const TBytes& frame);
    TScaleState State() const;
    std::vector<TRecordedRequest> Requests() const;
    // Replaces all faults, ends a silence and numbers the requests from 1 again.
    void SetFaults(TFaultScript faults);
    // Whether that many frames have come within the time.
    bool WaitForRequests(int count, std::chrono::milliseconds timeout) const;

private:
    struct TMatch {
        std::vector<TFault> faults{};
        const TFault* Find(TFaultKind kind) const;
    };

    TReplyPlan AnswerLocked(const TBytes& frame);
    TReplyPlan AnswerWellFormed(const TRequest& request);
    TMatch MatchFaults(std::uint8_t command);
    bool Applies(const TFault& fault, int number);
    TReplyPlan Deliver(const TReply& reply, const TMatch& match);
    bool IsSilent();

    TBytes Obey(const TRequest& request);
    TRefusal ChangeMode(const TRequest& request);
    TBytes Version(TRefusal refusal) const;
    TRefusal WriteArticle(const TRequest& request);
    TRefusal WritePrice(const TRequest& request, TArticle& article) const;
    TRefusal WriteText(const TRequest& request, TArticle& article) const;

    const TCoreOptions options_;
    const TNow now_;
    mutable std::mutex mutex_;
    mutable std::condition_variable arrived_;
    TScaleState state_;
    std::vector<TRecordedRequest> requests_;
    TFaultScript faults_;
    std::mt19937 random_;
    int number_ = 0;  // of the latest request, since the faults were set
    std::map<int, int> numberOfCommand_;
    int arrivedCount_ = 0;
    bool silentForEver_ = false;
    std::chrono::steady_clock::time_point silentUntil_{};
    std::vector<TSendStep> held_;
};

}  // namespace tolvane::simulator
