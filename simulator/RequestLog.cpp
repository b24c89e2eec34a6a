#include "simulator/RequestLog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <utility>

#include "simulator/Commands.h"
#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

std::string CommandInWords(const TRequest& request) {
    switch (request.defect) {
        case TDefect::Stuffing:
            return "wrong stuffing";
        case TDefect::TooShort:
            return "too short";
        case TDefect::Checksum:
            return "wrong checksum";
        case TDefect::None:
            break;
    }
    return CommandText(request.command);
}

// "12.34" of three bytes of packed decimal, as far as these are digits.
std::string PriceInWords(std::span<const std::uint8_t> bytes) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%02X%02X.%02X", bytes[2], bytes[1], bytes[0]);
    std::string text(digits.data());
    text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 4));
    return text;
}

std::string SubjectInWords(const TRequest& request, TCodeTable table) {
    const std::span<const std::uint8_t> data(request.data);
    const bool price = request.command >= kSetPrice && request.command <= kSetPriceC;
    constexpr std::size_t kPrice = 3;
    constexpr std::size_t kText = 5;
    if (data.size() < kText || !(price || request.command == kSetParam)) return {};
    std::string article = "article " + std::to_string(data[1] + 256 * data[2]);
    if (price && data.size() < 2 * kPrice) return article;
    if (price) return article + ", " + PriceInWords(data.subspan(kPrice, kPrice));
    const int parameter = data[kPrice];
    const std::string name = article + ", text " + std::to_string(parameter) + ": ";
    const auto text = data.subspan(kText);
    return name + (parameter == kBestBeforeParameter ? ToHex(text, " ") : DecodeText(text, table));
}

// A reply differs from a request only in its start byte.
std::string FrameInWords(TBytes frame) {
    if (frame.empty()) return "empty";
    if (frame.front() != kReplyStart || frame.back() != kFrameEnd) return "wrong frame";
    frame.front() = kRequestStart;
    const TRequest reply = DecodeRequest(frame);
    if (reply.defect != TDefect::None) return CommandInWords(reply);
    if (reply.data.empty()) return "without data";
    return reply.data.front() == 0 ? "done" : "refused: " + std::to_string(int{reply.data.front()});
}

std::string ReplyInWords(const TReplyPlan& plan) {
    std::string words;
    std::chrono::milliseconds delay{0};
    TBytes bytes;
    for (const TSendStep& step : plan.steps) {
        delay += step.delay;
        if (!step.stray) bytes.insert(bytes.end(), step.bytes.begin(), step.bytes.end());
    }
    words = plan.steps.empty() ? "none" : FrameInWords(bytes);
    if (delay.count() > 0) words += ", after " + std::to_string(delay.count()) + " ms";
    if (plan.ending == TEnding::Close) words += ", closed";
    if (plan.ending == TEnding::HalfClose) words += ", half closed";
    if (plan.ending == TEnding::Reset) words += ", reset";
    return words;
}

}  // namespace

TRequestLine DescribeExchange(const TBytes& frame, const TReplyPlan& plan, TCodeTable table) {
    const TRequest request = DecodeRequest(frame);
    TRequestLine line;
    line.command = CommandInWords(request);
    if (request.defect == TDefect::None) line.subject = SubjectInWords(request, table);
    line.reply = ReplyInWords(plan);
    line.bytes = ToHex(frame, " ");
    for (const TSendStep& step : plan.steps) {
        if (!line.replyBytes.empty()) line.replyBytes += " | ";
        line.replyBytes += ToHex(step.bytes, " ");
    }
    return line;
}

TRequestLog::TRequestLog(TCodeTable table, TNow now)
    : table_(table), now_(std::move(now)), start_(now_()) {}

void TRequestLog::Add(const TBytes& frame, const TReplyPlan& plan) {
    TRequestLine line = DescribeExchange(frame, plan, table_);
    line.at = std::chrono::duration_cast<std::chrono::milliseconds>(now_() - start_);
    const std::lock_guard lock(mutex_);
    line.number = ++count_;
    lines_.push_front(std::move(line));
    if (lines_.size() > kMost) lines_.pop_back();
}

std::vector<TRequestLine> TRequestLog::Lines() const {
    const std::lock_guard lock(mutex_);
    return {lines_.begin(), lines_.end()};
}

}  // namespace tolvane::simulator
