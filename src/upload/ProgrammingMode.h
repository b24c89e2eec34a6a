#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"

namespace tolvane {

// What a scale reports of itself.
struct TScaleVersion {
    std::int32_t maxPlu = 0;  // the highest article number
    std::int32_t mode = 0;    // label mode, 0 to 3
    std::string text;         // code page 1251
};

// The ways into a scale's programming mode and out of it, with their pauses. All parts outlive the
// object; one thread at a time.
class TProgrammingMode {
public:
    TProgrammingMode(TElicomScale& scale, TClock& clock, const TRunStop& stop)
        : scale_(scale), clock_(clock), stop_(stop) {}

    // Puts the scale into programming mode and reads its version. Throws TFailure with the text of
    // the command that failed. Answers nothing when the run was abandoned before the request for
    // programming mode; the request is not sent then.
    std::optional<TScaleVersion> Enter();
    // Puts the scale back into weighing mode. Answers whether the scale has confirmed it.
    bool Leave();

private:
    TElicomScale& scale_;
    TClock& clock_;
    const TRunStop& stop_;
};

// The text of a failed command: "[SetPrice] ErrCode: 5, " and the driver's own text.
std::string CommandError(const TElicomScale& scale, std::string_view command, std::int32_t errCode);

}  // namespace tolvane
