#include "command/PageFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <exception>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "command/EnglishWords.h"
#include "command/NamedFile.h"
#include "command/UsageError.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

std::string RefusalOf(const std::filesystem::path& file, const std::string& why) {
    return "The report " + Utf8Path(file) + " cannot be written: " + why;
}

bool IsSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code error;
    if (std::filesystem::equivalent(a, b, error)) return true;
    const std::filesystem::path longA = std::filesystem::weakly_canonical(a, error);
    return !error && longA == std::filesystem::weakly_canonical(b, error);
}

// Whether the file may be replaced: it is empty, or a page. A wrong name must not cost a database.
bool IsPage(const std::filesystem::path& file) {
    std::array<char, kPageStart.size()> start{};
    std::ifstream in(file, std::ios::binary);
    if (!in.read(start.data(), static_cast<std::streamsize>(start.size())))
        return in.gcount() == 0 && in.eof();
    return std::equal(start.begin(), start.end(), kPageStart.begin(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

// Why the file that is there must stay; empty when it may be replaced.
std::string WhyToStay(const std::filesystem::path& file, const TCommandOptions& options) {
    for (const auto& [other, name] :
         {std::pair(&options.log, "--log"), std::pair(&options.trace, "--trace")})
        if (!other->empty() && IsSameFile(file, *other))
            return std::string(name) + " names the same file.";
    const std::filesystem::file_status status = std::filesystem::status(file);
    if (!std::filesystem::exists(status)) return {};
    if (!std::filesystem::is_regular_file(status)) return "it is there and is no file.";
    RequireWritable(file);
    return IsPage(file) ? std::string() : "the file is there and is no page. Name another one.";
}

}  // namespace

void TPageFile::Open(const TCommandOptions& options, TPage page, std::function<double()> seconds) {
    if (options.report.empty()) return;
    std::string why;
    try {
        const std::filesystem::path file = ResolveLink(options.report);
        why = WhyToStay(file, options);
        if (why.empty()) {
            const TTemporaryFile probe(file);
            file_ = file;
        }
    } catch (const std::system_error& error) {
        why = ToUtf8(SystemErrorText(error.code())) + ".";
    }
    if (!why.empty()) throw TUsageError(RefusalOf(options.report, why));
    page_ = std::move(page);
    seconds_ = std::move(seconds);
}

std::string TPageFile::Write(TExitCode exitCode, const std::string& error) const {
    if (!IsOpen()) return {};
    try {
        TPage page = page_;
        page.exitCode = exitCode;
        if (!error.empty()) page.messages.push_back(error);
        page.messages.insert(page.messages.end(), content_.messages.begin(),
                             content_.messages.end());
        page.facts.insert(page.facts.begin() + (page.facts.empty() ? 0 : 1),
                          {.name = "Took", .value = SecondsText(seconds_())});
        page.sections = content_.sections;
        RemoveLeftovers(file_);
        ReplaceWholeFile(file_, PageText(page));
        return {};
    } catch (const std::exception& failure) {
        return RefusalOf(file_, ToUtf8(InEnglish(FailureText(failure))) + ".");
    }
}

}  // namespace tolvane
