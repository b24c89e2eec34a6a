#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "command/ScaleResult.h"
#include "system/Clock.h"

namespace tolvane {

// Shows people how far the scales are: on a terminal a bar for each, drawn anew in its place;
// elsewhere a line when a scale begins and when it ends. All texts in are code page 1251. Any
// thread.
class TProgress {
public:
    // `out` and `columns`, which tells the terminal's at each drawing, outlive the object. Not
    // shown: nothing is printed.
    TProgress(std::ostream& out, bool shown, bool terminal, TClock& clock,
              const std::function<std::size_t()>& columns);

    // The scales, in the order in which they are shown.
    std::size_t Add(const TScaleRec& rec);
    void Begins(std::size_t scale, std::size_t total);
    void Done(std::size_t scale, std::size_t done);
    void Ends(std::size_t scale, const TScaleResult& result);
    // A line of its own, which bars leave no room for.
    void Says(std::size_t scale, const std::string& text);
    // A line for everybody, also when progress is not shown; above the bars.
    void Tell(const std::string& line);
    // On a terminal: draws the bars. Called from time to time.
    void Draw();

private:
    struct TScale {
        std::string name{};  // UTF-8
        std::size_t total = 0;
        std::size_t done = 0;
        TTimePoint start{};
        bool begun = false;
        std::string end{};  // what became of it
    };
    // At most `width` columns wide.
    std::string BarOf(const TScale& scale, std::size_t width) const;
    std::string TimeLeft(const TScale& scale) const;

    std::ostream& out_;
    bool shown_;
    bool terminal_;
    TClock& clock_;
    const std::function<std::size_t()>& columns_;
    std::mutex mutex_;
    std::vector<TScale> scales_;
    std::size_t drawn_ = 0;  // lines
};

}  // namespace tolvane
