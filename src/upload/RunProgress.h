#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "system/Clock.h"

namespace tolvane {

// How far a run has come, over all its scales.
struct TRunCount {
    std::size_t done = 0;
    std::size_t all = 0;                         // 0 when that is not known
    std::optional<std::chrono::seconds> left{};  // nothing before the rate is known

    friend bool operator==(const TRunCount&, const TRunCount&) = default;
};

// Counts the articles of a run and estimates the time left from the time that the articles so far
// have taken, with the pauses between them. What happens between two scales is not measured. One
// thread at a time.
class TRunProgress {
public:
    // A scale that gets `articles` is next; the scales after it get `later` in all. What was left
    // of the scale before is no part of the run any more.
    void NextScale(std::size_t articles, std::size_t later);
    // A scale whose number of articles is not known yet is next, with so many scales after it. They
    // count as large as the last one that WholeScaleHas was told about.
    void NextWholeScale(std::size_t scalesLater);
    void WholeScaleHas(std::size_t articles);

    // The scale is ready for its first article.
    void StartArticles(TTimePoint now);
    // An article is written, deleted or skipped. Does nothing beyond the scale's articles.
    void ArticleDone(TTimePoint now);

    TRunCount Count() const;

private:
    std::size_t done_ = 0;
    std::size_t current_ = 0;  // still to do in this scale
    std::size_t later_ = 0;    // in the scales after it
    std::size_t wholeScale_ = 0;
    std::size_t scalesLater_ = 0;
    TTimePoint before_{};              // the end of the article before
    TTimePoint::duration measured_{};  // what the articles so far have taken
};

// "142 от 465", code page 1251.
std::string CountText(const TRunCount& count);
// "още 4 мин", rounded up; empty when the time is not known.
std::string TimeLeftText(const TRunCount& count);

}  // namespace tolvane
