#include "command/Progress.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "command/Columns.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::size_t kNameColumns = 24;
// Names are cut first, to this.
constexpr std::size_t kLeastNameColumns = 12;
constexpr std::size_t kBarWidth = 24;
// Before that a rate says little.
constexpr std::chrono::seconds kFirstRate{2};

std::string TimeText(std::chrono::seconds time) {
    const auto minutes = time.count() / 60;
    if (minutes == 0) return std::to_string(time.count()) + " s";
    return std::to_string(minutes) + " min " + std::to_string(time.count() % 60) + " s";
}

std::string Ended(const TScaleResult& result) {
    std::string text(OutcomeName(result.outcome));
    if (result.written > 0) text += ", " + std::to_string(result.written) + " written";
    if (result.unchanged > 0) text += ", " + std::to_string(result.unchanged) + " unchanged";
    if (result.deleted > 0) text += ", " + std::to_string(result.deleted) + " deleted";
    if (!result.refused.empty()) text += ", " + std::to_string(result.refused.size()) + " refused";
    if (result.pending > 0) text += ", " + std::to_string(result.pending) + " pending";
    return text;
}

// What is left of `width`.
std::size_t LeftOf(std::size_t width, std::size_t taken) {
    return width - std::min(width, taken);
}

// A name, and what stands behind it.
std::string BarLine(const std::string& name, const std::string& rest, std::size_t width) {
    const std::size_t room =
        std::clamp(LeftOf(width, Columns(rest)), kLeastNameColumns, kNameColumns);
    return Fitted(Fitted(name, room) + rest, width);
}

}  // namespace

TProgress::TProgress(std::ostream& out, bool shown, bool terminal, TClock& clock,
                     const std::function<std::size_t()>& columns)
    : out_(out), shown_(shown), terminal_(terminal), clock_(clock), columns_(columns) {}

std::size_t TProgress::Add(const TScaleRec& rec) {
    const std::lock_guard lock(mutex_);
    scales_.push_back({.name = std::to_string(rec.ScaleNumb) + " " + ToUtf8(rec.ScaleName.View())});
    return scales_.size() - 1;
}

void TProgress::Begins(std::size_t scale, std::size_t total) {
    const std::lock_guard lock(mutex_);
    TScale& line = scales_.at(scale);
    line.total = total;
    line.start = clock_.Now();
    line.begun = true;
    if (shown_ && !terminal_)
        out_ << line.name << ": connected, " << total << (total == 1 ? " article" : " articles")
             << std::endl;
}

void TProgress::Done(std::size_t scale, std::size_t done) {
    const std::lock_guard lock(mutex_);
    scales_.at(scale).done = done;
}

void TProgress::Ends(std::size_t scale, const TScaleResult& result) {
    const std::lock_guard lock(mutex_);
    TScale& line = scales_.at(scale);
    line.end = Ended(result);
    if (shown_ && !terminal_) out_ << line.name << ": " << line.end << std::endl;
}

void TProgress::Says(std::size_t scale, const std::string& text) {
    const std::lock_guard lock(mutex_);
    if (shown_ && !terminal_) out_ << scales_.at(scale).name << ": " << text << std::endl;
}

void TProgress::Tell(const std::string& line) {
    const std::lock_guard lock(mutex_);
    if (drawn_ > 0) out_ << "\x1b[" << drawn_ << "A\r\x1b[J";
    drawn_ = 0;
    out_ << line << std::endl;
}

void TProgress::Draw() {
    if (!shown_ || !terminal_) return;
    const std::lock_guard lock(mutex_);
    // A line that fills the terminal would be broken, and the next drawing would miss it.
    const std::size_t width = LeftOf(columns_(), 1);
    std::string text;
    if (drawn_ > 0) text += "\x1b[" + std::to_string(drawn_) + "A";
    for (const TScale& scale : scales_)
        text += "\r\x1b[K" + BarOf(scale, width) + "\n";
    drawn_ = scales_.size();
    out_ << text << std::flush;
}

std::string TProgress::BarOf(const TScale& scale, std::size_t width) const {
    if (!scale.end.empty()) return BarLine(scale.name, "  " + scale.end, width);
    if (!scale.begun) return BarLine(scale.name, "  waiting", width);
    const std::string counts =
        "]  " + std::to_string(scale.done) + "/" + std::to_string(scale.total) + TimeLeft(scale);
    const std::string lead = "  [";
    const std::size_t taken = kLeastNameColumns + lead.size() + Columns(counts);
    const std::size_t bar = std::min(kBarWidth, LeftOf(width, taken));
    const std::size_t total = std::max<std::size_t>(scale.total, 1);
    const std::size_t filled = std::min(bar, bar * scale.done / total);
    return BarLine(scale.name,
                   lead + std::string(filled, '#') + std::string(bar - filled, '.') + counts,
                   width);
}

std::string TProgress::TimeLeft(const TScale& scale) const {
    const std::chrono::duration<double> past = clock_.Now() - scale.start;
    if (scale.done == 0 || past < kFirstRate) return {};
    const double rate = static_cast<double>(scale.done) / past.count();
    const auto left = static_cast<std::int64_t>(
        static_cast<double>(scale.total - std::min(scale.done, scale.total)) / rate);
    return "  " + std::to_string(std::llround(rate * 60)) + "/min, " +
           TimeText(std::chrono::seconds(left)) + " left";
}

}  // namespace tolvane
