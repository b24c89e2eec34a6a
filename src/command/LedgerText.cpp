#include "command/LedgerText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>

#include "command/LedgerFields.h"
#include "command/UtcTime.h"
#include "text/Cp1251.h"
#include "text/Fnv.h"

namespace tolvane {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr std::int32_t kFormat = 1;
constexpr std::string_view kStart = "{\n  \"checksum\": \"";
constexpr std::size_t kHexDigits = 16;

[[noreturn]] void Reject(const std::string& what) {
    throw TLedgerDamaged("the file is damaged: " + what);
}

std::uint64_t Checksum(std::string_view bytes) {
    std::uint64_t hash = kFnvBasis;
    for (const char c : bytes)
        hash = FnvNext(hash, static_cast<unsigned char>(c));
    return hash;
}

void AppendHex(std::uint64_t number, std::string& text) {
    for (std::size_t i = kHexDigits; i > 0; --i)
        text += "0123456789abcdef"[(number >> (4 * (i - 1))) & 0xFU];
}

// Writing

ordered_json SectionJson(const TLedgerIdentity& identity, std::string_view section) {
    ordered_json out = ordered_json::object();
    const auto put = [&](std::string_view key, const auto& value) {
        if constexpr (std::is_same_v<decltype(value), const std::string&>)
            out[std::string(key)] = ToUtf8(value);
        else
            out[std::string(key)] = value;
    };
    for (const TLedgerField& field : kLedgerFields) {
        if (field.section != section) continue;
        std::visit([&](auto member) { put(field.key, identity.*member); }, field.member);
    }
    return out;
}

ordered_json ReportJson(const TScaleReport& report) {
    return {{"version", ToUtf8(report.version)},
            {"maxPlu", report.maxPlu},
            {"labelMode", report.labelMode}};
}

ordered_json RunJson(const TLastRun& run) {
    return {{"start", UtcText(run.start)},
            {"end", run.end ? ordered_json(UtcText(*run.end)) : ordered_json()},
            {"outcome", OutcomeName(run.outcome)},
            {"error", ToUtf8(run.error)},
            {"written", run.written},
            {"unchanged", run.unchanged},
            {"refused", run.refused},
            {"leftOut", run.leftOut},
            {"pending", run.pending}};
}

// A line per claim, by hand: there are thousands of them, every second.
void AppendClaims(const TClaims& claims, std::string& text) {
    text += "  \"claims\": {";
    for (const auto& [number, claim] : claims) {
        text += text.back() == '{' ? "\n    \"" : ",\n    \"";
        text += std::to_string(number) + "\": \"";
        AppendHex(claim.digest, text);
        text += ' ' + UtcText(claim.acknowledged) + '"';
    }
    text += "\n  }\n}\n";
}

void PutUnsure(const std::set<std::int32_t>& numbers, ordered_json& head) {
    if (!numbers.empty()) head["unsure"] = numbers;
}

// Reading

const json& Member(const json& from, std::string_view key) {
    const auto found = from.find(std::string(key));
    if (found == from.end()) Reject("it lacks \"" + std::string(key) + "\"");
    return *found;
}

std::int32_t Integer(const json& value) {
    const bool fits =
        value.is_number_unsigned()
            ? value.get<std::uint64_t>() <= std::numeric_limits<std::int32_t>::max()
            : value.is_number_integer() &&
                  value.get<std::int64_t>() >= std::numeric_limits<std::int32_t>::min();
    if (!fits) Reject("a number is not one");
    return value.get<std::int32_t>();
}

std::string Text(const json& value) {
    return FromUtf8(value.get_ref<const std::string&>());
}

std::chrono::sys_seconds Time(std::string_view text) {
    const auto time = ParseUtc(text);
    if (!time) Reject("a time is not one");
    return *time;
}

std::chrono::sys_seconds TimeOf(const json& value) {
    return Time(value.get_ref<const std::string&>());
}

template <class T>
T ParsedNumber(std::string_view text, int base) {
    T number{};
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc() || last != end) Reject("a number is not one");
    return number;
}

TLedgerIdentity IdentityFrom(const json& from) {
    TLedgerIdentity identity;
    const auto read = [](const json& value, auto& member) {
        if constexpr (std::is_same_v<decltype(member), std::string&>)
            member = Text(value);
        else
            member = Integer(value);
    };
    for (const TLedgerField& field : kLedgerFields) {
        const json& value = Member(Member(from, field.section), field.key);
        std::visit([&](auto member) { read(value, identity.*member); }, field.member);
    }
    return identity;
}

