#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/TypesUnit.h"
#include "system/Clock.h"
#include "system/LockFile.h"
#include "system/NameLock.h"
#include "upload/RunView.h"

namespace tolvane {

// The name of the lock of what a run needs for itself: a TCP scale ("tcp-10.0.0.5-1001.lock"), a
// UDP scale, whose port is fixed ("udp-10.0.0.5.lock"), a whole serial line ("com-COM1.lock"). It
// depends on nothing else in the record: two configurations that name the same scale get the same
// name, and so do two scales on one serial line.
std::string RunLockName(const TScaleRec& scale);

// Whether a run keeps the scale's ledger now, or there is no telling. Keeps no run from it.
bool IsRunLockHeld(const std::filesystem::path& folder, const TScaleRec& scale);

enum class TRunLockState : std::uint8_t {
    Held,         // by this object
    HeldByOther,  // another run, of this process or another one, has it
    Impossible,   // it cannot be created
};

// The name of the lock of its ledger: "scale-3.lock".
std::string LedgerLockName(const TScaleRec& scale);

// Something that runs on one computer cannot share, whatever folder they keep their locks in.
struct TComputerLock {
    std::string name;  // "tcp-10.0.0.5-1001"
    std::string what;  // for a person: "this scale"
};

// Lets one run at a time write to a scale. Who does not hold the lock must neither write to the
// scale nor save its ledger. It ends with this object, or with its process, however that ends.
class [[nodiscard]] TRunLock {
public:
    // Makes the folder when it is missing. Waits at most `wait` for another run, and not after
    // `stop`: 0 tries once. Does not throw for a lock that cannot be had.
    TRunLock(const std::filesystem::path& folder, const TScaleRec& scale, TMilliseconds wait,
             TClock& clock, const TRunStop* stop = nullptr,
             const std::vector<TComputerLock>& computer = {});

    TRunLockState State() const { return state_; }
    bool IsHeld() const { return state_ == TRunLockState::Held; }
    // The process that holds the lock instead, where it can be had.
    std::optional<std::uint32_t> OtherProcess() const { return otherProcess_; }
    // Why the lock is not held (code page 1251); empty when it is.
    const std::string& Refusal() const { return refusal_; }

private:
    // All or none.
    bool TryHold(const std::filesystem::path& folder, const TScaleRec& scale,
                 const std::vector<TComputerLock>& computer);
    bool TryFile(const std::filesystem::path& file, std::string_view what);
    bool TryName(const TComputerLock& lock);

    TRunLockState state_ = TRunLockState::Impossible;
    std::vector<TLockFile> files_;
    std::vector<TNameLock> names_;
    std::optional<std::uint32_t> otherProcess_;
    std::string refusal_;
};

}  // namespace tolvane
