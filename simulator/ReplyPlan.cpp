#include "simulator/ReplyPlan.h"

#include <algorithm>
#include <utility>

namespace tolvane::simulator {

namespace {

using std::chrono::milliseconds;

const TFault* Find(std::span<const TFault> faults, TFaultKind kind) {
    const auto found = std::find_if(faults.begin(), faults.end(),
                                    [&](const TFault& fault) { return fault.kind == kind; });
    return found == faults.end() ? nullptr : &*found;
}

TBytes Noise(const TFault& fault) {
    const TBytes unit = fault.bytes.empty() ? TBytes{0x55, 0xAA, 0x55} : fault.bytes;
    TBytes noise;
    for (int i = 0; i < fault.count.value_or(1); ++i)
        noise.insert(noise.end(), unit.begin(), unit.end());
    return noise;
}

TBytes Frame(const TReply& reply, std::span<const TFault> faults) {
    if (const TFault* raw = Find(faults, TFaultKind::Raw)) return raw->bytes;
    const auto off = [&](TFaultKind kind) {
        return static_cast<std::uint8_t>(Find(faults, kind) != nullptr ? 1 : 0);
    };
    const TBytes data = Find(faults, TFaultKind::Empty) != nullptr ? TBytes() : reply.data;
    return EncodeReply(static_cast<std::uint8_t>(reply.address + off(TFaultKind::WrongAddress)),
                       static_cast<std::uint8_t>(reply.command + off(TFaultKind::WrongCommand)),
                       data, off(TFaultKind::BadChecksum));
}

void Damage(TBytes& frame, std::span<const TFault> faults) {
    if (Find(faults, TFaultKind::NoStx) != nullptr && !frame.empty()) frame.erase(frame.begin());
    if (const TFault* fault = Find(faults, TFaultKind::BadEtx); fault != nullptr && !frame.empty())
        frame.back() = fault->bytes.empty() ? std::uint8_t{0x55} : fault->bytes.front();
    if (const TFault* fault = Find(faults, TFaultKind::Truncated)) {
        const auto cut = static_cast<std::size_t>(fault->count.value_or(2));
        frame.resize(frame.size() - std::min(cut, frame.size()));
    }
}

TBytes Surround(const TBytes& frame, std::span<const TFault> faults) {
    TBytes bytes;
    if (Find(faults, TFaultKind::EtxFirst) != nullptr) bytes.push_back(kFrameEnd);
    const auto append = [&](const TBytes& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
    };
    if (const TFault* fault = Find(faults, TFaultKind::NoiseBefore)) append(Noise(*fault));
    append(frame);
    if (Find(faults, TFaultKind::Double) != nullptr) append(frame);
    if (const TFault* fault = Find(faults, TFaultKind::NoiseAfter)) append(Noise(*fault));
    return bytes;
}

std::vector<TSendStep> Cut(const TBytes& bytes, std::span<const TFault> faults) {
    std::vector<TSendStep> steps;
    const auto add = [&](std::size_t from, std::size_t to, milliseconds delay) {
        const auto begin = bytes.begin();
        steps.push_back({delay, TBytes(begin + static_cast<std::ptrdiff_t>(from),
                                       begin + static_cast<std::ptrdiff_t>(to))});
    };
    if (const TFault* fault = Find(faults, TFaultKind::Split)) {
        const milliseconds pause = fault->ms.value_or(milliseconds(2));
        for (std::size_t i = 0; i < bytes.size(); ++i)
            add(i, i + 1, i == 0 ? milliseconds(0) : pause);
    } else if (const TFault* at = Find(faults, TFaultKind::SplitAt)) {
        const std::size_t first =
            std::min(static_cast<std::size_t>(at->count.value_or(1)), bytes.size());
        add(0, first, milliseconds(0));
        add(first, bytes.size(), at->ms.value_or(milliseconds(20)));
    } else {
        add(0, bytes.size(), milliseconds(0));
    }
    return steps;
}

void SetTime(TReplyPlan& plan, std::span<const TFault> faults) {
    if (const TFault* fault = Find(faults, TFaultKind::Slow))
        plan.steps.front().delay += fault->ms.value_or(milliseconds(500));
    if (const TFault* fault = Find(faults, TFaultKind::Late)) {
        const std::vector<TSendStep> once = plan.steps;
        for (int i = 1; i < fault->times; ++i)
            plan.steps.insert(plan.steps.end(), once.begin(), once.end());
        plan.steps.front().delay += fault->ms.value_or(milliseconds(1500));
        plan.detached = true;
    }
}

void SetEnding(TReplyPlan& plan, std::span<const TFault> faults) {
    const auto end = [&](TEnding ending, bool withoutReply) {
        plan.ending = ending;
        if (withoutReply) plan.steps.clear();
    };
    if (Find(faults, TFaultKind::Disconnect) != nullptr) end(TEnding::Close, false);
    if (Find(faults, TFaultKind::Drop) != nullptr) end(TEnding::Close, true);
    if (Find(faults, TFaultKind::Cut) != nullptr) end(TEnding::Close, false);
    if (Find(faults, TFaultKind::HalfClose) != nullptr) end(TEnding::HalfClose, false);
    if (Find(faults, TFaultKind::Reset) != nullptr) end(TEnding::Reset, true);
}

}  // namespace

TReplyPlan BuildPlan(const TReply& reply, std::span<const TFault> faults) {
    TBytes frame = Frame(reply, faults);
    Damage(frame, faults);
    TBytes bytes = Surround(frame, faults);
    if (Find(faults, TFaultKind::Cut) != nullptr) bytes.resize(bytes.size() / 2);
    TReplyPlan plan;
    plan.steps = Cut(bytes, faults);
    if (const TFault* stray = Find(faults, TFaultKind::Stray))
        plan.steps.insert(plan.steps.begin(), TSendStep{milliseconds(0), stray->bytes, true});
    SetTime(plan, faults);
    SetEnding(plan, faults);
    return plan;
}

}  // namespace tolvane::simulator
