#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "command/LedgerContent.h"
#include "command/LedgerFields.h"
#include "command/LedgerText.h"
#include "command/OptionValues.h"
#include "command/Settings.h"
#include "command/UsageError.h"
#include "command/UtcTime.h"
#include "config/IniDocument.h"
#include "tests/fuzz/Fuzz.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

// A file in memory, under a name like any other.
class TMemoryFile {
public:
    TMemoryFile() : number_(memfd_create("fuzz", MFD_CLOEXEC)) {
        Must(number_ >= 0, "there is memory for a file");
    }
    TMemoryFile(const TMemoryFile&) = delete;
    TMemoryFile& operator=(const TMemoryFile&) = delete;
    ~TMemoryFile() { close(number_); }

    std::string Name() const { return "/proc/self/fd/" + std::to_string(number_); }
    void Fill(const std::string& bytes) const {
        Must(ftruncate(number_, 0) == 0, "a file is emptied");
        const auto written = pwrite(number_, bytes.data(), bytes.size(), 0);
        Must(written == static_cast<ssize_t>(bytes.size()), "a file is filled");
    }

private:
    int number_;
};

std::optional<std::string> NoVariable(const std::string&) {
    return std::nullopt;
}

std::optional<std::vector<TSetting>> SettingsIn(const TMemoryFile& file, const std::string& bytes) {
    file.Fill(bytes);
    try {
        return ReadSettings({.file = file.Name()}, NoVariable);
    } catch (const TUsageError& error) {
        const std::string text = error.what();
        Must(IsUtf8(text) && (text.ends_with('.') || text.ends_with('?')),
             "what is wrong is told in a sentence");
        Must(text.find(file.Name()) != std::string::npos, "the file is named");
        return std::nullopt;
    }
}

// A configuration file of any bytes: its settings, or one clear error.
void TryConfiguration(TInput& input) {
    static const TMemoryFile file;
    const std::string bytes = input.RestAsText();
    const auto settings = SettingsIn(file, bytes);
    if (!settings) return;
    TIniDocument printed;
    for (const TSetting& setting : *settings) {
        Must(!setting.value.empty() && IsUtf8(setting.value), "a setting has a value");
        Must(setting.source == file.Name(), "a setting tells where it is from");
        printed.WriteText("tolvane", setting.option, FromUtf8(setting.value));
    }
    const auto again = SettingsIn(file, printed.Bytes());
    Must(again && again->size() == settings->size(), "printed settings are read");
    for (std::size_t i = 0; i < settings->size(); ++i)
        Must((*again)[i].option == (*settings)[i].option &&
                 (*again)[i].value == (*settings)[i].value,
             "printed settings are the same");
}

void TryDuration(TInput& input) {
    const std::string text = input.RestAsText();
    const auto duration = ParseDuration(text);
    if (!duration) return;
    Must(duration->count() >= 0 && *duration <= std::chrono::days(10000), "a duration is one");
    Must(ParseDuration(std::to_string(duration->count()) + "s") == duration, "a duration is read");
}

std::optional<TLedgerContent> Parsed(const std::string& text) {
    try {
        return ParseLedgerText(text);
    } catch (const TLedgerDamaged& damaged) {
        Must(std::string_view(damaged.what()).starts_with("the file is damaged: "),
             "damage is told in words");
    } catch (const TLedgerNewer& newer) {
        Must(std::string_view(newer.what()).starts_with("the file was made by a newer version"),
             "a newer file is told in words");
    }
    return std::nullopt;
}

void CheckPrinting(const TLedgerContent& content) {
    const std::string text = LedgerText(content);
    Must(IsUtf8(text), "a ledger is UTF-8");
    const auto again = Parsed(text);
    Must(again == content, "a ledger that is printed and parsed is the same");
    Must(LedgerText(*again) == text, "and looks the same");
}

// The checksum as the format defines it, over all that follows it.
std::string Summed(const std::string& rest) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : rest)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return "{\n  \"checksum\": \"" + std::string(digits) + rest;
}

// Any bytes as a ledger, with the checksum that they have and with the right one.
void TryLedgerFile(TInput& input) {
    const std::string bytes = input.RestAsText();
    if (const auto content = Parsed(bytes)) CheckPrinting(*content);
    const std::string start = Summed("");
    const std::string rest = bytes.starts_with(start.substr(0, start.size() - 16))
                                 ? bytes.substr(std::min(bytes.size(), start.size()))
                                 : "\"," + bytes;
    const std::string right = Summed(rest);
    if (const auto content = Parsed(right)) CheckPrinting(*content);
    std::string damaged = right;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    Must(!Parsed(damaged), "a damaged file passes for no ledger");
}

std::chrono::sys_seconds TimeFrom(TInput& input) {
    constexpr std::int64_t kLatest = 253402300799;  // the end of the year 9999
    const std::chrono::sys_seconds time(
        std::chrono::seconds(static_cast<std::int64_t>(input.Number<std::uint64_t>() % kLatest)));
    Must(ParseUtc(UtcText(time)) == time, "a time is read");
    return time;
}

// Any content: what is printed is read again.
void TryLedger(TInput& input) {
    TLedgerContent content;
    for (const TLedgerField& field : kLedgerFields) {
        std::visit(
            [&](auto member) {
                auto& value = content.identity.*member;
                if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>)
                    value = input.Text();
                else
                    value = input.Number<std::int32_t>();
            },
            field.member);
    }
    const std::uint8_t parts = input.Byte();
    content.mayBeProgramming = (parts & 1) != 0;
    content.saved = TimeFrom(input);
    if ((parts & 2) != 0)
        content.report = {.version = input.Text(),
                          .maxPlu = input.Number<std::int32_t>(),
                          .labelMode = input.Number<std::int32_t>()};
    if ((parts & 4) != 0) {
        TLastRun run{.start = TimeFrom(input), .end = {}, .error = input.Text()};
        if ((parts & 8) != 0) run.end = TimeFrom(input);
        run.outcome = static_cast<TRunOutcome>(input.Below(kOutcomeNames.size()));
        for (auto member : {&TLastRun::written, &TLastRun::unchanged, &TLastRun::refused,
                            &TLastRun::leftOut, &TLastRun::pending})
            run.*member = input.Number<std::int32_t>();
        content.lastRun = run;
    }
    for (std::size_t i = content.report ? input.Below(8) : 0; i > 0; --i) {
        const auto number = input.Number<std::int32_t>();
        content.claims[number] = {.digest = input.Number<std::uint64_t>(),
                                  .acknowledged = TimeFrom(input)};
    }
    while (!input.IsEmpty())
        content.unsure.insert(input.Number<std::int32_t>());
    CheckPrinting(content);
    TLedgerIdentity other = content.identity;
    Must(!DifferenceOf(other, content.identity), "the same scale does not differ");
    other.port ^= 1;
    Must(DifferenceOf(other, content.identity).has_value(), "another port is a difference");
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 'c':
            tolvane::TryConfiguration(input);
            break;
        case 'd':
            tolvane::TryDuration(input);
            break;
        case 'f':
            tolvane::TryLedgerFile(input);
            break;
        case 'l':
            tolvane::TryLedger(input);
            break;
        default:
            return -1;
    }
    return 0;
}
