#include "system/SystemError.h"
#include "text/Cp1251.h"

namespace tolvane {

std::string SystemErrorText(const std::error_code& error) {
    return FromUtf8(error.message()) + " (" + std::to_string(error.value()) + ")";
}

}  // namespace tolvane
