#pragma once

#include <map>
#include <string>
#include <vector>

#include "command/Options.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

// A command line with an environment and a configuration file of its own.
class TCommandLine {
public:
    TParsedOptions Parse(std::vector<std::string> words) const {
        return ParseOptions(std::move(words), [this](const std::string& name) {
            const auto found = variables.find(name);
            return found != variables.end() ? std::optional(found->second) : std::nullopt;
        });
    }
    // The options; none of them has its default when the line is refused.
    TCommandOptions Options(const std::vector<std::string>& words) const {
        const TParsedOptions parsed = Parse(words);
        EXPECT_TRUE(parsed.options) << parsed.error;
        EXPECT_EQ(parsed.error, "");
        return parsed.options.value_or(TCommandOptions{.verb = TVerb::Discover, .database = "?"});
    }
    // Why the line is refused, without the lead and the hint that every refusal has.
    std::string Refusal(const std::vector<std::string>& words) const {
        const TParsedOptions parsed = Parse(words);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.output, "");
        EXPECT_EQ(parsed.exitCode, TExitCode::Usage);
        const std::string lead = "tolvane: ";
        const std::string hint = "\nTry: tolvane --help\n";
        if (!parsed.error.starts_with(lead) || !parsed.error.ends_with(hint))
            return "without lead or hint: " + parsed.error;
        return parsed.error.substr(lead.size(), parsed.error.size() - lead.size() - hint.size());
    }
    // A configuration file; answers its name.
    std::string Config(const std::string& bytes) const {
        PutFile(folder / "tolvane.conf", bytes);
        return (folder / "tolvane.conf").string();
    }

    std::map<std::string, std::string> variables;
    TScratchFolder folder;
};

}  // namespace tolvane::test
