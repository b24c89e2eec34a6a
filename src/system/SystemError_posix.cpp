#include "system/SystemError.h"
#include "text/Cp1251.h"

namespace tolvane {

// These systems write no full stop.
std::string SystemErrorText(const std::error_code& error, TFullStop /*fullStop*/) {
    return FromUtf8(error.message()) + " (" + std::to_string(error.value()) + ")";
}

}  // namespace tolvane
