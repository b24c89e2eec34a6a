#include "command/ScaleJob.h"

#include <exception>
#include <optional>
#include <utility>

#include "command/EnglishWords.h"
#include "command/RunLock.h"
#include "config/IniFile.h"
#include "scale/ScaleCommands.h"
#include "system/SystemError.h"
#include "upload/ScaleDriver.h"

namespace tolvane {
namespace {

// One request or its reply may be lost.
constexpr int kFirstAttempts = 2;
// How long the reply to a request that was given up may be underway still, once the scale answers.
constexpr std::int32_t kLateReplyMs = 1000;

}  // namespace

std::string_view OutcomeName(TScaleOutcome outcome) {
    switch (outcome) {
        case TScaleOutcome::Done:
            return "done";
        case TScaleOutcome::Failed:
            return "failed";
        case TScaleOutcome::NotReached:
            return "not reached";
        case TScaleOutcome::Locked:
            return "locked";
        case TScaleOutcome::Stopped:
            return "stopped";
    }
    return {};
}

TScaleJob::TScaleJob(const TJobParts& parts, const TScaleRec& rec) : parts_(parts), rec_(rec) {
    result_.rec = rec;
}

TScaleResult TScaleJob::Run() {
    const TTimePoint start = parts_.clock.Now();
    try {
        if (IsStopped()) {
            result_.outcome = TScaleOutcome::Stopped;
            NotBegun();
        } else {
            WithLock();
        }
    } catch (const std::exception& error) {
        // Before the scale or after it: the ledger.
        if (result_.outcome == TScaleOutcome::Done) result_.outcome = TScaleOutcome::Failed;
        AddError(FailureText(error));
    }
    result_.error = InEnglish(std::move(result_.error));
    result_.duration =
        std::chrono::duration_cast<std::chrono::milliseconds>(parts_.clock.Now() - start);
    return std::move(result_);
}

void TScaleJob::AddError(const std::string& error) {
    if (result_.error == error) return;
    result_.error += (result_.error.empty() ? "" : "; ") + error;
}

void TScaleJob::WithLock() {
    const TRunLock lock(parts_.stateFolder, rec_, parts_.lockWait, parts_.clock, &parts_.stop,
                        parts_.locks);
    if (!lock.IsHeld()) {
        const bool held = lock.State() == TRunLockState::HeldByOther;
        result_.outcome = held ? TScaleOutcome::Locked : TScaleOutcome::Failed;
        result_.error = lock.Refusal();
        if (held) NotBegun();
        return;
    }
    Begin();
    result_.outcome = TScaleOutcome::NotReached;
    try {
        InScale();
    } catch (const std::exception& error) {
        AddError(FailureText(error));
    }
    result_.mayBeProgramming = mayBeProgramming_.value_or(false);
    End();
}

void TScaleJob::InScale() {
    if (HasStopped()) return;
    const std::unique_ptr<TElicomScale> scale = MakeScaleDriver(parts_.factory, rec_);
    if (!scale->OpenChannel()) {
        result_.error = scale->LastError;
        return;
    }
    if (HasStopped()) return;
    InOpenScale(*scale);
    LookAtReplies(*scale);
}

void TScaleJob::LookAtReplies(const TElicomScale& scale) {
    try {
        if (scale.WrongReply) ReplyDidNotFit();
    } catch (const std::exception& error) {
        AddError(FailureText(error));
    }
}

bool TScaleJob::HasStopped() {
    if (!IsStopped()) return false;
    result_.outcome = TScaleOutcome::Stopped;
    return true;
}

void TScaleJob::InOpenScale(TElicomScale& scale) {
    if (!FirstExchange(scale)) {
        result_.error = scale.LastError;
        return;
    }
    result_.outcome = TScaleOutcome::Failed;
    if (NeedsProgramming())
        InProgramming(scale);
    else if (!*mayBeProgramming_)
        result_.outcome = TScaleOutcome::Done;
    else
        result_.error = scale.LastError;
}

bool TScaleJob::FirstExchange(TElicomScale& scale) {
    for (int attempt = 0; attempt < kFirstAttempts; ++attempt) {
        if (attempt > 0 && IsStopped()) return false;
        const TTimePoint start = parts_.clock.Now();
        std::int32_t errCode = 0;
        const bool weighs = scale.SetWeightMode(errCode);
        if (weighs)
            result_.exchange =
                std::chrono::duration_cast<std::chrono::microseconds>(parts_.clock.Now() - start);
        if (weighs || errCode != kSetWeightModeCommand.initialErrCode) {
            mayBeProgramming_ = !weighs;
            if (attempt > 0) DropLateReplies(scale);
            return true;
        }
    }
    return false;
}

// Each would be taken for the reply to the next request.
void TScaleJob::DropLateReplies(TElicomScale& scale) {
    TCmdBuffer late;
    scale.Channel->ReadAnswer(late, 0, 0, kLateReplyMs);
}

void TScaleJob::InProgramming(TElicomScale& scale) {
    TProgrammingMode mode(scale, parts_.clock, parts_.stop);
    bool linkFails = false;
    try {
        WorkInMode(scale, mode);
    } catch (const TFileError& error) {
        result_.error = FailureText(error);
    } catch (const std::exception& error) {
        result_.error = FailureText(error);
        linkFails = true;
    }
    // Before the pause and the exchange that follow, in which this process may be killed.
    LookAtReplies(scale);
    // Who has stopped the run does not wait for a silent scale once more.
    const bool asks =
        *mayBeProgramming_ && scale.Channel->IsConnected() && !(IsStopped() && linkFails);
    if (asks && mode.Leave()) mayBeProgramming_ = false;
    // All articles may be in it, and yet nobody can weigh with it.
    if (*mayBeProgramming_ && result_.outcome == TScaleOutcome::Done) {
        result_.outcome = TScaleOutcome::Failed;
        result_.error = "the scale has not confirmed that it weighs again: " + scale.LastError;
    }
}

void TScaleJob::WorkInMode(TElicomScale& scale, TProgrammingMode& mode) {
    Entering();
    const auto before = std::exchange(mayBeProgramming_, true);
    result_.version = mode.Enter();
    if (!result_.version) {
        mayBeProgramming_ = before;
        result_.outcome = TScaleOutcome::Stopped;
        return;
    }
    Work(scale, *result_.version);
    result_.outcome = IsStopped()               ? TScaleOutcome::Stopped
                      : result_.refused.empty() ? TScaleOutcome::Done
                                                : TScaleOutcome::Failed;
}

}  // namespace tolvane
