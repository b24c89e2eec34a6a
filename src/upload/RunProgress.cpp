#include "upload/RunProgress.h"

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Fewer articles, or those of a shorter time, do not show yet how long the others will take.
constexpr std::size_t kLeastMeasured = 5;
constexpr TMilliseconds kLeastMeasuredTime{2000};

constexpr std::chrono::seconds::rep kMinute = 60;
constexpr std::chrono::seconds::rep kHourMinutes = 60;

// In steps of `step`, rounded up.
template <class Number>
Number StepsUp(Number value, Number step) {
    return (value + step - 1) / step;
}

}  // namespace

void TRunProgress::NextScale(std::size_t articles, std::size_t later) {
    current_ = articles;
    later_ = later;
}

void TRunProgress::NextWholeScale(std::size_t scalesLater) {
    scalesLater_ = scalesLater;
    WholeScaleHas(wholeScale_);
}

void TRunProgress::WholeScaleHas(std::size_t articles) {
    wholeScale_ = articles;
    NextScale(articles, scalesLater_ * articles);
}

void TRunProgress::StartArticles(TTimePoint now) {
    before_ = now;
}

void TRunProgress::ArticleDone(TTimePoint now) {
    if (current_ == 0) return;
    --current_;
    ++done_;
    measured_ += now - before_;
    before_ = now;
}

TRunCount TRunProgress::Count() const {
    const std::size_t left = current_ + later_;
    TRunCount count{.done = done_, .all = done_ + left};
    const auto measured = std::chrono::duration_cast<TMilliseconds>(measured_);
    if (left > 0 && done_ >= kLeastMeasured && measured >= kLeastMeasuredTime)
        count.left = std::chrono::ceil<std::chrono::seconds>(
            measured * static_cast<TMilliseconds::rep>(left) /
            static_cast<TMilliseconds::rep>(done_));
    return count;
}

std::string CountText(const TRunCount& count) {
    std::string text = std::to_string(count.done);
    text += " от "_cp1251;
    return text + std::to_string(count.all);
}

std::string TimeLeftText(const TRunCount& count) {
    if (!count.left) return {};
    constexpr std::chrono::seconds::rep kSecondsStep = 5;
    const auto seconds = StepsUp(count.left->count(), kSecondsStep) * kSecondsStep;
    const auto minutes = StepsUp(count.left->count(), kMinute);
    std::string text("още "_cp1251);
    if (seconds < kMinute) {
        text += std::to_string(seconds);
        text += " сек"_cp1251;
        return text;
    }
    if (minutes >= kHourMinutes) {
        text += std::to_string(minutes / kHourMinutes);
        text += " ч"_cp1251;
        if (minutes % kHourMinutes == 0) return text;
        text += ' ';
    }
    text += std::to_string(minutes % kHourMinutes);
    text += " мин"_cp1251;
    return text;
}

}  // namespace tolvane