TRunOutcome OutcomeFrom(const std::string& name) {
    if (name == kOldNotReached) return TRunOutcome::NotReached;
    const auto* found = std::ranges::find(kOutcomeNames, name);
    if (found == kOutcomeNames.end()) Reject("an outcome is unknown");
    return static_cast<TRunOutcome>(found - kOutcomeNames.begin());
}

std::optional<TLastRun> RunFrom(const json& from) {
    if (from.is_null()) return std::nullopt;
    const json& end = Member(from, "end");
    return TLastRun{.start = TimeOf(Member(from, "start")),
                    .end = end.is_null() ? std::nullopt : std::optional(TimeOf(end)),
                    .outcome = OutcomeFrom(Member(from, "outcome").get<std::string>()),
                    .error = Text(Member(from, "error")),
                    .written = Integer(Member(from, "written")),
                    .unchanged = Integer(Member(from, "unchanged")),
                    .refused = Integer(Member(from, "refused")),
                    // Older files lack it.
                    .leftOut = from.contains("leftOut") ? Integer(from["leftOut"]) : 0,
                    .pending = Integer(Member(from, "pending"))};
}

std::optional<TScaleReport> ReportFrom(const json& from) {
    if (from.is_null()) return std::nullopt;
    return TScaleReport{.version = Text(Member(from, "version")),
                        .maxPlu = Integer(Member(from, "maxPlu")),
                        .labelMode = Integer(Member(from, "labelMode"))};
}

TClaims ClaimsFrom(const json& from) {
    TClaims claims;
    for (const auto& [key, value] : from.items()) {
        const std::string_view text = value.get_ref<const std::string&>();
        if (text.size() <= kHexDigits || text[kHexDigits] != ' ') Reject("a claim is not one");
        claims[ParsedNumber<std::int32_t>(key, 10)] = {
            .digest = ParsedNumber<std::uint64_t>(text.substr(0, kHexDigits), 16),
            .acknowledged = Time(text.substr(kHexDigits + 1))};
    }
    return claims;
}

std::set<std::int32_t> UnsureFrom(const json& from) {
    std::set<std::int32_t> numbers;
    const auto found = from.find("unsure");
    if (found == from.end()) return numbers;
    if (!found->is_array()) Reject("what it is unsure of is no list");
    for (const json& number : *found)
        numbers.insert(Integer(number));
    return numbers;
}

void CheckSum(std::string_view bytes) {
    if (bytes.empty()) Reject("it is empty");
    if (!bytes.starts_with(kStart) || bytes.size() < kStart.size() + kHexDigits)
        Reject("it does not begin as a ledger does");
    std::string sum;
    AppendHex(Checksum(bytes.substr(kStart.size() + kHexDigits)), sum);
    if (bytes.substr(kStart.size(), kHexDigits) != sum) Reject("its checksum does not fit");
}

TLedgerContent ContentFrom(const json& from) {
    const std::int32_t format = Integer(Member(from, "format"));
    if (format > kFormat)
        throw TLedgerNewer("the file was made by a newer version of this program (format " +
                           std::to_string(format) + ")");
    if (format != kFormat) Reject("its format is unknown");
    TLedgerContent content{.identity = IdentityFrom(from),
                           .report = ReportFrom(Member(from, "reported")),
                           .mayBeProgramming = from.value("mayBeProgramming", false),
                           .lastRun = RunFrom(Member(from, "lastRun")),
                           .claims = ClaimsFrom(Member(from, "claims")),
                           .unsure = UnsureFrom(from),
                           .saved = TimeOf(Member(from, "saved"))};
    if (!content.claims.empty() && !content.report) Reject("it claims articles of no scale");
    return content;
}

}  // namespace

std::string LedgerText(const TLedgerContent& content) {
    ordered_json head = {
        {"format", kFormat},
        {"saved", UtcText(content.saved.value())},
        {"scale", SectionJson(content.identity, kScaleSection)},
        {"choices", SectionJson(content.identity, kChoicesSection)},
        {"reported", content.report ? ReportJson(*content.report) : ordered_json()},
        {"mayBeProgramming", content.mayBeProgramming},
        {"lastRun", content.lastRun ? RunJson(*content.lastRun) : ordered_json()}};
    PutUnsure(content.unsure, head);
    std::string rest = "\"," + head.dump(2).substr(1);
    rest.resize(rest.size() - std::string_view("\n}").size());
    rest += ",\n";
    AppendClaims(content.claims, rest);
    std::string text(kStart);
    AppendHex(Checksum(rest), text);
    return text + rest;
}

TLedgerContent ParseLedgerText(std::string_view bytes) {
    CheckSum(bytes);
    try {
        return ContentFrom(json::parse(bytes));
    } catch (const json::exception&) {
        Reject("it does not hold what a ledger holds");
    }
}

}  // namespace tolvane
