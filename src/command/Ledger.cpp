#include "command/Ledger.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "command/LedgerFields.h"
#include "command/LedgerText.h"
#include "command/UtcTime.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"

namespace tolvane {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;
using std::filesystem::path;

constexpr seconds kBetweenSaves(1);
// What a clock may be put right by without anybody having set it.
constexpr seconds kClockCorrection(60);

TFileError ErrorOf(const path& file, std::string_view whatFailed, const std::exception& error) {
    return TFileError("the ledger " + PathText(file) + " cannot be " + std::string(whatFailed) +
                      ": " + FailureText(error));
}

std::string AgeText(seconds age) {
    struct TUnit {
        seconds length;
        std::string_view one;
    };
    constexpr TUnit kUnits[] = {{std::chrono::days(1), "day"},
                                {std::chrono::hours(1), "hour"},
                                {std::chrono::minutes(1), "minute"},
                                {seconds(1), "second"}};
    const TUnit* unit = std::begin(kUnits);
    while (age % unit->length != seconds(0))
        ++unit;
    const auto count = age / unit->length;
    return std::to_string(count) + ' ' + std::string(unit->one) + (count == 1 ? "" : "s");
}

sys_seconds LatestTime(const TLedgerContent& content) {
    sys_seconds latest = content.saved.value_or(sys_seconds());
    for (const auto& [number, claim] : content.claims)
        latest = std::max(latest, claim.acknowledged);
    return latest;
}

}  // namespace

path TLedger::FileOf(const path& folder, std::int32_t scaleNumber) {
    return folder / ("scale-" + std::to_string(scaleNumber) + ".json");
}

TLedger::TLedger(path file, TLedgerIdentity identity) : file_(std::move(file)) {
    content_.identity = std::move(identity);
}

TLedger TLedger::Load(const path& folder, const TScaleRec& scale, const TLineChoices& choices,
                      sys_seconds now, seconds maxAge) {
    TLedger ledger(FileOf(folder, scale.ScaleNumb), IdentityOf(scale, choices));
    std::optional<std::string> bytes;
    try {
        bytes = ReadWholeFile(ledger.file_);
    } catch (const std::system_error& error) {
        throw ErrorOf(ledger.file_, "read", error);
    }
    if (!bytes) return ledger;
    const TLedgerIdentity identity = ledger.content_.identity;
    ledger.Take(*bytes);
    ledger.DropWhatCannotBeTrusted(identity, now, maxAge);
    return ledger;
}

void TLedger::Take(const std::string& bytes) {
    try {
        content_ = ParseLedgerText(bytes);
    } catch (const TLedgerDamaged& damaged) {
        dropReason_ = damaged.what();
        keepAs_ = ".damaged";
    } catch (const TLedgerNewer& newer) {
        dropReason_ = newer.what();
        keepAs_ = ".newer";
    }
}

void TLedger::DropWhatCannotBeTrusted(const TLedgerIdentity& identity, sys_seconds now,
                                      seconds maxAge) {
    const auto difference = DifferenceOf(identity, content_.identity);
    content_.identity = identity;
    if (difference) {
        DropFor(*difference);
        // Whether the former one weighs stays noted: the scale may only have got another address.
        if (difference->isOtherScale) {
            content_.report.reset();
            content_.lastRun.reset();
        }
    }
    const sys_seconds latest = LatestTime(content_);
    if (latest > now + kClockCorrection)
        Drop("the clock has been set back: the ledger is from " + UtcText(latest));
    DropOldClaims(now, maxAge);
}

void TLedger::DropOldClaims(sys_seconds now, seconds maxAge) {
    const std::size_t all = content_.claims.size();
    const std::size_t dropped = std::erase_if(content_.claims, [&](const auto& entry) {
        const bool isOld = now - entry.second.acknowledged > maxAge;
        if (isOld) content_.unsure.insert(entry.first);
        return isOld;
    });
    if (dropped == 0) return;
    dropReason_ = "older than " + AgeText(maxAge) + ": " + std::to_string(dropped) + " of " +
                  std::to_string(all) + " articles";
    changed_ = true;
}

bool TLedger::Forget(const path& folder, std::int32_t scaleNumber) {
    const path file = FileOf(folder, scaleNumber);
    try {
        RemoveLeftovers(file);
        return std::filesystem::remove(file);
    } catch (const std::system_error& error) {
        throw ErrorOf(file, "removed", error);
    }
}

bool TLedger::Holds(std::int32_t number, std::uint64_t digest) const {
    const auto found = content_.claims.find(number);
    return found != content_.claims.end() && found->second.digest == digest;
}

std::set<std::int32_t> TLedger::Numbers() const {
    std::set<std::int32_t> numbers = content_.unsure;
    for (const auto& [number, claim] : content_.claims)
        numbers.insert(number);
    return numbers;
}

void TLedger::Confirm(const TScaleReport& report) {
    if (content_.report)
        if (const auto difference = DifferenceOf(report, *content_.report)) DropFor(*difference);
    if (content_.report != report) changed_ = true;
    content_.report = report;
    confirmed_ = true;
}

void TLedger::Drop(const std::string& reason) {
    if (content_.claims.empty()) return;
    content_.unsure = Numbers();
    content_.claims.clear();
    dropReason_ += (dropReason_.empty() ? "" : "; ") + reason;
    changed_ = true;
}

void TLedger::DropFor(const TLedgerDifference& difference) {
    Drop(difference.text);
    if (!difference.isOtherScale || content_.unsure.empty()) return;
    content_.unsure.clear();
    changed_ = true;
}

void TLedger::SetLastRun(const TLastRun& run) {
    content_.lastRun = run;
    changed_ = true;
}

void TLedger::SetMayBeProgramming(bool may) {
    changed_ = changed_ || may != content_.mayBeProgramming;
    content_.mayBeProgramming = may;
}

void TLedger::Withdraw(std::span<const std::int32_t> numbers, sys_seconds now) {
    for (const std::int32_t number : numbers) {
        content_.claims.erase(number);
        content_.unsure.insert(number);
    }
    changed_ = true;
    Save(now);
}

void TLedger::Claim(std::int32_t number, std::uint64_t digest, sys_seconds now) {
    if (!confirmed_) throw std::logic_error("an article of an unknown scale is claimed");
    content_.claims[number] = {.digest = digest, .acknowledged = now};
    content_.unsure.erase(number);
    changed_ = true;
}

void TLedger::Deleted(std::int32_t number) {
    content_.claims.erase(number);
    content_.unsure.erase(number);
    changed_ = true;
}

void TLedger::SaveIfDue(sys_seconds now) {
    // A clock that was set back must not put the save off.
    const bool isRecent = lastSave_ && now >= *lastSave_ && now - *lastSave_ < kBetweenSaves;
    if (changed_ && !isRecent) Save(now);
}

void TLedger::Save(sys_seconds now) {
    const auto before = std::exchange(content_.saved, now);
    try {
        std::filesystem::create_directories(file_.parent_path());
        if (!lastSave_) RemoveLeftovers(file_);
        KeepBeside();
        ReplaceWholeFile(file_, LedgerText(content_));
    } catch (const std::system_error& error) {
        content_.saved = before;
        throw ErrorOf(file_, "saved", error);
    }
    changed_ = false;
    lastSave_ = now;
}

void TLedger::KeepBeside() {
    if (keepAs_.empty()) return;
    path kept = file_;
    kept += keepAs_;
    std::error_code error;
    std::filesystem::rename(file_, kept, error);
    if (error && error != std::errc::no_such_file_or_directory) throw std::system_error(error);
    keepAs_.clear();
}

}  // namespace tolvane
