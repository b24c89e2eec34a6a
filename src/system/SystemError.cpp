#include "system/SystemError.h"

#include "text/Failure.h"

namespace tolvane {

std::string FailureText(const std::exception& failure) {
    if (const auto* system = dynamic_cast<const std::system_error*>(&failure))
        return SystemErrorText(system->code());
    return MessageOf(failure);
}

}  // namespace tolvane
