#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunProgress.h"
#include "upload/RunView.h"
#include "upload/ScaleFactory.h"
#include "upload/ScalePass.h"

namespace tolvane {

// Works on one scale at a time: opens its driver, writes or deletes articles through it, closes it.
// Blocks for all exchanges and pauses; used on the run's thread. An operation that fails returns
// false and leaves its text (code page 1251) in LastError. An operation throws only std::bad_alloc,
// when memory is too short for that text.
class TScaleSession {
public:
    TScaleSession(TScaleFactory& factory, TClock& clock, TRunView& view, const TRunStop& stop,
                  char decimalSeparator);

    std::string LastError;
    // How far the run has come; the passes count their articles.
    TRunProgress Progress;

    // Makes the driver of a configured scale and opens it. Destroys the previous driver. The
    // session keeps the new driver even if it does not open.
    bool InitComm(const TScaleRec& Rec);
    // Runs a TWritePass over the article lines. Without a driver, returns false and leaves
    // LastError as it was.
    bool ProcessUpload(const std::vector<std::string>& Lines, const TScaleRec& Rec);
    // Runs a TDeletePass: over the article lines or, without any line, over every article of the
    // scale. Without a driver, returns false and leaves LastError as it was.
    bool ProcessDelete(const std::vector<std::string>& Lines);
    // Destroys the driver, which closes its channel.
    void Close() noexcept { driver_.reset(); }

private:
    // There must be a driver.
    TPassParts Parts();

    TScaleFactory& factory_;
    TClock& clock_;
    TRunView& view_;
    const TRunStop& stop_;
    char decimalSeparator_;
    std::unique_ptr<TElicomScale> driver_;
};

}  // namespace tolvane
