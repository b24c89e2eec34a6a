#include "command/RunLock.h"

#include <algorithm>
#include <functional>
#include <system_error>
#include <utility>

#include "command/ScalePlace.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"

namespace tolvane {
namespace {

constexpr TMilliseconds kPause(50);

bool MayStandInAName(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' ||
           c == '_';
}

}  // namespace

std::string RunLockName(const TScaleRec& scale) {
    TScalePlace place = PlaceOf(scale);
    // What no file name may hold; two scales that thereby share a lock only wait for each other.
    std::ranges::replace_if(place.address, std::not_fn(MayStandInAName), '_');
    if (place.connection == "serial") place.connection = "com";
    std::string name = place.connection + '-' + place.address;
    if (place.port != 0) name += '-' + std::to_string(place.port);
    return name + ".lock";
}

std::string LedgerLockName(const TScaleRec& scale) {
    return "scale-" + std::to_string(scale.ScaleNumb) + ".lock";
}

bool IsRunLockHeld(const std::filesystem::path& folder, const TScaleRec& scale) {
    try {
        return TLockFile::IsHeld(folder / LedgerLockName(scale));
    } catch (const std::system_error&) {
        return true;
    }
}

TRunLock::TRunLock(const std::filesystem::path& folder, const TScaleRec& scale, TMilliseconds wait,
                   TClock& clock, const TRunStop* stop,
                   const std::vector<TComputerLock>& computer) {
    const TTimePoint deadline = clock.Now() + wait;
    for (;;) {
        if (TryHold(folder, scale, computer)) {
            state_ = TRunLockState::Held;
            otherProcess_.reset();
            refusal_.clear();
            return;
        }
        const auto left = std::chrono::ceil<TMilliseconds>(deadline - clock.Now());
        if (state_ == TRunLockState::Impossible || left <= TMilliseconds(0) ||
            (stop != nullptr && stop->IsStopped()))
            return;
        clock.Sleep(std::min(kPause, left));
    }
}

bool TRunLock::TryHold(const std::filesystem::path& folder, const TScaleRec& scale,
                       const std::vector<TComputerLock>& computer) {
    bool all = TryFile(folder / RunLockName(scale), "this scale") &&
               TryFile(folder / LedgerLockName(scale), "the ledger of this scale");
    for (std::size_t i = 0; all && i < computer.size(); ++i)
        all = TryName(computer[i]);
    if (all) return true;
    names_.clear();
    files_.clear();
    return false;
}

bool TRunLock::TryFile(const std::filesystem::path& file, std::string_view what) {
    std::optional<TLockFile> held;
    try {
        std::filesystem::create_directories(file.parent_path());
        held = TLockFile::TryHold(file);
    } catch (const std::system_error& error) {
        state_ = TRunLockState::Impossible;
        refusal_ = "the lock " + PathText(file) + " cannot be created: " + FailureText(error);
        return false;
    }
    if (held) {
        files_.push_back(std::move(*held));
        return true;
    }
    state_ = TRunLockState::HeldByOther;
    otherProcess_ = TLockFile::Holder(file);
    refusal_ = "another run";
    if (otherProcess_) refusal_ += " (process " + std::to_string(*otherProcess_) + ")";
    refusal_.append(" holds the lock of ").append(what);
    return false;
}

bool TRunLock::TryName(const TComputerLock& lock) {
    try {
        if (auto held = TNameLock::TryHold(lock.name)) {
            names_.push_back(std::move(*held));
            return true;
        }
        state_ = TRunLockState::HeldByOther;
        refusal_ = "another run on this computer holds the lock of " + lock.what;
    } catch (const std::system_error& error) {
        state_ = TRunLockState::Impossible;
        refusal_ = "the lock of " + lock.what + " cannot be created: " + FailureText(error);
    }
    otherProcess_.reset();
    return false;
}

}  // namespace tolvane
