#include "command/RunLock.h"

#include <algorithm>
#include <functional>
#include <system_error>

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

std::string HeldText(std::optional<std::uint32_t> process) {
    std::string text("another run");
    if (process) text += " (process " + std::to_string(*process) + ")";
    return text + " holds the lock of this scale";
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

bool IsRunLockHeld(const std::filesystem::path& folder, const TScaleRec& scale) {
    try {
        return TLockFile::IsHeld(folder / RunLockName(scale));
    } catch (const std::system_error&) {
        return true;
    }
}

TRunLock::TRunLock(const std::filesystem::path& folder, const TScaleRec& scale, TMilliseconds wait,
                   TClock& clock, const TRunStop* stop) {
    const std::filesystem::path file = folder / RunLockName(scale);
    try {
        std::filesystem::create_directories(folder);
        WaitFor(file, wait, clock, stop);
    } catch (const std::system_error& error) {
        refusal_ = "the lock " + PathText(file) + " cannot be created: " + FailureText(error);
    }
}

void TRunLock::WaitFor(const std::filesystem::path& file, TMilliseconds wait, TClock& clock,
                       const TRunStop* stop) {
    const TTimePoint deadline = clock.Now() + wait;
    for (;;) {
        file_ = TLockFile::TryHold(file);
        if (file_) {
            state_ = TRunLockState::Held;
            return;
        }
        const auto left = std::chrono::ceil<TMilliseconds>(deadline - clock.Now());
        if (left <= TMilliseconds(0) || (stop != nullptr && stop->IsStopped())) break;
        clock.Sleep(std::min(kPause, left));
    }
    state_ = TRunLockState::HeldByOther;
    otherProcess_ = TLockFile::Holder(file);
    refusal_ = HeldText(otherProcess_);
}

}  // namespace tolvane
