#include "simulator/ScaleCore.h"

#include <algorithm>
#include <utility>

namespace tolvane::simulator {

TScaleCore::TScaleCore(TCoreOptions options, TNow now)
    : options_(std::move(options)), now_(std::move(now)) {
    if (options_.initialState) state_ = *options_.initialState;
    state_.scale = options_.scale;
    SetFaults(options_.faults);
}

TReplyPlan TScaleCore::Answer(const TBytes& frame) {
    TReplyPlan plan;
    std::optional<TScaleState> saved;
    {
        const std::lock_guard lock(mutex_);
        const bool wasProgramming = state_.programming;
        plan = AnswerLocked(frame);
        if (wasProgramming && !state_.programming && options_.onWeighing) saved = state_;
        ++arrivedCount_;
    }
    arrived_.notify_all();
    if (saved) options_.onWeighing(*saved);
    if (options_.onExchange) options_.onExchange(frame, plan);
    return plan;
}

TScaleState TScaleCore::State() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

std::vector<TRecordedRequest> TScaleCore::Requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void TScaleCore::SetFaults(TFaultScript faults) {
    const std::lock_guard lock(mutex_);
    faults_ = std::move(faults);
    random_.seed(faults_.seed);
    number_ = 0;
    numberOfCommand_.clear();
    silentForEver_ = false;
    silentUntil_ = {};
    held_.clear();
}

bool TScaleCore::WaitForRequests(int count, std::chrono::milliseconds timeout) const {
    std::unique_lock lock(mutex_);
    return arrived_.wait_for(lock, timeout, [&] { return arrivedCount_ >= count; });
}

bool TScaleCore::IsSilent() {
    return silentForEver_ || now_() < silentUntil_;
}

TReplyPlan TScaleCore::AnswerLocked(const TBytes& frame) {
    TRequestCounts& counts = state_.requests;
    const TRequest request = DecodeRequest(frame);
    const bool ignored = IsSilent();
    if (options_.keepsRequests) requests_.push_back({frame, request, ignored});
    ++counts.total;
    if (ignored) {
        ++counts.ignored;
        return {};
    }
    ++number_;
    const auto address = static_cast<std::uint8_t>(state_.scale.address);
    const auto refuse = [&](TRefusal refusal) {
        const TReply reply{address, request.command, {static_cast<std::uint8_t>(refusal)}};
        return BuildPlan(reply, {});
    };
    if (request.defect == TDefect::Checksum) {
        ++counts.badChecksum;
        return options_.answersBadChecksum ? refuse(TRefusal::WrongChecksum) : TReplyPlan{};
    }
    if (request.defect != TDefect::None) {
        ++counts.malformed;
        return {};
    }
    if (request.address != address) {
        ++counts.wrongAddress;
        return options_.answersWrongAddress ? refuse(TRefusal::WrongAddress) : TReplyPlan{};
    }
    return AnswerWellFormed(request);
}

TReplyPlan TScaleCore::AnswerWellFormed(const TRequest& request) {
    ++state_.requests.byCommand[request.command];
    const TMatch match = MatchFaults(request.command);
    if (const TFault* silent = match.Find(TFaultKind::Silent)) {
        if (silent->ms)
            silentUntil_ = now_() + *silent->ms;
        else
            silentForEver_ = true;
        return {};
    }
    if (match.Find(TFaultKind::NoReply) != nullptr) return {};
    TReply reply{static_cast<std::uint8_t>(state_.scale.address), request.command, {}};
    if (const TFault* error = match.Find(TFaultKind::Error)) {
        if (request.command == kGetVersion) reply.data = Version(TRefusal::None);
        reply.data.resize(std::max<std::size_t>(reply.data.size(), 1));
        reply.data.front() = static_cast<std::uint8_t>(error->code);
    } else {
        reply.data = Obey(request);
        if (!reply.data.empty() && reply.data.front() != 0) ++state_.requests.refused;
    }
    return Deliver(reply, match);
}

const TFault* TScaleCore::TMatch::Find(TFaultKind kind) const {
    for (const TFault& fault : faults) {
        if (fault.kind == kind) return &fault;
    }
    return nullptr;
}

TScaleCore::TMatch TScaleCore::MatchFaults(std::uint8_t command) {
    TMatch match;
    const int numberOfCommand = ++numberOfCommand_[command];
    for (const TFault& fault : faults_.faults) {
        if (fault.command && *fault.command != command) continue;
        if (Applies(fault, fault.command ? numberOfCommand : number_))
            match.faults.push_back(fault);
    }
    return match;
}

bool TScaleCore::Applies(const TFault& fault, int number) {
    if (fault.request != 0 && number != fault.request) return false;
    if (fault.from != 0 && number < fault.from) return false;
    if (fault.to != 0 && number > fault.to) return false;
    // Not by a distribution of the standard library: its numbers depend on the library.
    constexpr double kRange = 4294967296.0;
    return fault.percent >= 100 || static_cast<double>(random_()) / kRange * 100 < fault.percent;
}

TReplyPlan TScaleCore::Deliver(const TReply& reply, const TMatch& match) {
    TReplyPlan plan = BuildPlan(reply, match.faults);
    std::vector<TSendStep> waiting = std::exchange(held_, {});
    if (match.Find(TFaultKind::Held) != nullptr) held_ = std::exchange(plan.steps, {});
    plan.steps.insert(plan.steps.begin(), waiting.begin(), waiting.end());
    return plan;
}

}  // namespace tolvane::simulator
