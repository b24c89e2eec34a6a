#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>

#include "command/LedgerContent.h"
#include "config/IniFile.h"

namespace tolvane {

struct TLedgerDifference;

// What one scale is known to hold: for each article number the digest of the commands that the
// scale has acknowledged, in a file of its own ("scale-3.json"). Never claims an article that was
// not acknowledged, whenever its process ends. All times are UTC, from the caller's clock. Only who
// holds the scale's TRunLock may call what saves. Every save is atomic; one that fails throws
// TFileError with the system's words, leaves the file as it was, and may be tried again.
class TLedger {
public:
    // Reads the file of scale number `scale.ScaleNumb` and changes nothing on the disk. Claims that
    // cannot be trusted are dropped, see DropReason: all of them when the scale, its connection or
    // the choices differ, when the clock has been set back, when the file is damaged or of a newer
    // version; those older than `maxAge` one by one. The numbers stay known, see Numbers, unless it
    // is another scale. A missing file is an empty ledger. Throws TFileError when the file is there
    // and cannot be read.
    static TLedger Load(const std::filesystem::path& folder, const TScaleRec& scale,
                        const TLineChoices& choices, std::chrono::sys_seconds now,
                        std::chrono::seconds maxAge);
    // Removes the file of a scale, readable or not; false when there is none. Throws TFileError.
    static bool Forget(const std::filesystem::path& folder, std::int32_t scaleNumber);
    static std::filesystem::path FileOf(const std::filesystem::path& folder,
                                        std::int32_t scaleNumber);

    const std::filesystem::path& File() const { return file_; }
    // Why claims were dropped, for a person (code page 1251, English); empty when none was.
    const std::string& DropReason() const { return dropReason_; }
    const TClaims& Claims() const { return content_.claims; }
    // The articles of which the scale may hold something: those that are claimed, those whose claim
    // was dropped, and those that a write or a deletion was begun of and never acknowledged.
    std::set<std::int32_t> Numbers() const;
    // Whether the scale holds exactly this.
    bool Holds(std::int32_t number, std::uint64_t digest) const;
    // When the file was saved last; nothing without a file that could be understood.
    std::optional<std::chrono::sys_seconds> Saved() const { return content_.saved; }
    const std::optional<TScaleReport>& Report() const { return content_.report; }
    const std::optional<TLastRun>& LastRun() const { return content_.lastRun; }
    // The scale was told to go into programming mode and has not confirmed since that it weighs.
    bool MayBeProgramming() const { return content_.mayBeProgramming; }

    // What the scale has reported now. Drops all claims when it reported something else before.
    // Saves nothing.
    void Confirm(const TScaleReport& report);
    // Drops all claims, for a reason that the caller has. Saves nothing.
    void Drop(const std::string& reason);
    // Both are saved with the next save.
    void SetLastRun(const TLastRun& run);
    void SetMayBeProgramming(bool may);

    // Gives up the claims of all articles that are about to be written, and saves, also when there
    // is none: call it before the first command is sent. When it throws, nothing may be sent.
    void Withdraw(std::span<const std::int32_t> numbers, std::chrono::sys_seconds now);
    // After the scale has acknowledged all commands of the article, or for a digest that is known
    // to be in it. Throws std::logic_error before Confirm.
    void Claim(std::int32_t number, std::uint64_t digest, std::chrono::sys_seconds now);
    // After the scale has acknowledged that the article is deleted. Saves nothing.
    void Deleted(std::int32_t number);
    // Saves when something has changed and the last save is a second ago.
    void SaveIfDue(std::chrono::sys_seconds now);
    // Makes the folder when it is missing. The first save keeps a file that could not be understood
    // beside, as "scale-3.json.damaged" or "scale-3.json.newer".
    void Save(std::chrono::sys_seconds now);

private:
    TLedger(std::filesystem::path file, TLedgerIdentity identity);
    void Take(const std::string& bytes);
    void DropWhatCannotBeTrusted(const TLedgerIdentity& identity, std::chrono::sys_seconds now,
                                 std::chrono::seconds maxAge);
    void DropOldClaims(std::chrono::sys_seconds now, std::chrono::seconds maxAge);
    void DropFor(const TLedgerDifference& difference);
    void KeepBeside();

    std::filesystem::path file_;
    TLedgerContent content_;
    std::string dropReason_;
    std::string keepAs_;  // the end of the name under which the file is kept, if it is
    bool changed_ = false;
    bool confirmed_ = false;
    std::optional<std::chrono::sys_seconds> lastSave_;  // by this object
};

}  // namespace tolvane
