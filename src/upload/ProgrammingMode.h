#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"

namespace tolvane {

// What a scale reports about itself.
struct TScaleVersion {
    std::int32_t maxPlu = 0;  // the highest article number
    std::int32_t mode = 0;    // label mode, 0 to 3
    std::string text;         // code page 1251
};

// Takes a scale into programming mode and out of it, with the pauses that it needs. The arguments
// outlive the object. One thread at a time.
class TProgrammingMode {
public:
    TProgrammingMode(TElicomScale& scale, TClock& clock, const TRunStop& stop)
        : scale_(scale), clock_(clock), stop_(stop) {}

    // Puts the scale into programming mode and reads its version. Throws TFailure with the text of
    // the command that failed. Returns nothing, and does not send the request for programming mode,
    // when the run was abandoned before it.
    std::optional<TScaleVersion> Enter();
    // Puts the scale back into weighing mode. Returns whether the scale has confirmed it.
    bool Leave();

private:
    TElicomScale& scale_;
    TClock& clock_;
    const TRunStop& stop_;
};

// The text of a failed command: "[SetPrice] ErrCode: 5, " and the driver's own text.
std::string CommandError(const TElicomScale& scale, std::string_view command, std::int32_t errCode);

}  // namespace tolvane
