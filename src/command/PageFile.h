#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "command/Options.h"
#include "command/Page.h"

namespace tolvane {

// What a command adds to its page.
struct TPageContent {
    std::vector<std::string> messages{};
    std::vector<TPageSection> sections{};
};

// The page that --report names. It takes the place of an older one as a whole.
class TPageFile {
public:
    // Until then, and when the options name no page, nothing is written. `page` is what stands on
    // it whatever happens; `seconds`: how long the command has taken. Throws TUsageError when no
    // page can be written there: the folder or the file does not let it, or the file is something
    // other than a page.
    void Open(const TCommandOptions& options, TPage page, std::function<double()> seconds);
    // Whether a page was asked for.
    bool IsOpen() const { return !file_.empty(); }
    void SetContent(TPageContent content) { content_ = std::move(content); }

    // Writes the page; again when it turns out otherwise. `error`, UTF-8, stands first. Answers why
    // the page cannot be written, or nothing.
    std::string Write(TExitCode exitCode, const std::string& error) const;

private:
    std::filesystem::path file_;
    TPage page_;
    std::function<double()> seconds_;
    TPageContent content_;
};

}  // namespace tolvane
